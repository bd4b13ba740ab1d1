#include <gtest/gtest.h>

#include "graphics/text/ShapeCache.h"
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
        std::vector<const uint8_t*> expected;
        for (const auto& mask : everything.masks()) {
            const bool touches =
                mask.x < area.right && mask.x + static_cast<int>(mask.width) > area.left &&
                mask.y < area.bottom && mask.y + static_cast<int>(mask.height) > area.top;
            if (touches) expected.push_back(mask.coverage);
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
            EXPECT_EQ(countOf(font->layout("far", far, 0, {horizontal, 0}, {0, 0, 9999, 99})), 0U);
            EXPECT_EQ(countOf(font->layout("far", 0, far, {horizontal, 1}, {0, 0, 9999, 99})), 0U);
            const auto everywhere = font->layout("far", far, far, {horizontal, 3});
            for (const auto& mask : everywhere.masks()) EXPECT_GT(mask.width, 0U);
        }
}

TEST(LongTextTest, KeepsGlyphsOfARunWhenTheStoreIsFull) {
    const auto font = testFont(255);
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
    const auto again = font->layout("Q&W", {0, 0});
    EXPECT_NE(again.masks()[0].coverage, run.masks()[0].coverage);
    EXPECT_EQ(described(run), before);
    EXPECT_EQ(laidOut(*font, "Q&W"), before);
    EXPECT_GT(inkOf(large).amount, 0);
}

TEST(LongTextTest, ShapeCacheKeepsWhatWasUsedLast) {
    desktop::ShapeCache cache(20000);
    const auto shaped = [](size_t glyphs) {
        auto text = std::make_shared<desktop::ShapedText>();
        text->glyphs.resize(glyphs);
        return text;
    };
    cache.add("kept", shaped(3));
    for (int i = 0; i < 1000; ++i) {
        cache.add("text " + std::to_string(i), shaped(10));
        ASSERT_LE(cache.byteSize(), 20000U);
        ASSERT_TRUE(cache.find("kept")) << i;
    }
    EXPECT_TRUE(cache.find("text 999"));
    EXPECT_FALSE(cache.find("text 0"));
    cache.add("larger than the cache", shaped(5000));
    EXPECT_FALSE(cache.find("larger than the cache"));
    EXPECT_LE(cache.byteSize(), 20000U);
}

}  // namespace
}  // namespace quiravent::test
