#include "media/audio/TimeStretch.h"

#include <algorithm>
#include <cmath>

#include "media/audio/AudioFormat.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kPiece = kAudioRate * 40 / 1000;   ///< frames that a piece takes from the input
constexpr size_t kOverlap = kAudioRate * 8 / 1000;  ///< of which so many overlap with the last
constexpr size_t kSearch = kAudioRate * 14 / 1000;  ///< how far a piece may be moved
constexpr size_t kCoarse = 8;                       ///< step of the search

}  // namespace

size_t TimeStretch::available() const { return m_input.size() / kAudioChannels; }

const float* TimeStretch::at(size_t frame) const { return m_input.data() + frame * kAudioChannels; }

double TimeStretch::likeness(size_t offset) const {
    const float* samples = at(offset);
    double product = 0;
    double energy = 1e-9;
    for (size_t index = 0; index < kOverlap * kAudioChannels; index += 2) {
        product += static_cast<double>(m_tail[index]) * samples[index];
        energy += static_cast<double>(samples[index]) * samples[index];
    }
    return product / std::sqrt(energy);
}

size_t TimeStretch::bestOffset() const {
    if (m_tail.empty()) return 0;
    size_t best = 0;
    double most = likeness(0);
    const auto search = [&](size_t from, size_t to, size_t step) {
        for (size_t offset = from; offset < to; offset += step) {
            const double alike = likeness(offset);
            if (alike <= most) continue;
            most = alike;
            best = offset;
        }
    };
    search(kCoarse, kSearch, kCoarse);
    const size_t coarse = best;
    search(coarse < kCoarse ? 0 : coarse - kCoarse, std::min(coarse + kCoarse, kSearch), 1);
    return best;
}

void TimeStretch::emitPiece(std::vector<float>& out) {
    const size_t offset = bestOffset();
    const float* piece = at(offset);
    for (size_t frame = 0; frame < kPiece - kOverlap; ++frame) {
        for (size_t channel = 0; channel < kAudioChannels; ++channel) {
            const size_t index = frame * kAudioChannels + channel;
            float sample = piece[index];
            if (frame < kOverlap && !m_tail.empty()) {
                const float weight = static_cast<float>(frame) / kOverlap;
                sample = sample * weight + m_tail[index] * (1 - weight);
            }
            out.push_back(sample);
        }
    }
    const float* tail = at(offset + kPiece - kOverlap);
    m_tail.assign(tail, tail + kOverlap * kAudioChannels);
    m_excess += m_speed * static_cast<double>(kPiece - kOverlap);
    const auto used = static_cast<size_t>(m_excess);
    m_excess -= static_cast<double>(used);
    m_input.erase(m_input.begin(),
                  m_input.begin() + static_cast<std::ptrdiff_t>(used * kAudioChannels));
}

std::vector<float> TimeStretch::process(const std::vector<float>& samples) {
    if (m_speed == 1) return samples;
    m_input.insert(m_input.end(), samples.begin(), samples.end());
    const auto step = static_cast<size_t>(m_speed * static_cast<double>(kPiece)) + 1;
    std::vector<float> out;
    while (available() >= std::max(kSearch + kPiece, step)) emitPiece(out);
    return out;
}

}  // namespace quiravent::desktop
