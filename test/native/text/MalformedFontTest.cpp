#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "common/MalformedInput.h"
#include "text/TestFont.h"

namespace quiravent::test {
namespace {

using desktop::Bytes;
using desktop::Font;

const std::string kText = "AVfi \u00E9\u0416 \u05D0\u0628\u0651 e\u0301";

/// The reason of the failure; empty when there is a font, with which text is then laid out.
std::string failureOf(const Bytes& bytes) {
    const auto font = Font::load(bytes, 40);
    if (!font) return font.reason();
    (*font)->measure(kText);
    described((*font)->layout(kText, 10, 10, {1, 2}));
    return {};
}

uint32_t bigEndian(const Bytes& bytes, size_t at) {
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) value = value << 8 | bytes[at + i];
    return value;
}

/// The test font as the only face of a collection.
Bytes collection() {
    constexpr uint32_t kHeader = 16;
    Bytes bytes{'t', 't', 'c', 'f', 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, kHeader};
    const Bytes& font = testFontBytes();
    bytes.insert(bytes.end(), font.begin(), font.end());
    const size_t tables = font[4] * 256U + font[5];
    for (size_t i = 0; i < tables; ++i) {
        const size_t offset = kHeader + 12 + 16 * i + 8;
        putBigEndian(bytes, offset, bigEndian(bytes, offset) + kHeader);
    }
    return bytes;
}

Bytes withTag(const std::string& from, const std::string& to) {
    Bytes bytes = testFontBytes();
    std::copy(to.begin(), to.end(),
              std::search(bytes.begin(), bytes.end(), from.begin(), from.end()));
    return bytes;
}

TEST(MalformedFontTest, OpensTheFirstFaceOfACollection) {
    auto font = Font::load(collection(), 24);
    ASSERT_TRUE(font) << font.reason();
    EXPECT_EQ(laidOut(**font, kText), laidOut(*testFont(24), kText));
}

TEST(MalformedFontTest, RefusesEveryTruncationAndSurvivesChangedBytes) {
    for (const Bytes& font : {testFontBytes(), collection()}) {
        for (const Bytes& bytes : truncations(font, font.size(), 50))
            EXPECT_NE(failureOf(bytes), "") << bytes.size();
        for (const Bytes& bytes : truncations(font, 400))
            EXPECT_EQ(failureOf(bytes).find("truncated font data"), 0U) << bytes.size();
    }
    for (const size_t reach : {size_t{512}, size_t{60000}, testFontBytes().size()})
        for (const Bytes& bytes : byteFlips(testFontBytes(), 60, reach)) failureOf(bytes);
}

TEST(MalformedFontTest, SaysWhyAFontIsRefused) {
    const struct {
        Bytes bytes;
        std::string reason;
    } kCases[] = {
        {{}, "truncated font data"},
        {{'w', 'O', 'F', 'F', 0, 0, 0, 0}, "it is neither a TrueType nor an OpenType font"},
        {Bytes(1000, 0), "it is neither a TrueType nor an OpenType font"},
        {withTag("glyf", "EBDT"), "the font has no outlines"},
    };
    for (const auto& expected : kCases) EXPECT_EQ(failureOf(expected.bytes), expected.reason);
    for (const uint32_t height : {0U, 256U})
        EXPECT_EQ(Font::load(testFontBytes(), height).reason(),
                  "a font of " + std::to_string(height) + " pixels; possible are 1 to 255");
    EXPECT_NE(failureOf(withTag("head", "xxxx")), "");
    EXPECT_NE(failureOf(withTag("maxp", "xxxx")), "");
}

}  // namespace
}  // namespace quiravent::test
