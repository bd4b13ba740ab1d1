#include "graphics/Canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <utility>

#include "TestPixels.h"

namespace quiravent::desktop::test {
namespace {

constexpr uint32_t kBackground = 0xFF204060;
constexpr Color kHalfRed{255, 0, 0, 128};

constexpr Rect kAll{0, 0, 20, 20};

constexpr uint32_t minus(uint32_t value) { return 0U - value; }

using Draw = std::function<void(Canvas&)>;

/// What draws on every pixel of a surface of 20 by 20.
std::vector<Draw> drawsOnAll() {
    static const auto opaque = newSurface(20, 20, 0xFFFFFFFF);
    static const auto translucent = newSurface(20, 20, 0x80402010);
    static const std::vector<uint8_t> bytes(400, 255);
    static const CoverageMask mask{0, 0, 20, 20, 20, bytes.data()};
    static constexpr Rect kBeyond{minus(5), minus(5), 90, 90};
    static constexpr Rect kFarBeyond{minus(30), minus(30), 80, 80};
    return {
        [](Canvas& c) { c.fillRect(kAll); },
        [](Canvas& c) { c.drawEllipse(EllipseStyle::fill, 10, 10, 90, 90, 0, 360); },
        [](Canvas& c) { c.compose(*opaque, 0, 0); },
        [](Canvas& c) { c.compose(*translucent, 0, 0); },
        [](Canvas& c) { c.composeScaled(*opaque, kBeyond); },
        [](Canvas& c) { c.drawMasks(&mask, 1, toBox(kAll)); },
        [](Canvas& c) {
            c.setRotation(45);
            c.composeScaled(*opaque, kFarBeyond);
        },
    };
}

/// The same, and what draws on some of them.
std::vector<Draw> allDraws() {
    static const auto source = newSurface(20, 20, 0xFF402010);
    static constexpr Rect kCorner{19, 19, 1, 1};
    static constexpr Rect kInner{1, 1, 5, 5};
    std::vector<Draw> draws = drawsOnAll();
    draws.insert(draws.end(),
                 {
                     [](Canvas& c) { c.fillRect(kCorner); },
                     [](Canvas& c) { c.drawLine(1, 2, 17, 9); },
                     [](Canvas& c) { c.drawEllipse(EllipseStyle::outline, 10, 10, 9, 9, 0, 360); },
                     [](Canvas& c) { c.compose(*source, 18, 18); },
                     [](Canvas& c) { c.composeScaled(*source, kInner); },
                 });
    return draws;
}

/// How many pixels of a fresh surface of 20 by 20 an operation changes, and of what they become.
struct Changes {
    int count = 0;
    uint32_t pixel = 0;
};

Changes changesOf(const Draw& draw) {
    const auto surface = newSurface(20, 20, kBackground);
    Canvas canvas(surface);
    canvas.setColor(kHalfRed);
    draw(canvas);
    Changes changes;
    for (const uint32_t pixel : pixelsOf(*surface)) {
        if (pixel == kBackground) continue;
        ++changes.count;
        changes.pixel = pixel;
    }
    return changes;
}

TEST(Canvas, PaintsRectanglesOnPixelsOnceEach) {
    constexpr uint32_t kBlended = 0xFF902030;  // half red over the background, rounded
    struct {
        Rect rect;
        int filled;
        int outlined;
    } const cases[] = {
        {{2, 3, 6, 5}, 30, 18},
        {{2, 3, 1, 5}, 5, 5},
        {{2, 3, 6, 1}, 6, 6},
        {{2, 3, 2, 2}, 4, 4},
        {{2, 3, 0, 5}, 0, 0},
        {{minus(3), minus(2), 5, 5}, 6, 4},
        {{18, 18, 0xFFFFFFFF, 0xFFFFFFFF}, 4, 3},
        {{0x80000000, 0x80000000, 0xFFFFFFFF, 0xFFFFFFFF}, 400, 0},
        {{0x7FFFFFFF, 0x7FFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}, 0, 0},
    };
    const auto expectPainted = [&](const Draw& draw, int count) {
        const Changes changes = changesOf(draw);
        EXPECT_EQ(changes.count, count);
        EXPECT_EQ(changes.pixel, count > 0 ? kBlended : 0);
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        expectPainted([&](Canvas& canvas) { canvas.fillRect(c.rect); }, c.filled);
        expectPainted([&](Canvas& canvas) { canvas.drawRect(c.rect); }, c.outlined);
    }
}

TEST(Canvas, DrawsWithinTheClipAndReportsItAsSet) {
    std::vector<Draw> draws = drawsOnAll();
    draws.emplace_back([](Canvas& c) { c.clearRect(kAll); });
    for (const Draw& draw : draws) {
        const auto changesIn = [&](const Rect& clip) {
            return changesOf([&](Canvas& canvas) {
                canvas.setClip(clip);
                draw(canvas);
                EXPECT_EQ(toBox(canvas.clip()), toBox(clip));
            });
        };
        EXPECT_EQ(changesIn({16, minus(2), 50, 5}).count, 4 * 3);
        EXPECT_EQ(changesIn({30, 0, 10, 10}).count, 0);
    }
}

TEST(Canvas, PremultipliesTheColourToTheNearestLevel) {
    const auto surface = newSurface(1, 1);
    Canvas canvas(surface);
    canvas.setPorterDuff(kSource);
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int level = 0; level < 256; ++level) {
            const auto red = static_cast<uint8_t>(level);
            canvas.setColor({red, 255, 0, static_cast<uint8_t>(alpha)});
            canvas.fillRect({0, 0, 1, 1});
            const uint32_t pixel = surface->row(0)[0];
            ASSERT_EQ(channel(pixel, 3), alpha);
            ASSERT_EQ(channel(pixel, 2), std::lround(level * alpha / 255.0));
            ASSERT_EQ(channel(pixel, 1), alpha);
        }
    }
}

