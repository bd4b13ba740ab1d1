#include "television/text/broadcastText.h"

#include <gtest/gtest.h>

#include "television/TestStream.h"

namespace quiravent::desktop {
namespace {

struct Case {
    const char* what;
    TextCoding coding;
    std::string bytes;
    const char* text;
};

TEST(BroadcastText, IsReadInTheSetThatItNames) {
    using namespace std::string_literals;
    constexpr TextCoding kDvb = TextCoding::dvb;
    constexpr TextCoding kLatin = TextCoding::isdbLatin;
    constexpr TextCoding kJapanese = TextCoding::isdbJapanese;
    const Case cases[] = {
        {"nothing", kDvb, "", ""},
        {"the default set, accents before letters", kDvb, "T\xC2\x65l\xC8u \xA4 5", "Télü € 5"},
        {"emphasis and a line break", kDvb, "a\x86\x62\x87\x8A\x63", "ab\nc"},
        {"Cyrillic", kDvb, "\x01\xBF\xD5\xE0\xD2\xEB\xD9", "Первый"},
        {"Latin 9 by its short number", kDvb, "\x0B\xA4\xE9", "€é"},
        {"Latin 9 by its long number", kDvb, "\x10\x00\x0F\xA4\xE9"s, "€é"},
        {"UTF-8, and a broken character", kDvb, "\x15Televis\xC3\xA3o \xC3", "Televisão \uFFFD"},
        {"two bytes, with a line break", kDvb, "\x11\x04\x10\xE0\x8A\x04\x11", "А\nБ"},
        {"a set of its owner", kDvb, "\x1F\x01hm", "hm"},
        {"a set that doesn't exist", kDvb, "\x10\x00\xFF hm"s, " hm"},
        {"a set cut off", kDvb, "\x10\x00"s, ""},
        {"Brazil", kLatin, "Rede Am\xE9rica \xA4 \x0DHD", "Rede América € \nHD"},
        {"Brazil, size and colour", kLatin, "\x89S\x90\x20\x45\xE3o\x8A", "São"},
        {"Kanji, then Latin letters", kJapanese, "\x46\x7C\x4B\x5C\x0ENHK\x0F\x1B\x7C\xA2",
         "日本NHKア"},
        {"Kana to the right, and for one character", kJapanese, "\xA2\xAB\x1D\x2B\xF9",
         "あか"
         "カ"
         "ー"},
        {"a designated set", kJapanese,
         "\x1B\x28\x4A"
         "BS1",
         "BS1"},
        {"a set of drawings", kJapanese, "\x1B\x28\x20\x41!\x0E!", "!"},
        {"half of a character", kJapanese, "\x46", "\uFFFD"},
        {"an escape cut off", kJapanese, "\x1B", ""},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.what);
        const test::Bytes bytes = test::bytesOf(one.bytes);
        EXPECT_EQ(broadcastText({bytes.data(), bytes.size()}, one.coding), one.text);
    }
}

}  // namespace
}  // namespace quiravent::desktop
