#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What libFuzzer calls with each input. Each target is a source of its own that defines it; a
/// crash, a report of a sanitizer, or an expectation that doesn't hold is a find.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace quiravent::fuzz {

inline std::string textOf(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process, as a crash does, where something isn't as it has to be.
inline void expect(bool holds) {
    if (!holds) __builtin_trap();
}

}  // namespace quiravent::fuzz
