#include "graphics/Kernels.h"

namespace quiravent::desktop {

const Kernels& kernels() { return kScalarKernels; }

}  // namespace quiravent::desktop
