// What code whose paths can be traced calls in programs that don't trace them. For comparisons the
// sanitizer's library has functions, but for those of numbers with fractions.

extern "C" {
/// Weak, since libFuzzer has it too.
__attribute__((weak)) void __sanitizer_cov_trace_pc() {}
void __sanitizer_cov_trace_cmpf(float, float) {}
void __sanitizer_cov_trace_cmpd(double, double) {}
}
