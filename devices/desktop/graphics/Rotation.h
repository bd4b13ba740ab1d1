#pragma once

#include <cstdint>
#include <vector>

#include "graphics/Geometry.h"
#include "graphics/Kernels.h"
#include "graphics/Rasterizer.h"

namespace quiravent::desktop {

/// A rectangle of a picture's own frame, in destination pixels before turning.
struct Region {
    double left;
    double top;
    double right;
    double bottom;
};

/// Turns a frame (a destination rectangle, the bounds of a text) about its centre, and finds for
/// each row of the surface which pixels a region of the frame covers. Pixels on the region's edge
/// are covered in part: coverage falls linearly from 1 to 0 within half a pixel of the edge on
/// either side, so that no colour from beyond the edge is mixed in. A copy has working memory of
/// its own, for another thread.
class Rotation {
  public:
    /// Turns `frame` by an angle whose cosine and sine are `direction`, clockwise.
    Rotation(const Box& frame, Point direction);

    /// A run of pixels on one row of the surface. `left` and `top` are the place of its first
    /// pixel's centre in the frame, counted from the frame's corner. The region covers the pixels
    /// from `wholeFirst` up to, without, `wholeLast` whole, and each of the others as far as its
    /// value of `coverage`, which has one for every pixel of the run, says.
    struct Run {
        int64_t x;
        int64_t y;
        size_t length;
        double left;
        double top;
        size_t wholeFirst;
        size_t wholeLast;
        const uint8_t* coverage;
    };

    /// The part of the limits in which the region lies. Takes the memory for covering it, so that
    /// nothing is painted unless there is enough.
    Box prepare(const Region& region, const Box& limits);

    /// Calls visit(run) for each row of the region, where it has pixels, within rows and columns of
    /// what prepare() gave.
    template <typename Visitor>
    void cover(const Region& region, const Box& prepared, Visitor&& visit) {
        const Columns columns{prepared.left, prepared.right};
        for (int64_t y = prepared.top; y < prepared.bottom; ++y) {
            const Columns touched = columnsWithin(grown(region, 0.5), columns, y);
            if (touched.last > touched.first) visit(runOf(region, touched, y));
        }
    }

    /// The steps at which a source that lies over a region is sampled; scaleX and scaleY are source
    /// pixels per destination pixel.
    class Sampling {
      public:
        Sampling(const Rotation& rotation, const Region& region, double scaleX, double scaleY);

        SampleSteps along(const Run& run) const;

      private:
        double m_left;
        double m_top;
        double m_scaleX;
        double m_scaleY;
        int64_t m_stepX;
        int64_t m_stepY;
    };

  private:
    struct Columns {
        int64_t first;
        int64_t last;
    };

    static Region grown(const Region& region, double by);
    Point frameAt(int64_t x, int64_t y) const;
    Box boundsOf(const Region& region) const;
    Columns columnsWithin(const Region& region, const Columns& columns, int64_t y) const;
    Run runOf(const Region& region, const Columns& touched, int64_t y);
    void coverEdge(const Region& region, const Run& run, size_t first, size_t last);

    Point m_direction;
    Point m_center;     // on the surface
    Point m_halfFrame;  // from the frame's corner to its centre
    std::vector<uint8_t> m_coverage;
};

}  // namespace quiravent::desktop
