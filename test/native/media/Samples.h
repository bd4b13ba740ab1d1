#pragma once

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

/// Frequency of the tenth of a second (at 48 kHz) before a sample, by zero crossings.
template <class Sample>
double frequencyOf(const std::vector<Sample>& samples, size_t before) {
    constexpr size_t kWindow = 4800;
    int crossings = 0;
    for (size_t at = before < kWindow ? 1 : before - kWindow + 1; at < before; ++at)
        if ((samples[at - 1] < 0) != (samples[at] < 0)) ++crossings;
    return crossings * 5.0;
}

}  // namespace quiravent::test
