#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace quiravent::test {

inline std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {(std::istreambuf_iterator<char>(file)), {}};
}

/// The left channel of interleaved stereo, from a byte on.
template <class Sample>
std::vector<Sample> leftOf(const std::string& bytes, size_t from = 0) {
    std::vector<Sample> samples;
    for (size_t at = from; at + 2 * sizeof(Sample) <= bytes.size(); at += 2 * sizeof(Sample)) {
        Sample sample;
        std::memcpy(&sample, &bytes[at], sizeof sample);
        samples.push_back(sample);
    }
    return samples;
}

/// Frequency of the tenth of a second (at 48 kHz) before a sample, by the middle one of the lengths
/// between zero crossings: a gap, as a busy machine makes them, is only one more length. 0 for
/// silence.
template <class Sample>
double frequencyOf(const std::vector<Sample>& samples, size_t before) {
    constexpr size_t kWindow = 4800;
    std::vector<size_t> lengths;
    size_t last = 0;
    for (size_t at = before < kWindow ? 1 : before - kWindow + 1; at < before; ++at) {
        if ((samples[at - 1] < 0) == (samples[at] < 0)) continue;
        if (last != 0) lengths.push_back(at - last);
        last = at;
    }
    if (lengths.empty()) return 0;
    const auto middle = lengths.begin() + static_cast<std::ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    return 24000.0 / static_cast<double>(*middle);
}

}  // namespace quiravent::test
