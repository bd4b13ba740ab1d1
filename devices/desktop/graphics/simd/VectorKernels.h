#pragma once

#include "graphics/Kernels.h"

namespace quiravent::desktop {

// The row operations for one kind of vector unit each, in a source that is compiled for it and
// must not run on a processor without. What one doesn't do better itself it takes from `base`.
Kernels avx2Kernels(const Kernels& base);
Kernels sse41Kernels(const Kernels& base);
Kernels neonKernels(const Kernels& base);

}  // namespace quiravent::desktop
