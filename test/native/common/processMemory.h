#pragma once

#include <cstddef>
#include <fstream>
#include <string>

namespace quiravent::test {

/// Memory of this process in KiB, by the kernel's name of it: "RssAnon" is its own that is
/// resident, "VmHWM" the most that was resident.
inline size_t processMemory(const std::string& name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != name + ":") continue;
    size_t kibibytes = 0;
    status >> kibibytes;
    return kibibytes;
}

/// Has "VmHWM" begin anew.
inline void forgetMostMemory() { std::ofstream("/proc/self/clear_refs") << "5"; }

}  // namespace quiravent::test
