#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "graphics/Kernels.h"

namespace quiravent::desktop {

/// Portable implementation, and the reference for all others.
extern const Kernels kScalarKernels;

struct KernelSet {
    const char* name;
    Kernels kernels;
};

/// What this machine can run, the fastest first; the last one is "scalar".
const std::vector<KernelSet>& kernelSets();

/// The names of the sets of all processors.
std::vector<std::string> kernelSetNames();

/// Has kernels() answer that set from now on; false, with nothing changed, if this machine can't
/// run it. Not while anything is drawn: for the start of a program, tests and benchmarks.
bool selectKernels(std::string_view name);

}  // namespace quiravent::desktop
