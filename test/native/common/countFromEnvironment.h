#pragma once

#include <algorithm>
#include <cstdlib>

namespace quiravent::test {

/// How often a test repeats something: as the environment says, for a thorough run, or as usual.
inline int countFromEnvironment(const char* variable, int usual) {
    const char* const text = std::getenv(variable);
    return text == nullptr ? usual : std::max(std::atoi(text), 1);
}

}  // namespace quiravent::test
