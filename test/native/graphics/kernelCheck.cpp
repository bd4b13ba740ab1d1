#include <cstdio>

#include "KernelComparison.h"
#include "graphics/KernelSets.h"

// Compares all row operations that this machine can run with the portable ones. For processors
// that the other tests aren't built for: prints a line for each set, the last with the counts.

using namespace quiravent::desktop;

int main() {
    int passed = 0;
    int failed = 0;
    for (const KernelSet& set : kernelSets()) {
        const std::string difference = test::firstDifference(set.kernels, kScalarKernels);
        std::printf("%s: %s\n", set.name, difference.empty() ? "equal" : difference.c_str());
        ++(difference.empty() ? passed : failed);
    }
    std::printf("%d passed, %d failed\n", passed, failed);
    return failed == 0 ? 0 : 1;
}
