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
/// either side, so that no colour from beyond the edge is mixed in.
class Rotation {
  public:
    /// Turns `frame` by an angle whose cosine and sine are `direction`, clockwise.
    Rotation(const Box& frame, Point direction);

    /// A run of pixels on one row of the surface. `left` and `top` are the place of its first
    /// pixel's centre in the frame, counted from the frame's corner. `coverage` holds one value
    /// per pixel, or is null when the region covers all of them whole.
    struct Run {
        int64_t x;
        int64_t y;
        size_t length;
        double left;
        double top;
        const uint8_t* coverage;
    };

    /// Calls visit(run) for all runs of the region within the limits.
    template <typename Visitor>
    void cover(const Region& region, const Box& limits, Visitor&& visit) {
        const Box rows = intersection(boundsOf(region), limits);
        if (rows.empty()) return;
        // Ahead of the rows, so that none is painted unless there is memory for all.
        m_coverage.resize(static_cast<size_t>(rows.width()));
        for (int64_t y = rows.top; y < rows.bottom; ++y) {
            for (const Piece& piece : piecesOf(region, rows, y)) {
                if (piece.last <= piece.first) continue;
                visit(runOf(region, piece, y));
            }
        }
    }

    /// The steps at which a source that lies over `region` is sampled along a run; scaleX and
    /// scaleY are source pixels per destination pixel.
    SampleSteps stepsOf(const Run& run, const Region& region, double scaleX, double scaleY) const;

  private:
    struct Piece {
        int64_t first;
        int64_t last;
        bool whole;
    };
    struct Pieces {
        Piece pieces[3];
        const Piece* begin() const { return pieces; }
        const Piece* end() const { return pieces + 3; }
    };

    Point frameAt(int64_t x, int64_t y) const;
    Box boundsOf(const Region& region) const;
    Pieces piecesOf(const Region& region, const Box& limits, int64_t y) const;
    Piece columnsWithin(const Region& region, const Piece& columns, int64_t y) const;
    Run runOf(const Region& region, const Piece& piece, int64_t y);

    Point m_direction;
    Point m_center;     // on the surface
    Point m_halfFrame;  // from the frame's corner to its centre
    std::vector<uint8_t> m_coverage;
};

}  // namespace quiravent::desktop
