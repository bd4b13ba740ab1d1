#pragma once

#include <cstddef>
#include <string>

#include "support/Result.h"

namespace quiravent::desktop {

/// The one wording for a file and a transfer that exceed the limit of bytes.
inline Failure largerThan(size_t maxBytes) {
    return {"it is larger than the limit of " + std::to_string(maxBytes) + " bytes"};
}

}  // namespace quiravent::desktop
