#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "graphics/Canvas.h"
#include "graphics/TestPixels.h"
#include "support/RecentlyUsed.h"
#include "text/TestFont.h"

namespace quiravent::test {
namespace {

std::string repeated(const std::string& text, size_t times) {
    std::string result;
    for (size_t i = 0; i < times; ++i) result += text;
    return result;
}

TEST(LongTextTest, GivesTheMasksThatTouchTheVisibleArea) {
    const auto font = testFont(24);
    const std::string text = repeated("Pfingstj\u00E4ger ", 50);
    const auto everything = font->layout(text, {-300 * kPixel, 40});
    const desktop::PixelArea kAreas[] = {
        {0, 0, 640, 100}, {100, 0, 101, 100}, {0, 0, 640, 20}, {0, 60, 640, 100},
        {0, 39, 640, 40}, {5, 5, 5, 5},       {9, 9, -9, -9},  {-10000, -10000, -9000, -9000},
    };
    for (const auto& area : kAreas) {
        const desktop::Box seen{area.left, area.top, area.right, area.bottom};
        std::vector<const uint8_t*> expected;
        for (const auto& mask : everything.masks()) {
            const desktop::Box box = desktop::boxAt(mask.x, mask.y, mask.width, mask.height);
            if (!intersection(box, seen).empty()) expected.push_back(mask.coverage);
        }
        std::vector<const uint8_t*> given;
        const auto run = font->layout(text, {-300 * kPixel, 40}, area);
        for (const auto& mask : run.masks()) given.push_back(mask.coverage);
        EXPECT_EQ(given, expected) << area.left << "," << area.top;
    }
}

TEST(LongTextTest, ShapesMegabytesInPieces) {
    const auto font = testFont(20);
    const desktop::PixelArea kScreen{0, 0, 1280, 720};
    for (const std::string& unit :
         {std::string("Wort "), std::string("\u4E00"), std::string("n")}) {
        const size_t times = (size_t{1} << 20) / unit.size();
        const std::string text = repeated(unit, times);
        const int64_t advance = static_cast<int64_t>(times) * font->advance(unit);
        EXPECT_EQ(font->advance(text), advance) << unit;
        const auto start = repeated(unit, 400);
        EXPECT_EQ(described(font->layout(text, {0, 50}, kScreen)),
                  described(font->layout(start, {0, 50}, kScreen)))
            << unit;
        // The end of the text ends at the right edge: nothing lies beyond, much before.
        const auto end = font->layout(text, 1280, 50, {2, 0}, kScreen);
        ASSERT_GT(end.masks().size(), 20U) << unit;
        for (const auto& mask : end.masks()) EXPECT_LE(mask.x, 1280);
    }
}

TEST(LongTextTest, SurvivesPositionsFarOutside) {
    const auto font = testFont(255);
    for (const int32_t far : {INT32_MIN, -(1 << 29) - 1, 1 << 29, INT32_MAX})
        for (const uint32_t horizontal : {0U, 1U, 2U}) {
            const desktop::PixelArea area{0, 0, 9999, 99};
            EXPECT_TRUE(described(font->layout("far", far, 0, {horizontal, 0}, area)).empty());
            EXPECT_TRUE(described(font->layout("far", 0, far, {horizontal, 1}, area)).empty());
            const auto everywhere = font->layout("far", far, far, {horizontal, 3});
            for (const auto& mask : everywhere.masks()) EXPECT_GT(mask.width, 0U);
        }
    const auto low = font->originOf("far", INT32_MIN, INT32_MIN, {2, 3});
    EXPECT_EQ(low.x, INT32_MIN * kPixel - font->advance("far"));
    EXPECT_EQ(low.baseline, INT32_MIN);
    EXPECT_EQ(font->originOf("far", 0, INT32_MAX, {0, 1}).baseline, INT32_MAX);
}

TEST(LongTextTest, RunsKeepTheirGlyphsWhenTheStoreIsFullAndBeyondTheirFont) {
    auto font = testFont(255);
    const auto run = font->layout("Q&W", {0, 0});
    const std::string before = described(run);
    std::string many;
    for (int i = 0; i < 400; ++i) {  // of about 25 kilobytes each: more than the store's budget
        const int character = 0x100 + i;
        many += static_cast<char>(0xC0 | character >> 6);
        many += static_cast<char>(0x80 | (character & 0x3F));
    }
    const auto large = font->layout(many, {0, 0});
    EXPECT_GT(large.masks().size(), 390U);
    const std::string largeBefore = described(large);
    const auto again = font->layout("Q&W", {0, 0});
    EXPECT_NE(again.masks()[0].coverage, run.masks()[0].coverage);
    EXPECT_EQ(described(again), before);
    font.reset();
    EXPECT_EQ(described(run), before);
    EXPECT_EQ(described(large), largeBefore);
}

TEST(LongTextTest, KeepsWhatWasUsedLast) {
    desktop::RecentlyUsed<std::string, int, std::string_view> kept(20000);
    kept.add("used", 7, 100);
    for (int i = 0; i < 1000; ++i) {
        kept.add("text " + std::to_string(i), i, 300);
        ASSERT_LE(kept.byteSize(), 20000U);
        ASSERT_TRUE(kept.find("used")) << i;
    }
    EXPECT_TRUE(kept.find("text 999"));
    EXPECT_FALSE(kept.find("text 0"));
    kept.add("larger than the budget", 8, 50000);
    EXPECT_TRUE(kept.find("larger than the budget"));
    EXPECT_FALSE(kept.find("used"));
    kept.add("next", 9, 100);
    EXPECT_FALSE(kept.find("larger than the budget"));
}

/// Whatever its glyphs share, in every mode.
TEST(LongTextTest, PaintsARepeatedTextAsItsGlyphsInTurn) {
    const auto font = testFont(22);
    const char* const texts[] = {"Waffles, \"AVATAR\" fi", "i",
                                 "x\u0302\u0301\u0323 l\u0338o\u20DD", " ", "____\u0332\u0332____"};
    const auto surfaceWith = [&](uint32_t mode, const auto& draw) {
        const auto surface = desktop::test::newSurface(400, 60, 0xB0605040);
        desktop::Canvas canvas(surface);
        canvas.setPorterDuff(mode);
        canvas.setColor({250, 180, 20, static_cast<uint8_t>(mode % 2 == 0 ? 255 : 140)});
        draw(canvas);
        return desktop::test::pixelsOf(*surface);
    };
    for (uint32_t mode = 0; mode < desktop::kPorterDuffModes; ++mode) {
        for (const char* text : texts) {
            const desktop::TextOrigin origin{30 * kPixel + int64_t{5} * mode, 35};
            EXPECT_FALSE(font->repeated(text, origin)) << text;
            const auto shape = font->repeated(text, {origin.x - kPixel, 0});
            ASSERT_TRUE(shape) << text;
            const auto run = font->layout(text, origin);
            const auto inTurn = surfaceWith(mode, [&](desktop::Canvas& canvas) {
                canvas.drawMasks(run.masks().data(), run.masks().size(), {0, 0, 400, 60});
            });
            const auto atOnce = surfaceWith(mode, [&](desktop::Canvas& canvas) {
                const auto box = shape->box.shifted(origin.x / kPixel, 35);
                EXPECT_TRUE(canvas.drawShape(shape->coverage, box));
                canvas.setClip({0, 0, 31, 60});
                EXPECT_FALSE(canvas.drawShape(shape->coverage, box));
            });
            EXPECT_EQ(inTurn, atOnce) << text << " in mode " << mode;
        }
    }
}

}  // namespace
}  // namespace quiravent::test
