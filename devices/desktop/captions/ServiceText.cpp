#include "captions/ServiceText.h"

#include <algorithm>
#include <array>

namespace quiravent::desktop {

namespace {

constexpr uint8_t kMusicNote = 0x7F;

struct Extended {
    uint8_t code;
    const char* text;
};

constexpr std::array kExtendedCharacters{
    Extended{0x20, " "}, Extended{0x21, "\u00A0"}, Extended{0x25, "…"},   Extended{0x2A, "Š"},
    Extended{0x2C, "Œ"}, Extended{0x30, "█"},      Extended{0x31, "‘"},   Extended{0x32, "’"},
    Extended{0x33, "“"}, Extended{0x34, "”"},      Extended{0x35, "•"},   Extended{0x39, "™"},
    Extended{0x3A, "š"}, Extended{0x3C, "œ"},      Extended{0x3D, "℠"},   Extended{0x3F, "Ÿ"},
    Extended{0x76, "⅛"}, Extended{0x77, "⅜"},      Extended{0x78, "⅝"},   Extended{0x79, "⅞"},
    Extended{0x7A, "│"}, Extended{0x7B, "┐"},      Extended{0x7C, "└"},   Extended{0x7D, "─"},
    Extended{0x7E, "┘"}, Extended{0x7F, "┌"},      Extended{0xA0, "[CC]"}};

}  // namespace

std::string serviceCharacter(uint8_t code) {
    if (code == kMusicNote) return "♪";
    if (code < 0x80) return {static_cast<char>(code)};
    // G1 is the upper half of ISO 8859-1, which Unicode has under the same numbers.
    return {static_cast<char>(0xC0 | (code >> 6)), static_cast<char>(0x80 | (code & 0x3F))};
}

std::string extendedServiceCharacter(uint8_t code) {
    const auto* const found = std::find_if(kExtendedCharacters.begin(), kExtendedCharacters.end(),
                                           [=](const Extended& one) { return one.code == code; });
    return found == kExtendedCharacters.end() ? "_" : found->text;
}

}  // namespace quiravent::desktop