TEST(Canvas, HoldsOpacityToItsRange) {
    const std::pair<double, uint32_t> cases[] = {{0.5, 0x80808080}, {7, 0xFFFFFFFF}, {-1, 0}};
    for (const auto& [opacity, pixel] : cases) {
        const auto surface = newSurface(1, 1);
        Canvas canvas(surface);
        canvas.setOpacity(opacity);
        EXPECT_FALSE(canvas.setOpacity(NAN));
        canvas.fillRect({0, 0, 1, 1});
        EXPECT_EQ(surface->row(0)[0], pixel) << opacity;
    }
}

/// The flag must never claim too much, in any mode and for any operation.
TEST(Canvas, KnowsWhenTheSurfaceIsOpaque) {
    const auto check = [](const Draw& draw, uint32_t mode, uint32_t background, double opacity) {
        const auto surface = newSurface(20, 20, background);
        const uint64_t before = surface->generation();
        Canvas canvas(surface);
        canvas.setPorterDuff(mode);
        canvas.setOpacity(opacity);
        draw(canvas);
        EXPECT_GT(surface->generation(), before);
        if (!surface->isOpaque()) return;
        for (const uint32_t pixel : pixelsOf(*surface)) ASSERT_EQ(pixel >> 24, 255) << mode;
    };
    std::vector<Draw> draws = allDraws();
    draws.emplace_back([](Canvas& c) { c.clearRect({5, 5, 3, 3}); });
    for (const Draw& draw : draws) {
        for (uint32_t mode = 1; mode < 12; ++mode) {
            for (const uint32_t background : {kBackground, 0x40202020U, 0U}) {
                check(draw, mode, background, 1);
                check(draw, mode, background, 0.5);
            }
        }
    }
    const auto surface = newSurface(8, 8);
    Canvas(surface).compose(*newSurface(8, 8, 0xFF808080), 0, 0);
    EXPECT_TRUE(surface->isOpaque());
}

TEST(Canvas, ComposesThePartThatExists) {
    const auto source = randomSurface(10, 10, true);
    const auto surface = newSurface(20, 20);
    const Rect part{minus(2), 6, 6, 9};
    Canvas(surface).compose(*source, 10, minus(1), &part);
    for (uint32_t y = 0; y < 20; ++y) {
        for (uint32_t x = 0; x < 20; ++x) {
            const bool drawn = x >= 12 && x < 16 && y < 3;
            ASSERT_EQ(surface->row(y)[x], drawn ? source->row(y + 7)[x - 12] : 0U) << x << "," << y;
        }
    }
}

