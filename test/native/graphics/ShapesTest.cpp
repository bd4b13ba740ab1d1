#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "TestPixels.h"
#include "graphics/Canvas.h"
#include "graphics/Rasterizer.h"
#include "graphics/Shapes.h"

namespace quiravent::desktop::test {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kExtent = 96;

/// Coverage of every pixel after painting white on nothing.
std::vector<int> paint(const std::function<void(Canvas&)>& draw) {
    const auto surface = newSurface(kExtent, kExtent);
    Canvas canvas(surface);
    draw(canvas);
    std::vector<int> coverage;
    for (const uint32_t pixel : pixelsOf(*surface)) coverage.push_back(channel(pixel, 3));
    return coverage;
}

double areaOf(const std::vector<int>& coverage) {
    double area = 0;
    for (const int level : coverage) area += level / 255.0;
    return area;
}

/// Coverage by counting 16 by 16 points in each pixel; off by up to a level in 16 or so on an edge.
std::vector<int> supersampled(const std::function<bool(double x, double y)>& inside) {
    constexpr int kPoints = 16;
    std::vector<int> coverage;
    for (int y = 0; y < kExtent; ++y) {
        for (int x = 0; x < kExtent; ++x) {
            int hits = 0;
            for (int column = 0; column < kPoints; ++column)
                for (int row = 0; row < kPoints; ++row)
                    hits += inside(x + (column + 0.5) / kPoints, y + (row + 0.5) / kPoints);
            coverage.push_back(hits * 255 / (kPoints * kPoints));
        }
    }
    return coverage;
}

/// Ends as x1, y1, x2, y2.
std::vector<int> paintLine(const int64_t (&e)[4]) {
    const auto end = [&](int index) { return static_cast<uint32_t>(e[index]); };
    return paint([&](Canvas& c) { c.drawLine(end(0), end(1), end(2), end(3)); });
}

constexpr int kSamplingTolerance = 20;

void expectNear(const std::vector<int>& painted, const std::vector<int>& wanted) {
    for (size_t i = 0; i < painted.size(); ++i) {
        ASSERT_NEAR(painted[i], wanted[i], kSamplingTolerance)
            << "column " << i % kExtent << " row " << i / kExtent;
    }
}

bool inEllipse(double x, double y, double radiusX, double radiusY) {
    return x * x / (radiusX * radiusX) + y * y / (radiusY * radiusY) <= 1;
}

std::vector<int> paintEllipse(EllipseStyle style, uint32_t radiusX, uint32_t radiusY, double start,
                              double end) {
    return paint([&](Canvas& c) { c.drawEllipse(style, 48, 44, radiusX, radiusY, start, end); });
}

/// What the cut at an angle, from one ellipse to the other, adds to the area per difference of
/// the radii, since it doesn't point to the centre.
double slantAt(double degrees) { return std::sin(2 * degrees * kPi / 180) / 4; }

TEST(Ellipses, FillTheSectorAndOutlineOnePixelInside) {
    const struct {
        uint32_t radiusX;
        uint32_t radiusY;
        double start;
        double end;
        double first;  ///< the arc that these angles mean
        double sweep;
    } cases[] = {
        {40, 40, 0, 360, 0, 360},    {45, 20, 90, -270, 0, 360},   {40, 40, 0, 90, 0, 90},
        {30, 30, 200, 30, 200, 190}, {30, 30, -45, 300, 315, 345}, {40, 25, 725, 860, 5, 135},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        const auto isFilled = [&](double x, double y) {
            const double angle = std::atan2((y - 44) / c.radiusY, (x - 48) / c.radiusX) * 180 / kPi;
            return inEllipse(x - 48, y - 44, c.radiusX, c.radiusY) &&
                   std::fmod(angle - c.first + 1080, 360) <= c.sweep;
        };
        const auto filled = paintEllipse(EllipseStyle::fill, c.radiusX, c.radiusY, c.start, c.end);
        expectNear(filled, supersampled(isFilled));
        const double area = kPi * c.radiusX * c.radiusY * c.sweep / 360;
        EXPECT_NEAR(areaOf(filled), area, 0.004 * area);

        const auto outlined =
            paintEllipse(EllipseStyle::outline, c.radiusX, c.radiusY, c.start, c.end);
        const double outline =
            kPi * (c.radiusX + c.radiusY - 1.0) * c.sweep / 360 +
            (slantAt(c.first + c.sweep) - slantAt(c.first)) * (c.radiusY - 1.0 * c.radiusX);
        EXPECT_NEAR(areaOf(outlined), outline, 0.02 * outline);
        const bool isSlanted = c.sweep < 360 && c.radiusX != c.radiusY;  // between the ellipses
        if (isSlanted) continue;
        expectNear(outlined, supersampled([&](double x, double y) {
                       return isFilled(x, y) &&
                              !inEllipse(x - 48, y - 44, c.radiusX - 1.0, c.radiusY - 1.0);
                   }));
    }
}

TEST(Ellipses, DrawNothingWhereTheySpanNothingAndFillOnePixel) {
    const double infinity = std::numeric_limits<double>::infinity();
    struct {
        uint32_t radiusX;
        uint32_t radiusY;
        double start;
        double end;
        double area;
    } const cases[] = {
        {9, 9, 0, 0, 0},        {9, 9, 45, 45, 0},         {9, 9, NAN, 90, 0}, {9, 9, 0, NAN, 0},
        {9, 9, 0, infinity, 0}, {9, 9, -infinity, 0, 0},   {0, 20, 0, 360, 0}, {20, 0, 0, 360, 0},
        {1, 1, 0, 360, kPi},    {20, 1, 0, 360, 20 * kPi},
    };
    for (const auto& c : cases) {
        for (const EllipseStyle style : {EllipseStyle::fill, EllipseStyle::outline}) {
            const auto painted = paintEllipse(style, c.radiusX, c.radiusY, c.start, c.end);
            EXPECT_NEAR(areaOf(painted), c.area, c.area > 0 ? 0.3 : 0) << &c - cases;
        }
    }
}

TEST(Lines, AreOnePixelWideAndCoverBothEnds) {
    const int64_t lines[][4] = {{0, 10, 90, 10}, {7, 90, 7, 20},  {5, 6, 5, 6},   {5, 5, 80, 60},
                                {80, 5, 5, 60},  {10, 90, 14, 3}, {3, 40, 90, 41}};
    for (const auto& e : lines) {
        const std::vector<int> painted = paintLine(e);
        const auto middle = [&](int index) { return static_cast<double>(e[index]) + 0.5; };
        const double dx = middle(2) - middle(0);
        const double dy = middle(3) - middle(1);
        const double length = std::hypot(dx, dy);
        const auto inLine = [&](double x, double y) {
            const auto isAt = [&](int index) {
                return std::abs(x - middle(index)) < 0.5 && std::abs(y - middle(index + 1)) < 0.5;
            };
            const double along = ((x - middle(0)) * dx + (y - middle(1)) * dy) / length;
            const double away = ((x - middle(0)) * dy - (y - middle(1)) * dx) / length;
            return (along >= 0 && along <= length && std::abs(away) <= 0.5) || isAt(0) || isAt(2);
        };
        const std::vector<int> wanted = supersampled(inLine);
        expectNear(painted, wanted);
        EXPECT_EQ(painted[static_cast<size_t>(e[1] * kExtent + e[0])], 255);
        EXPECT_EQ(painted[static_cast<size_t>(e[3] * kExtent + e[2])], 255);
        if (dx == 0 || dy == 0) {
            EXPECT_EQ(painted, wanted) << "along a row or a column";
        }
    }
}

/// Lines have a way of their own to their coverage; ends and middle meet without a seam.
TEST(Lines, OfEverySlopeAgreeWithTheRasteriser) {
    RandomPixels random;
    for (int count = 0; count < 300; ++count) {
        int64_t e[4];
        for (int64_t& end : e) end = random.below(kExtent + 20) - int64_t{10};
        if (count % 3 == 0) e[3] = e[1] + random.below(3) + 1;
        if (e[0] == e[2] || e[1] == e[3]) continue;
        std::vector<uint32_t> wanted(size_t{kExtent} * kExtent);
        Rasterizer rasterizer;
        rasterizer.start({0, 0, kExtent, kExtent});
        addLine(rasterizer, e[0], e[1], e[2], e[3]);
        rasterizer.sweep([&](int64_t y, const std::vector<CoverageSpan>& spans) {
            for (const CoverageSpan& span : spans) {
                std::fill_n(wanted.begin() + y * kExtent + span.x, span.length, span.coverage);
            }
        });
        const std::vector<int> painted = paintLine(e);
        for (size_t i = 0; i < painted.size(); ++i) {
            ASSERT_NEAR(painted[i], wanted[i], 1)
                << e[0] << "," << e[1] << " to " << e[2] << "," << e[3] << " at " << i % kExtent
                << "," << i / kExtent;
        }
    }
}

TEST(Shapes, AreTheSameWhateverTheClipCutsOff) {
    const auto draw = [](Canvas& c) {
        c.drawEllipse(EllipseStyle::outline, 20, 90, 60, 35, 0, 360);
        c.drawEllipse(EllipseStyle::fill, static_cast<uint32_t>(-30), 40, 90, 30, 10, 300);
        c.drawLine(static_cast<uint32_t>(-20), static_cast<uint32_t>(-30), 130, 120);
    };
    const std::vector<int> whole = paint(draw);
    const Rect clips[] = {{30, 20, 40, 50}, {33, 1, 1, 90}, {90, 3, 6, 80}, {0, 50, 7, 9}};
    for (const Rect& clip : clips) {
        const std::vector<int> cut = paint([&](Canvas& c) {
            c.setClip(clip);
            draw(c);
        });
        for (uint32_t i = 0; i < cut.size(); ++i) {
            const bool inside =
                i % kExtent - clip.x < clip.width && i / kExtent - clip.y < clip.height;
            ASSERT_NEAR(cut[i], inside ? whole[i] : 0, inside ? 2 : 0)
                << "column " << i % kExtent << " row " << i / kExtent << " clipped from " << clip.x;
        }
    }
}

/// What a shape covers is kept, so that the next one of its kind is only painted.
TEST(Shapes, AreTheSameWhenDrawnAgainElsewhere) {
    const std::function<void(Canvas&, uint32_t)> draws[] = {
        [](Canvas& c, uint32_t at) { c.drawLine(at + 9, at, at, at + 30); },
        [](Canvas& c, uint32_t at) { c.drawLine(at, at, at + 40, at + 13); },
        [](Canvas& c, uint32_t at) { c.drawLine(at + 2, at, at, at + 50); },
        [](Canvas& c, uint32_t at) {
            c.drawEllipse(EllipseStyle::outline, at + 20, at + 9, 20, 9, 0, 360);
        },
        [](Canvas& c, uint32_t at) {
            c.drawEllipse(EllipseStyle::fill, at + 20, at + 20, 20, 20, 30, 250);
        },
        [](Canvas& c, uint32_t at) {
            c.drawEllipse(EllipseStyle::fill, at + 20, at + 20, 20, 20, 30, 251);
        },
    };
    const auto share = std::make_shared<CanvasShare>(0, 1);
    const auto drawn = [](const auto& draw, std::shared_ptr<CanvasShare> kept, uint32_t at) {
        const auto surface = newSurface(kExtent, kExtent, 0x40201000);
        Canvas canvas(surface, std::move(kept));
        canvas.setColor({200, 100, 50, at % 2 == 0 ? uint8_t{255} : uint8_t{100}});
        draw(canvas, at);
        return pixelsOf(*surface);
    };
    for (const uint32_t at : {0U, 17U, 44U}) {
        for (const auto& draw : draws) ASSERT_EQ(drawn(draw, share, at), drawn(draw, nullptr, at));
    }
}

TEST(Shapes, WriteNothingBeyondANarrowSurface) {
    for (const uint32_t width : {1U, 5U, 8U, 13U}) {
        const auto surface = newSurface(width, 60);
        std::fill(surface->row(0) + width, surface->row(0) + surface->stride(), 7U);
        Canvas canvas(surface);
        canvas.drawEllipse(EllipseStyle::outline, width / 2, 30, width / 2, 30, 0, 360);
        canvas.drawLine(0, 0, width, 59);
        canvas.drawLine(0, 59, width, 0);
        EXPECT_GT(surface->row(0)[0], 0U);
        for (size_t x = width; x < surface->stride(); ++x) ASSERT_EQ(surface->row(0)[x], 7U);
    }
}

TEST(Shapes, OfAnySizeTakeNoMoreThanWhatIsSeen) {
    constexpr uint32_t kLeast = 0x80000000;
    constexpr uint32_t kMost = 0x7FFFFFFF;
    constexpr uint32_t kAll = 0xFFFFFFFF;
    using Style = EllipseStyle;
    const struct {
        std::function<void(Canvas&)> draw;
        double area;
        double tolerance;
    } cases[] = {
        {[](Canvas& c) { c.drawEllipse(Style::fill, 0, 0, kAll, kAll, 0, 360); }, kExtent * kExtent,
         0},
        // At its rightmost point so huge a circle looks like an upright edge.
        {[](Canvas& c) { c.drawEllipse(Style::fill, kLeast + 48, 48, kMost, kMost, 0, 1e300); },
         47 * kExtent, 1},
        {[](Canvas& c) { c.drawEllipse(Style::outline, kLeast + 48, 48, kMost, kMost, -80, 80); },
         kExtent, 1},
        {[](Canvas& c) { c.drawLine(kLeast, 20, kMost, 20); }, kExtent, 0},
        // From corner to corner of the coordinates it crosses (0, 0) to (95, 95) and beyond.
        {[](Canvas& c) { c.drawLine(kLeast, kLeast, kMost, kMost); }, kExtent * std::sqrt(2.0), 1},
    };
    for (const auto& c : cases) EXPECT_NEAR(areaOf(paint(c.draw)), c.area, c.tolerance);
}

}  // namespace
}  // namespace quiravent::desktop::test
