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
constexpr int kSide = 96;

/// Coverage of every pixel after painting white on nothing.
std::vector<int> paint(const std::function<void(Canvas&)>& draw) {
    const auto surface = newSurface(kSide, kSide);
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
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            int hits = 0;
            for (int i = 0; i < kPoints * kPoints; ++i) {
                const double dx = (i % kPoints + 0.5) / kPoints;
                const int row = i / kPoints;
                const double dy = (row + 0.5) / kPoints;
                if (inside(x + dx, y + dy)) ++hits;
            }
            coverage.push_back(hits * 255 / (kPoints * kPoints));
        }
    }
    return coverage;
}

constexpr int kSamplingTolerance = 20;

void expectNear(const std::vector<int>& painted, const std::vector<int>& wanted) {
    for (size_t i = 0; i < painted.size(); ++i) {
        ASSERT_NEAR(painted[i], wanted[i], kSamplingTolerance)
            << "column " << i % kSide << " row " << i / kSide;
    }
}

bool inEllipse(double x, double y, double radiusX, double radiusY) {
    return x * x / (radiusX * radiusX) + y * y / (radiusY * radiusY) <= 1;
}

struct EllipseCase {
    uint32_t radiusX;
    uint32_t radiusY;
    double start;
    double end;
    double first;  ///< the arc that these angles mean
    double sweep;
};

class Ellipses : public testing::TestWithParam<EllipseCase> {
  protected:
    bool inArc(double x, double y) const {
        const EllipseCase& c = GetParam();
        const double angle = std::atan2(y / c.radiusY, x / c.radiusX) * 180 / kPi;
        return std::fmod(angle - c.first + 1080, 360) <= c.sweep;
    }
    static std::vector<int> draw(EllipseStyle style) {
        const EllipseCase& c = GetParam();
        return paint([&](Canvas& canvas) {
            canvas.drawEllipse(style, 48, 44, c.radiusX, c.radiusY, c.start, c.end);
        });
    }
};

TEST_P(Ellipses, FillTheSector) {
    const EllipseCase& c = GetParam();
    const std::vector<int> painted = draw(EllipseStyle::fill);
    expectNear(painted, supersampled([&](double x, double y) {
                   return inEllipse(x - 48, y - 44, c.radiusX, c.radiusY) && inArc(x - 48, y - 44);
               }));
    const double area = kPi * c.radiusX * c.radiusY * c.sweep / 360;
    EXPECT_NEAR(areaOf(painted), area, 0.004 * area);
}

/// What the cut at an angle, from one ellipse to the other, adds to the area per difference of
/// the radii, since it doesn't point to the centre.
double slantAt(double degrees) { return std::sin(2 * degrees * kPi / 180) / 4; }

TEST_P(Ellipses, OutlineOnePixelInside) {
    const EllipseCase& c = GetParam();
    const std::vector<int> painted = draw(EllipseStyle::outline);
    const double area =
        kPi * (c.radiusX + c.radiusY - 1.0) * c.sweep / 360 +
        (slantAt(c.first + c.sweep) - slantAt(c.first)) * (c.radiusY - 1.0 * c.radiusX);
    EXPECT_NEAR(areaOf(painted), area, 0.02 * area);
    if (c.sweep < 360 && c.radiusX != c.radiusY) return;  // the cut between the ellipses is slanted
    expectNear(painted, supersampled([&](double x, double y) {
                   return inEllipse(x - 48, y - 44, c.radiusX, c.radiusY) &&
                          !inEllipse(x - 48, y - 44, c.radiusX - 1.0, c.radiusY - 1.0) &&
                          inArc(x - 48, y - 44);
               }));
}

INSTANTIATE_TEST_SUITE_P(Shapes, Ellipses,
                         testing::Values(EllipseCase{40, 40, 0, 360, 0, 360},
                                         EllipseCase{45, 20, 90, -270, 0, 360},
                                         EllipseCase{40, 40, 0, 90, 0, 90},
                                         EllipseCase{30, 30, 200, 30, 200, 190},
                                         EllipseCase{30, 30, -45, 300, 315, 345},
                                         EllipseCase{40, 25, 725, 860, 5, 135}));

TEST(Ellipses, DrawNothingForAnglesThatSpanNothing) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double angles[][2] = {{0, 0},   {45, 45},      {NAN, 90},
                                {0, NAN}, {0, infinity}, {-infinity, 0}};
    for (const auto& pair : angles) {
        for (const EllipseStyle style : {EllipseStyle::fill, EllipseStyle::outline}) {
            const auto draw = [&](Canvas& c) {
                c.drawEllipse(style, 48, 48, 9, 9, pair[0], pair[1]);
            };
            EXPECT_EQ(areaOf(paint(draw)), 0) << pair[0] << " to " << pair[1];
        }
    }
}

TEST(Ellipses, OfNoWidthDrawNothingAndOfOnePixelFill) {
    const auto area = [](EllipseStyle style, uint32_t rx, uint32_t ry) {
        return areaOf(paint([=](Canvas& c) { c.drawEllipse(style, 48, 48, rx, ry, 0, 360); }));
    };
    EXPECT_EQ(area(EllipseStyle::fill, 0, 20), 0);
    EXPECT_EQ(area(EllipseStyle::outline, 20, 0), 0);
    EXPECT_NEAR(area(EllipseStyle::outline, 1, 1), kPi, 0.05);
    EXPECT_NEAR(area(EllipseStyle::outline, 20, 1), 20 * kPi, 0.3);
}

