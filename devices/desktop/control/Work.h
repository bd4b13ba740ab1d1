#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "control/Request.h"

namespace quiravent::desktop {

/// How far some work has come.
struct Progress {
    std::optional<OrderedJson> result;  ///< members of the answer, when all is done
    int64_t again = INT64_MAX;          ///< else: when to look again at the latest, by Clock.h
};

/// The longest time for which a request may have something waited for, in milliseconds.
constexpr uint64_t kMaxTimeout = 600000;

/// What a request has set going. The server's thread asks it how far it has come: at once, then
/// whenever it is woken and at the time that the work gave, until there is a result. What it throws
/// becomes the error of the answer. It doesn't block.
using Work = std::function<Progress(int64_t now)>;

/// What is done already.
inline Work finished(OrderedJson result) {
    return [result = std::move(result)](int64_t) { return Progress{result}; };
}

}  // namespace quiravent::desktop