TEST(Canvas, ComposesItselfAsItWasBefore) {
    const int moves[][2] = {{3, 0}, {-3, 0}, {0, 2}, {0, -2}, {4, 3}, {-4, 3}, {4, -3}, {0, 0}};
    constexpr Rect kPart{2, 2, 20, 20};
    const auto copyOf = [](const Surface& source) {
        auto copy = newSurface(24, 24);
        Canvas(copy).compose(source, 0, 0);
        return copy;
    };
    const auto check = [&](const Rect& place, double degrees, double opacity) {
        const auto surface = randomSurface(24, 24);
        const auto copy = copyOf(*surface);
        const auto wanted = copyOf(*surface);
        const auto draw = [&](Canvas&& canvas, const Surface& source) {
            canvas.setRotation(degrees);
            canvas.setOpacity(opacity);
            canvas.composeScaled(source, place, &kPart);
        };
        draw(Canvas(wanted), *copy);
        draw(Canvas(surface), *surface);
        ASSERT_EQ(pixelsOf(*surface), pixelsOf(*wanted))
            << "to " << place.x << "," << place.y << " turned by " << degrees;
    };
    for (const auto& move : moves) {
        for (const uint32_t width : {20U, 27U}) {
            const Rect place{static_cast<uint32_t>(2 + move[0]), static_cast<uint32_t>(2 + move[1]),
                             width, 20};
            for (const double degrees : {0.0, 30.0}) {
                check(place, degrees, 1);
                check(place, degrees, 0.6);
            }
        }
    }
}

TEST(Canvas, DrawsPicturesOfAnySizeFromAnyPart) {
    const auto source = newSurface(10, 10, 0xFFFFFFFF);
    const uint32_t values[] = {0, 1, 9, 0x7FFFFFFF, 0x80000000, 0xFFFFFFF6, 0xFFFFFFFF};
    const auto surface = newSurface(16, 16, 0xFF000000);
    Canvas canvas(surface);
    for (const double degrees : {0.0, 33.0, 90.0}) {
        canvas.setRotation(degrees);
        for (const uint32_t x : values) {
            for (const uint32_t width : values) {
                for (const uint32_t partX : values) {
                    for (const uint32_t partWidth : values) {
                        const Rect part{partX, 1, partWidth, width};
                        canvas.composeScaled(*source, {x, partX, width, partWidth}, &part);
                        canvas.compose(*source, x, width, &part);
                    }
                }
            }
        }
    }
    for (const uint32_t pixel : pixelsOf(*surface)) EXPECT_EQ(pixel >> 24, 255U);
}

/// A clear surface is left as it is, so it must be known when it isn't clear any more.
TEST(Canvas, ClearsWhateverWasDrawnSinceTheLastTime) {
    std::vector<Draw> draws = allDraws();
    draws.emplace_back([](Canvas& c) {  // leaves all but a corner
        c.fillRect(kAll);
        c.setClip({0, 0, 5, 5});
        c.clearRect(kAll);
        c.setClip(kAll);
    });
    draws.emplace_back([](Canvas& c) {
        c.fillRect(kAll);
        c.clearRect({0, 0, 20, 19});
    });
    const auto surface = newSurface(20, 20);
    const std::vector<uint32_t> nothing(400);
    for (const Draw& draw : draws) {
        SCOPED_TRACE(&draw - draws.data());
        Canvas canvas(surface);
        draw(canvas);
        EXPECT_NE(pixelsOf(*surface), nothing);
        // Whatever is set.
        canvas.setOpacity(0);
        canvas.setPorterDuff(7);
        canvas.clearRect(kAll);
        EXPECT_EQ(pixelsOf(*surface), nothing);
        const uint64_t before = surface->generation();
        canvas.clearRect(kAll);
        canvas.clearRect({3, 4, 5, 6});
        EXPECT_EQ(surface->generation(), before);
    }
}

/// Pictures large enough for two threads.
TEST(Canvas, DrawsTheSameWhicheverThreadDraws) {
    const auto source = randomSurface(420, 300);
    const auto opaque = randomSurface(420, 300, true);
    const auto drawnBy = [&](uint32_t threads) {
        const auto surface = newSurface(500, 400, kBackground);
        Canvas canvas(surface, std::make_shared<CanvasShare>(size_t{16} << 20, threads));
        std::vector<std::vector<uint32_t>> steps;
        for (const double degrees : {0.0, 33.0, 250.0}) {
            for (const double opacity : {1.0, 0.4}) {
                for (const auto& picture : {source, opaque}) {
                    for (const uint32_t width : {210U, 270U, 480U, 210U}) {
                        canvas.setRotation(degrees);
                        canvas.setOpacity(opacity);
                        canvas.composeScaled(*picture, {minus(9), 7, width, width * 5 / 7});
                        steps.push_back(pixelsOf(*surface));
                    }
                }
            }
        }
        return steps;
    };
    EXPECT_TRUE(drawnBy(1) == drawnBy(2));
}

}  // namespace
}  // namespace quiravent::desktop::test
