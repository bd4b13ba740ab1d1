#include "Utf8.h"

#include <cstddef>
#include <cstdint>

namespace quiravent::desktop {

namespace {

/// What a lead byte demands of the bytes after it: table 3-7 of the Unicode Standard. Only the
/// second byte is ever bounded more tightly than 80 to BF.
struct Sequence {
    size_t length;  ///< 0 for a byte that can't begin a character
    uint8_t leadBits;
    uint8_t secondLow;
    uint8_t secondHigh;
};

Sequence sequenceOf(uint8_t lead) {
    if (lead < 0x80) return {1, lead, 0x80, 0xBF};
    if (lead < 0xC2 || lead > 0xF4) return {0, 0, 0, 0};
    if (lead < 0xE0) return {2, static_cast<uint8_t>(lead & 0x1F), 0x80, 0xBF};
    const uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (lead < 0xF0) return {3, static_cast<uint8_t>(lead & 0x0F), low, high};
    return {4, static_cast<uint8_t>(lead & 0x07), low, high};
}

}  // namespace

char32_t takeUtf8Character(std::string_view& text) {
    const Sequence sequence = sequenceOf(static_cast<uint8_t>(text[0]));
    char32_t character = sequence.leadBits;
    uint8_t low = sequence.secondLow;
    uint8_t high = sequence.secondHigh;
    size_t taken = 1;
    for (; taken < sequence.length && taken < text.size(); ++taken) {
        const auto byte = static_cast<uint8_t>(text[taken]);
        if (byte < low || byte > high) break;
        character = character << 6 | (byte & 0x3FU);
        low = 0x80;
        high = 0xBF;
    }
    text.remove_prefix(taken);
    return taken == sequence.length ? character : kReplacementCharacter;
}

}  // namespace quiravent::desktop
