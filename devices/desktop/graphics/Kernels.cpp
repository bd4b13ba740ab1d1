#include "graphics/Kernels.h"

#include <algorithm>
#if defined(__arm__)
#include <asm/hwcap.h>
#include <sys/auxv.h>
#endif

#include "graphics/KernelSets.h"
#include "graphics/simd/VectorKernels.h"
#include "support/Lasting.h"

namespace quiravent::desktop {

namespace {

std::vector<KernelSet> makeKernelSets() {
    std::vector<KernelSet> sets;
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) sets.push_back({"avx2", avx2Kernels(kScalarKernels)});
    if (__builtin_cpu_supports("sse4.1")) sets.push_back({"sse4.1", sse41Kernels(kScalarKernels)});
#elif defined(__arm__)
    if ((getauxval(AT_HWCAP) & HWCAP_NEON) != 0) {
        sets.push_back({"neon", neonKernels(kScalarKernels)});
    }
#endif
    sets.push_back({"scalar", kScalarKernels});
    return sets;
}

const Kernels*& selected() {
    static const Kernels* chosen = &kernelSets().front().kernels;
    return chosen;
}

}  // namespace

const std::vector<KernelSet>& kernelSets() {
    static const Lasting<std::vector<KernelSet>> sets(makeKernelSets());
    return *sets;
}

std::vector<std::string> kernelSetNames() { return {"avx2", "sse4.1", "neon", "scalar"}; }

bool selectKernels(std::string_view name) {
    const auto& sets = kernelSets();
    const auto found = std::find_if(sets.begin(), sets.end(),
                                    [&](const KernelSet& set) { return set.name == name; });
    if (found == sets.end()) return false;
    selected() = &found->kernels;
    return true;
}

const Kernels& kernels() { return *selected(); }

}  // namespace quiravent::desktop
