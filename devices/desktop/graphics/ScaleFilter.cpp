#include "graphics/ScaleFilter.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quiravent::desktop {

namespace {

// Weights of 7 bits suit the fast byte arithmetic of all vector units. They are too coarse for
// many taps, and show steps in gradients that are enlarged a lot.
constexpr uint32_t kCoarseShift = 7;
constexpr uint32_t kFineShift = 14;
constexpr double kCoarseRange = 4;

uint32_t shiftFor(double ratio) {
    return ratio > kCoarseRange || ratio * kCoarseRange < 1 ? kFineShift : kCoarseShift;
}

/// Half the width of the triangle, in source pixels. At the same size one pixel is enough.
double supportFor(double ratio) { return ratio == 1 ? 0.5 : std::max(1.0, ratio); }

double triangle(double distance, double support) {
    const double height = support == 0.5 ? 1 : 1 - std::abs(distance) / support;
    return std::max(0.0, height);
}

/// Sum of the triangle over whole pixels on one side of its peak, where it is linear.
double triangleSum(int64_t first, int64_t last, double center, double support) {
    if (first >= last) return 0;
    const auto weightOf = [&](int64_t pixel) {
        return triangle(static_cast<double>(pixel) + 0.5 - center, support);
    };
    return static_cast<double>(last - first) * (weightOf(first) + weightOf(last - 1)) / 2;
}

}  // namespace

Extent ScaleAxis::covered() const {
    const auto boundary = [this](int64_t source) {
        const double place = static_cast<double>(source - part.first) / ratio();
        const auto pixel = static_cast<int64_t>(std::ceil(place - 0.5));
        return std::clamp<int64_t>(pixel, 0, destinationSize);
    };
    return {boundary(inside.first), boundary(inside.last)};
}

ScaleFilter::ScaleFilter(const ScaleAxis& axis, const Extent& visible) {
    const double ratio = axis.ratio();
    const double support = supportFor(ratio);
    m_shift = shiftFor(ratio);
    const double widest = std::ceil(2 * support);
    m_taps = static_cast<uint32_t>(std::min(widest, static_cast<double>(axis.inside.size())));
    m_stride = strideForTaps(m_taps);
    m_exact.resize(m_taps);
    const auto count = static_cast<size_t>(visible.size());
    m_first.reserve(count);
    m_weights.reserve(count * m_stride);
    for (int64_t i = visible.first; i < visible.last; ++i) {
        const double center =
            static_cast<double>(axis.part.first) + (static_cast<double>(i) + 0.5) * ratio;
        addPixel(center, support, axis.inside);
    }
    const uint32_t least = m_first.empty() ? 0 : m_first.front();
    for (uint32_t& first : m_first) first -= least;
    m_origin = axis.inside.first + least;
}

void ScaleFilter::addPixel(double center, double support, const Extent& inside) {
    const auto from = static_cast<int64_t>(std::floor(center - support - 0.5)) + 1;
    const auto to = static_cast<int64_t>(std::ceil(center + support - 0.5));
    const int64_t first = std::clamp<int64_t>(from, inside.first, inside.last - m_taps);
    for (uint32_t tap = 0; tap < m_taps; ++tap) {
        m_exact[tap] = triangle(static_cast<double>(first + tap) + 0.5 - center, support);
    }
    m_exact.front() += triangleSum(from, std::min(to, inside.first), center, support);
    m_exact.back() += triangleSum(std::max(from, inside.last), to, center, support);
    appendWeights();
    m_first.push_back(static_cast<uint32_t>(first - inside.first));
}

void ScaleFilter::appendWeights() {
    const double total = std::accumulate(m_exact.begin(), m_exact.end(), 0.0);
    const double scale = static_cast<double>(1U << m_shift) / total;
    // Rounding the running sum keeps the total exact and no weight negative.
    double sum = 0;
    int64_t before = 0;
    for (const double weight : m_exact) {
        sum += weight;
        const int64_t now = std::llround(sum * scale);
        m_weights.push_back(static_cast<int16_t>(now - before));
        before = now;
    }
    m_weights.resize(m_weights.size() + m_stride - m_taps);
}

Extent ScaleFilter::sources() const {
    if (m_first.empty()) return {m_origin, m_origin};
    return {m_origin, m_origin + m_first.back() + m_taps};
}

}  // namespace quiravent::desktop
