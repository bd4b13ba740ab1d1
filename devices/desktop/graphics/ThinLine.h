#pragma once

#include <cstdint>
#include <vector>

#include "graphics/Geometry.h"

namespace quiravent::desktop {

/// A line one pixel wide, whose coverage comes straight from the areas between its two edges: what
/// the rasteriser would find, at a fraction of its work. It goes by steps of one pixel along its
/// longer axis, at each of which it covers up to four pixels across. The two pixels at its ends,
/// which are covered whole, are left to the rasteriser.
class ThinLine {
  public:
    /// Of the line that addLine() draws, whose points must differ in both coordinates.
    ThinLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2);

    /// Whether its steps go down the rows, rather than along the columns.
    bool isSteep() const { return m_steep; }

    /// What the line covers at the step of either end.
    const Box (&ends() const)[2] { return m_ends; }

    struct Steps {
        int64_t begin = 0;               ///< the first step, in pixels along
        std::vector<int32_t> first;      ///< the first pixel across, from the limits' edge on
        std::vector<uint32_t> coverage;  ///< of four pixels, the first one's in the lowest byte
    };

    /// The steps between the ends that may be seen within the limits, which are part of a surface.
    /// No pixel beyond them has coverage.
    void cover(const Box& limits, Steps& steps) const;

  private:
    struct Axis {
        int64_t first;
        int64_t last;
    };
    Axis visibleSteps(const Axis& along, double edge, double width) const;
    void coverSteps(float start, int32_t count, int32_t* first, uint32_t* coverage) const;
    double upperEdgeAt(int64_t step) const;
    Box endAt(int64_t x, int64_t y, const Box& all) const;

    bool m_steep;
    double m_slope;  // across, for each step along
    double m_band;   // across, from edge to edge
    double m_originAlong;
    double m_originAcross;
    Axis m_middle{};  // steps between the ends
    Box m_ends[2]{};
};

}  // namespace quiravent::desktop
