#pragma once

#include <type_traits>

#include "porting/pl_functions.h"

namespace quiravent::desktop {

/// What a function answers that the device, or this build of it, can't do.
template <class Result>
constexpr Result refusedResult() {
    return e_pl_status_unavailable;
}
template <>
constexpr e_pl_ad_media_error refusedResult<e_pl_ad_media_error>() {
    return e_pl_ad_media_error_not_supported;
}

/// Stands in for a function of the porting layer that can't do its work: called with the
/// function's own arguments it sets every output that isn't null to zero and gives the refusal.
template <class Result>
struct Refusal {
    template <class... Arguments>
    Result operator()(Arguments&... arguments) const {
        (clearOutput(arguments), ...);
        return refusedResult<Result>();
    }

  private:
    template <class Argument>
    static void clearOutput(Argument& argument) {
        if constexpr (std::is_pointer_v<Argument>) {
            using Output = std::remove_pointer_t<Argument>;
            if constexpr (std::is_object_v<Output> && !std::is_const_v<Output>) {
                if (argument != nullptr) *argument = Output{};
            }
        }
    }
};

}  // namespace quiravent::desktop
