#pragma once

#include <cstdint>
#include <vector>

#include "graphics/Kernels.h"

namespace quiravent::desktop {

/// Half-open range of pixels on one axis.
struct Extent {
    int64_t first;
    int64_t last;

    int64_t size() const { return last - first; }
    bool empty() const { return first >= last; }
    bool operator==(const Extent& other) const {
        return first == other.first && last == other.last;
    }
};

/// One axis of a scaling: `part` of the source, of which only `inside` exists, is drawn over
/// `destinationSize` pixels; pixel centres lie over each other.
struct ScaleAxis {
    Extent part;
    Extent inside;  ///< within part
    int64_t destinationSize;

    double ratio() const {
        return static_cast<double>(part.size()) / static_cast<double>(destinationSize);
    }

    bool operator==(const ScaleAxis& other) const {
        return part == other.part && inside == other.inside &&
               destinationSize == other.destinationSize;
    }

    /// The destination pixels, counted from the destination's edge, whose centres lie over
    /// `inside`.
    Extent covered() const;
};

/// The weights with which pixels of the source make up each pixel of the destination: a triangle
/// as wide as two destination pixels when reducing, and two source pixels when enlarging (linear
/// interpolation). What the triangle finds outside of `inside` is taken from its edge pixels.
class ScaleFilter {
  public:
    /// For the destination pixels `visible`, which must lie within axis.covered().
    ScaleFilter(const ScaleAxis& axis, const Extent& visible);

    uint32_t taps() const { return m_taps; }
    uint32_t shift() const { return m_shift; }
    /// For the i-th visible pixel: the first source pixel, in coordinates of the source, and taps()
    /// weights that add up to 1 << shift().
    int64_t first(size_t i) const { return m_origin + m_first[i]; }
    const int16_t* weights(size_t i) const { return m_weights.data() + i * m_stride; }
    /// All source pixels that carry weight.
    Extent sources() const;

    /// For Kernels::filterRow, over a row that begins at source pixel sources().first.
    FilterRow row() const { return {m_first.data(), m_weights.data(), m_taps, m_stride, m_shift}; }

  private:
    void addPixel(double center, double support, const Extent& inside);
    void appendWeights();

    uint32_t m_taps;
    uint32_t m_stride;
    uint32_t m_shift;
    int64_t m_origin = 0;
    std::vector<uint32_t> m_first;  // counted from m_origin
    std::vector<int16_t> m_weights;
    std::vector<double> m_exact;  // of one pixel
};

}  // namespace quiravent::desktop
