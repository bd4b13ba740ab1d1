// Counts how often which block of code is entered, where libFuzzer looks for counters that are not
// of its own compiler's making.

#include <cstddef>
#include <cstdint>

namespace {

constexpr unsigned kCounterBits = 16;

__attribute__((section("__libfuzzer_extra_counters")))
uint8_t s_counters[size_t{1} << kCounterBits];  // NOLINT: as libFuzzer wants it

/// Fibonacci hashing of an address; two blocks may share a counter.
size_t counterOf(const void* address) {
    constexpr uint64_t kGoldenRatio = 0x9E3779B97F4A7C15;
    return reinterpret_cast<uintptr_t>(address) * kGoldenRatio >> (64 - kCounterBits);
}

}  // namespace

/// The linker takes this for __sanitizer_cov_trace_pc, of which libFuzzer has one that does
/// nothing.
extern "C" void __wrap___sanitizer_cov_trace_pc() {
    ++s_counters[counterOf(__builtin_return_address(0))];
}