TEST(Lines, AreCrispAlongRowsAndColumns) {
    const auto wanted = [](int left, int top, int right, int bottom) {
        return supersampled(
            [=](double x, double y) { return x > left && x < right && y > top && y < bottom; });
    };
    EXPECT_EQ(paint([](Canvas& c) { c.drawLine(0, 10, 90, 10); }), wanted(0, 10, 91, 11));
    EXPECT_EQ(paint([](Canvas& c) { c.drawLine(7, 90, 7, 20); }), wanted(7, 20, 8, 91));
    EXPECT_EQ(paint([](Canvas& c) { c.drawLine(5, 6, 5, 6); }), wanted(5, 6, 6, 7));
}

TEST(Lines, AreOnePixelWideAndCoverBothEnds) {
    const int ends[][4] = {{5, 5, 80, 60}, {80, 5, 5, 60}, {10, 90, 14, 3}, {3, 40, 90, 41}};
    for (const auto& e : ends) {
        const std::vector<int> painted = paint([&](Canvas& c) {
            c.drawLine(static_cast<uint32_t>(e[0]), static_cast<uint32_t>(e[1]),
                       static_cast<uint32_t>(e[2]), static_cast<uint32_t>(e[3]));
        });
        EXPECT_EQ(painted[static_cast<size_t>(e[1] * kSide + e[0])], 255);
        EXPECT_EQ(painted[static_cast<size_t>(e[3] * kSide + e[2])], 255);
        const double dx = e[2] - e[0];
        const double dy = e[3] - e[1];
        const double length = std::hypot(dx, dy);
        expectNear(painted, supersampled([&](double x, double y) {
                       const auto pixel = [&](int column, int row) {
                           return x > column && x < column + 1 && y > row && y < row + 1;
                       };
                       const double along = ((x - e[0] - .5) * dx + (y - e[1] - .5) * dy) / length;
                       const double away = ((x - e[0] - .5) * dy - (y - e[1] - .5) * dx) / length;
                       return (along >= 0 && along <= length && std::abs(away) <= 0.5) ||
                              pixel(e[0], e[1]) || pixel(e[2], e[3]);
                   }));
    }
}

/// Lines have a way of their own to their coverage; ends and middle meet without a seam.
TEST(Lines, OfEverySlopeAgreeWithTheRasteriser) {
    RandomPixels random;
    for (int count = 0; count < 300; ++count) {
        int64_t e[4];
        for (int64_t& end : e) end = random.below(kSide + 20) - int64_t{10};
        if (count % 3 == 0) e[3] = e[1] + random.below(3) + 1;
        if (e[0] == e[2] || e[1] == e[3]) continue;
        std::vector<uint32_t> wanted(size_t{kSide} * kSide);
        Rasterizer rasterizer;
        rasterizer.start({0, 0, kSide, kSide});
        addLine(rasterizer, e[0], e[1], e[2], e[3]);
        rasterizer.sweep([&](int64_t y, const std::vector<CoverageSpan>& spans) {
            for (const CoverageSpan& span : spans) {
                std::fill_n(wanted.begin() + y * kSide + span.x, span.length, span.coverage);
            }
        });
        const std::vector<int> painted = paint([&](Canvas& c) {
            c.drawLine(static_cast<uint32_t>(e[0]), static_cast<uint32_t>(e[1]),
                       static_cast<uint32_t>(e[2]), static_cast<uint32_t>(e[3]));
        });
        for (size_t i = 0; i < painted.size(); ++i) {
            ASSERT_NEAR(painted[i], wanted[i], 1)
                << e[0] << "," << e[1] << " to " << e[2] << "," << e[3] << " at " << i % kSide
                << "," << i / kSide;
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
            const bool inside = i % kSide - clip.x < clip.width && i / kSide - clip.y < clip.height;
            ASSERT_NEAR(cut[i], inside ? whole[i] : 0, inside ? 2 : 0)
                << "column " << i % kSide << " row " << i / kSide << " clipped from " << clip.x;
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
        const auto surface = newSurface(kSide, kSide, 0x40201000);
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
    EXPECT_EQ(areaOf(paint(
                  [](Canvas& c) { c.drawEllipse(EllipseStyle::fill, 0, 0, kAll, kAll, 0, 360); })),
              kSide * kSide);
    // At its rightmost point so huge a circle looks like an upright edge.
    EXPECT_NEAR(areaOf(paint([](Canvas& c) {
                    c.drawEllipse(EllipseStyle::fill, kLeast + 48, 48, kMost, kMost, 0, 1e300);
                })),
                47 * kSide, 1);
    EXPECT_NEAR(areaOf(paint([](Canvas& c) {
                    c.drawEllipse(EllipseStyle::outline, kLeast + 48, 48, kMost, kMost, -80, 80);
                })),
                kSide, 1);
    EXPECT_EQ(areaOf(paint([](Canvas& c) { c.drawLine(kLeast, 20, kMost, 20); })), kSide);
    // From corner to corner of the coordinates it crosses (0, 0) to (95, 95) and beyond.
    EXPECT_NEAR(areaOf(paint([](Canvas& c) { c.drawLine(kLeast, kLeast, kMost, kMost); })),
                kSide * std::sqrt(2.0), 1);
}

}  // namespace
}  // namespace quiravent::desktop::test
