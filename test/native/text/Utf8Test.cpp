#include "graphics/text/Utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace quiravent::desktop {
namespace {

std::u32string decoded(std::string_view text) {
    std::u32string characters;
    while (!text.empty()) characters += takeUtf8Character(text);
    return characters;
}

TEST(Utf8Test, DecodesTheBoundsOfEachLengthAndReplacesEachMaximalSubpartOfBadBytes) {
    constexpr char32_t kBad = 0xFFFD;
    const struct {
        const char* what;
        std::string bytes;
        std::u32string characters;
    } kCases[] = {
        {"one byte", std::string("\0\x7F", 2), {0, 0x7F}},
        {"two bytes", "\xC2\x80\xDF\xBF", {0x80, 0x7FF}},
        {"three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", {0x800, 0xFFFF}},
        {"beside the surrogates", "\xED\x9F\xBF\xEE\x80\x80", {0xD7FF, 0xE000}},
        {"four bytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", {0x10000, 0x10FFFF}},
        {"Unicode table 3-8, not shortest forms", "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41",
         std::u32string(8, kBad) + U"A"},
        {"Unicode table 3-9, surrogates", "\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41",
         std::u32string(8, kBad) + U"A"},
        {"Unicode table 3-10, other bytes",
         "\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42",
         {kBad, kBad, kBad, kBad, kBad, 'A', kBad, kBad, 'B'}},
        {"Unicode table 3-11, truncated",
         "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41",
         {kBad, kBad, kBad, kBad, 'A'}},
        {"cut off at the end", "a\xF0\x9F\x98", {'a', kBad}},
        {"a lead byte after a lead byte", "\xC3\xC3\xA9", {kBad, 0xE9}},
        {"beyond the last character", "\xF5\x80\x80\x80", std::u32string(4, kBad)},
        {"five and six bytes", "\xF8\x88\x80\x80\x80", std::u32string(5, kBad)},
    };
    for (const auto& expected : kCases)
        EXPECT_EQ(decoded(expected.bytes), expected.characters) << expected.what;
}

}  // namespace
}  // namespace quiravent::desktop
