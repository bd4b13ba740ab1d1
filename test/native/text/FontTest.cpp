#include "graphics/text/Font.h"

#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "graphics/text/FontLoader.h"
#include "text/TestFont.h"

namespace quiravent::test {
namespace {

TEST(FontTest, ScalesItsMetricsAndRoundsThemUp) {
    for (const uint32_t height : {1U, 7U, 24U, 100U, 255U}) {
        const auto font = testFont(height);
        const double scale = height / kUnitsPerEm;
        EXPECT_EQ(font->metrics().ascent, std::ceil(1901 * scale)) << height;
        EXPECT_EQ(font->metrics().descent, std::ceil(483 * scale)) << height;
        EXPECT_GE(font->metrics().lineHeight, std::ceil(2384 * scale)) << height;
        EXPECT_EQ(font->measure("x").height, font->metrics().height()) << height;
    }
}

TEST(FontTest, AdvancesByFractionsOfAPixel) {
    for (const uint32_t height : {5U, 13U, 24U, 255U}) {
        const auto font = testFont(height);
        const double one = 1298 * height / kUnitsPerEm;  // of an "n"
        EXPECT_NEAR(static_cast<double>(font->advance("n")) / 64, one, 1.0 / 128) << height;
        const std::string line(100, 'n');
        EXPECT_EQ(font->advance(line), 100 * font->advance("n")) << height;
        EXPECT_EQ(font->measure(line).width,
                  std::ceil(static_cast<double>(font->advance(line)) / 64))
            << height;
    }
}

TEST(FontTest, MeasuresNothingForNoText) {
    const auto font = testFont(20);
    EXPECT_EQ(font->measure("").width, 0U);
    EXPECT_EQ(font->measure("").height, font->metrics().height());
    EXPECT_EQ(countOf(font->layout("", {0, 0})), 0U);
    EXPECT_EQ(countOf(font->layout("   ", {0, 0})), 0U);
    EXPECT_GT(font->measure("   ").width, 0U);
}

TEST(FontTest, KernsAndFormsLigatures) {
    const auto font = testFont(100);
    EXPECT_LT(font->advance("AV"), font->advance("A") + font->advance("V"));
    EXPECT_EQ(countOf(font->layout("fi", {0, 0})), 1U);
    EXPECT_EQ(laidOut(*font, "fi"), laidOut(*font, "\uFB01"));
}

TEST(FontTest, DrawsEveryCharacter) {
    const auto font = testFont(24);
    EXPECT_EQ(countOf(font->layout("One two  three ", {0, 0})), 11U);
    EXPECT_EQ(font->advance("n n n"), 3 * font->advance("n") + 2 * font->advance(" "));
}

TEST(FontTest, SetsMarksAboveTheirLetters) {
    const auto font = testFont(48);
    const auto small = font->layout("x\u0302", {0, 0});  // has no precomposed character
    const auto capital = font->layout("X\u0302", {0, 0});
    ASSERT_EQ(small.masks().size(), 2U);
    ASSERT_EQ(capital.masks().size(), 2U);
    for (const auto* run : {&small, &capital}) {
        const desktop::CoverageMask& letter = run->masks()[0];
        const desktop::CoverageMask& mark = run->masks()[1];
        EXPECT_LE(mark.y + static_cast<int>(mark.height),
                  letter.y + 1);  // soft edges may share a row
        EXPECT_GT(mark.x, letter.x);
        EXPECT_LT(mark.x + mark.width, letter.x + letter.width);
    }
}

TEST(FontTest, LaysOutEqualTextsEqually) {
    const auto font = testFont(24);
    const struct {
        const char* what;
        std::string text;
        std::string same;
    } kCases[] = {
        {"combining accents", "e\u0301u\u0308C\u0327", "\u00E9\u00FC\u00C7"},
        {"bytes that aren't UTF-8", "a\xFF z\xC3", "a\uFFFD z\uFFFD"},
        {"line ends and tabs", "a\nb\tc\r", "a b c "},
        {"other controls", std::string("a\0b\x7F\u0085\u2028", 9), "a b   "},
        {"missing characters", "\U0010FFFD", "\U0010FFFC"},
        {"ignorable characters", "a\u200Bb\uFEFF\u00AD", "ab"},
    };
    for (const auto& expected : kCases) {
        EXPECT_EQ(laidOut(*font, expected.text), laidOut(*font, expected.same)) << expected.what;
        EXPECT_EQ(font->advance(expected.text), font->advance(expected.same)) << expected.what;
    }
    EXPECT_EQ(countOf(font->layout("\U0010FFFD", {0, 0})), 1U) << "no .notdef";
    EXPECT_NE(laidOut(*font, "e"), laidOut(*font, "\u00E9"));
}

TEST(FontTest, LaysOutRightToLeftScripts) {
    const auto font = testFont(40);
    // Alef and lamed: the first character stands rightmost.
    const auto run = font->layout("\u05D0\u05DC", {0, 0});
    const auto alef = font->layout("\u05D0", {font->advance("\u05DC"), 0});
    ASSERT_EQ(run.masks().size(), 2U);
    ASSERT_EQ(alef.masks().size(), 1U);
    EXPECT_EQ(run.masks()[1].x, alef.masks()[0].x);
    EXPECT_EQ(run.masks()[1].coverage, alef.masks()[0].coverage);
}

TEST(FontTest, RunsOutliveTheirFont) {
    auto font = testFont(30);
    const auto run = font->layout("Quiravent", {0, 0});
    const std::string before = described(run);
    font.reset();
    EXPECT_EQ(described(run), before);
}

TEST(FontTest, MayBeUsedByManyThreads) {
    const auto font = testFont(18);
    const std::string expected = laidOut(*font, "shared text 0");
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number)
        threads.emplace_back([&, number] {
            for (int i = 0; i < 50; ++i) {
                font->measure("own text " + std::to_string(number * 100 + i));
                EXPECT_EQ(laidOut(*font, "shared text 0"), expected);
            }
            EXPECT_EQ(laidOut(*testFont(18), "shared text 0"), expected);
        });
    for (auto& thread : threads) thread.join();
}

TEST(FontLoaderTest, NamesTheLocationOfWhatFails) {
    EXPECT_TRUE(desktop::loadFont(std::string("file://") + TEST_FONT, 12));
    const std::string font = TEST_FONT;
    const struct {
        std::string location;
        uint32_t height;
        std::string reason;
    } kCases[] = {
        {font, 0, "cannot load font '" + font + "': a font of 0 pixels; possible are 1 to 255"},
        {font, 256, "cannot load font '" + font + "': a font of 256 pixels; possible are 1 to 255"},
        {"/proc/self/cmdline", 12,
         "cannot load font '/proc/self/cmdline': it is neither a TrueType nor an OpenType font"},
        {"/missing.ttf", 12, "cannot read '/missing.ttf': no such file"},
        {"/proc/self/mem", 12, "cannot read '/proc/self/mem': Input/output error"},
    };
    for (const auto& expected : kCases) {
        const auto result = desktop::loadFont(expected.location, expected.height);
        ASSERT_FALSE(result) << expected.location;
        EXPECT_EQ(result.reason(), expected.reason);
    }
}

}  // namespace
}  // namespace quiravent::test
