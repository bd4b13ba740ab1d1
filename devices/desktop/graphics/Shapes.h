#pragma once

#include <cstdint>
#include <optional>

#include "graphics/Rasterizer.h"

namespace quiravent::desktop {

/// The point of the unit circle at an angle, clockwise from three o'clock as y points down; exact
/// at multiples of 90 degrees.
Point directionAt(double degrees);

/// Adds a line one pixel wide from the centre of pixel (x1, y1) to that of pixel (x2, y2),
/// together with the whole of both pixels.
void addLine(Rasterizer& rasterizer, int64_t x1, int64_t y1, int64_t x2, int64_t y2);

/// The smallest box that holds such a line.
Box boundsOfLine(int64_t x1, int64_t y1, int64_t x2, int64_t y2);

enum class EllipseStyle {
    fill,     ///< the inside; of a partial ellipse the sector
    outline,  ///< one pixel inside the radii; of a partial ellipse the arc alone
};

struct Ellipse {
    Point center;
    double radiusX;
    double radiusY;

    /// The point at a direction from directionAt: angles are those of the circle that is stretched
    /// into the ellipse.
    Point at(Point direction) const {
        return {center.x + radiusX * direction.x, center.y + radiusY * direction.y};
    }
};

/// Of an ellipse whose centre and radii are whole.
Box boundsOfEllipse(const Ellipse& ellipse);

/// A piece of an ellipse's outline, in degrees clockwise from three o'clock.
struct Arc {
    double start;  ///< 0 to 360
    double sweep;  ///< above 0, at most 360

    bool whole() const { return sweep >= 360; }
};

/// The arc from start on until end follows, or the whole of it if they are 360 degrees or more
/// apart. None if they are equal or one isn't finite.
std::optional<Arc> arcBetween(double start, double end);

/// Adds the inside of an ellipse, or the sector of it that the arc spans.
void addSector(Rasterizer& rasterizer, const Ellipse& ellipse, const Arc& arc);

/// Adds what lies along the arc between an ellipse and the one whose radii are less by one pixel.
void addArcOutline(Rasterizer& rasterizer, const Ellipse& ellipse, const Arc& arc);

}  // namespace quiravent::desktop
