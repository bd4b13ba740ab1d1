#pragma once

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "threadStatus.h"

namespace quiravent::test {

/// Whether a thread is to be counted. It is listed for a moment longer than pthread_join() waits.
inline bool isLiving(const std::filesystem::path& thread) {
    constexpr size_t kFlags = 6;
    constexpr unsigned long kExiting = 0x4;  // PF_EXITING of the kernel
    const std::vector<std::string> status = threadStatus(thread);
    return status.size() > kFlags && (std::stoul(status[kFlags]) & kExiting) == 0;
}

/// How many threads and open descriptors the process has.
inline std::vector<std::ptrdiff_t> holdings() {
    const std::filesystem::directory_iterator threads("/proc/self/task");
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return {std::count_if(begin(threads), end(threads), isLiving),
            std::distance(begin(descriptors), end(descriptors))};
}

}  // namespace quiravent::test
