#include "graphics/text/Font.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <thread>
#include <utility>

#include "text/TestFont.h"

namespace quiravent::test {
namespace {

TEST(FontTest, ScalesItsMeasuresAndRoundsThemUp) {
    for (const uint32_t height : {1U, 5U, 13U, 24U, 100U, 255U}) {
        SCOPED_TRACE(height);
        const auto font = testFont(height);
        const double scale = height / kUnitsPerEm;
        EXPECT_EQ(font->metrics().ascent, std::ceil(1901 * scale));
        EXPECT_EQ(font->metrics().descent, std::ceil(483 * scale));
        EXPECT_GE(font->metrics().lineHeight, std::ceil(2384 * scale));
        EXPECT_NEAR(static_cast<double>(font->advance("n")) / 64, 1298 * scale, 1.0 / 128);
        for (const size_t count : {0, 1, 100}) {
            const std::string line(count, 'n');
            const auto advance = static_cast<double>(font->advance(line));
            EXPECT_EQ(advance, static_cast<double>(font->advance("n")) * count);
            EXPECT_EQ(font->measure(line).width, std::ceil(advance / 64));
            EXPECT_EQ(font->measure(line).height, font->metrics().height());
        }
    }
}

TEST(FontTest, KernsAndFormsLigatures) {
    const auto font = testFont(100);
    EXPECT_LT(font->advance("AV"), font->advance("A") + font->advance("V"));
    EXPECT_EQ(font->advance("n n n"), 3 * font->advance("n") + 2 * font->advance(" "));
    const std::pair<const char*, size_t> counts[] = {
        {"", 0}, {"   ", 0}, {"One two  three ", 11}, {"fi", 1}, {"\U0010FFFD", 1}};
    for (const auto& [text, count] : counts) {
        const auto run = font->layout(text, {0, 0});
        EXPECT_EQ(run.masks().size(), count) << text;
    }
}

TEST(FontTest, SetsMarksAboveTheirLetters) {
    const auto font = testFont(48);
    for (const char* text : {"x\u0302", "X\u0302"}) {  // have no precomposed character
        const auto run = font->layout(text, {0, 0});
        ASSERT_EQ(run.masks().size(), 2U);
        const desktop::CoverageMask& letter = run.masks()[0];
        const desktop::CoverageMask& mark = run.masks()[1];
        // Soft edges may share a row.
        EXPECT_LE(mark.y + static_cast<int>(mark.height), letter.y + 1);
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
        {"a ligature", "fi", "\uFB01"},
        {"missing characters", "\U0010FFFD", "\U0010FFFC"},
        {"ignorable characters", "a\u200Bb\uFEFF\u00AD", "ab"},
    };
    for (const auto& expected : kCases) {
        EXPECT_EQ(laidOut(*font, expected.text), laidOut(*font, expected.same)) << expected.what;
        EXPECT_EQ(font->advance(expected.text), font->advance(expected.same)) << expected.what;
    }
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

TEST(FontTest, MayBeUsedByManyThreads) {
    const auto font = testFont(18);
    const std::string expected = laidOut(*font, "shared text 0");
    std::thread threads[4];
    for (auto& thread : threads)
        thread = std::thread([&] {
            const auto number = &thread - threads;
            for (int i = 0; i < 50; ++i) {
                font->measure("own text " + std::to_string(number * 100 + i));
                EXPECT_EQ(laidOut(*font, "shared text 0"), expected);
            }
            EXPECT_EQ(laidOut(*testFont(18), "shared text 0"), expected);
        });
    for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace quiravent::test
