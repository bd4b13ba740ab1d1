#include "lineup/tables/textCoding.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "graphics/text/Utf8.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr uint8_t kLatin9Mark = 0x0B;
constexpr uint8_t kUtf8Mark = 0x15;

struct Replacement {
    uint8_t code;
    char32_t character;
};
/// Where ISO 8859-15 differs from ISO 8859-1, whose codes are those of Unicode.
constexpr std::array<Replacement, 8> kReplacements{{{0xA4, 0x20AC},
                                                    {0xA6, 0x160},
                                                    {0xA8, 0x161},
                                                    {0xB4, 0x17D},
                                                    {0xB8, 0x17E},
                                                    {0xBC, 0x152},
                                                    {0xBD, 0x153},
                                                    {0xBE, 0x178}}};

std::optional<uint8_t> latin9CodeOf(char32_t character) {
    for (const Replacement& one : kReplacements) {
        if (one.character == character) return one.code;
        if (one.code == character) return std::nullopt;
    }
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
        return static_cast<uint8_t>(character);
    }
    return std::nullopt;
}

std::optional<Bytes> latin9(std::string_view text) {
    Bytes bytes;
    while (!text.empty()) {
        const std::optional<uint8_t> code = latin9CodeOf(takeUtf8Character(text));
        if (!code) return std::nullopt;
        bytes.push_back(*code);
    }
    return bytes;
}

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char one) { return static_cast<unsigned char>(one) < 0x80; });
}

}  // namespace

std::optional<Bytes> encodeText(Standard standard, const std::string& text) {
    std::optional<Bytes> bytes = latin9(text);
    if (standard == Standard::isdb || (bytes && isAscii(text))) return bytes;
    const uint8_t mark = bytes ? kLatin9Mark : kUtf8Mark;
    if (!bytes) bytes = Bytes(text.begin(), text.end());
    bytes->insert(bytes->begin(), mark);
    return bytes;
}

}  // namespace quiravent::desktop::lineup
