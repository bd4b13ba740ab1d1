#pragma once

#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

namespace quiravent::test {

/// How many threads and open descriptors the process has.
inline std::vector<std::ptrdiff_t> holdings() {
    std::vector<std::ptrdiff_t> counts;
    for (const char* const kind : {"/proc/self/task", "/proc/self/fd"}) {
        const std::filesystem::directory_iterator entries(kind);
        counts.push_back(std::distance(begin(entries), end(entries)));
    }
    return counts;
}

}  // namespace quiravent::test
