#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/Geometry.h"

namespace quiravent::desktop {

/// The coverage of the middle of a line that is one pixel wide, row by row and straight from the
/// areas between its two edges: what the rasteriser would find, at a fraction of its work. The
/// ends, where the line is wider than its band, are left to the rasteriser.
class ThinLine {
  public:
    /// Of the line that addLine() draws, whose points must differ in both coordinates.
    ThinLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2);

    /// Where the two ends lie. With the middle, which neither overlaps, they hold all that the line
    /// covers.
    const Box (&ends() const)[2] { return m_ends; }

    struct Run {
        int64_t x;
        int64_t y;
        const uint8_t* coverage;
        size_t length;
    };

    /// Calls visit(run) for each row of the middle with coverage within the limits, which are part
    /// of a surface; top down.
    /// coverage: working memory, a byte for each column of the limits.
    template <typename Visitor>
    void cover(const Box& limits, uint8_t* coverage, Visitor&& visit) const {
        const Box visible = intersection(m_middle, limits);
        for (int64_t y = visible.top; y < visible.bottom && !visible.empty(); ++y) {
            const Run run = runAt(y, visible, coverage);
            if (run.length > 0) visit(run);
        }
    }

  private:
    Run runAt(int64_t y, const Box& limits, uint8_t* coverage) const;
    Box endAt(int64_t x, int64_t y, const Box& all) const;
    void coverShallow(double y, double x, uint8_t* coverage, size_t count) const;
    void coverSteep(double y, double x, uint8_t* coverage, size_t count) const;

    bool m_steep;
    double m_slope;     // of the smaller difference to the larger
    double m_halfBand;  // of the band, measured along the smaller axis
    double m_originX;   // centre of the first pixel
    double m_originY;
    Box m_ends[2];
    Box m_middle;
};

}  // namespace quiravent::desktop
