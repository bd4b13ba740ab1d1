#include "lineup/captions/Cea608Characters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quiravent::desktop::lineup {

namespace {

constexpr uint8_t kSpecialSet = 0x11;
constexpr uint8_t kSpanishFrenchSet = 0x12;
constexpr uint8_t kPortugueseGermanSet = 0x13;

struct Exception {
    uint8_t code;
    char32_t character;
};
/// Where the basic set differs from ASCII (CEA-608, table 50).
constexpr std::array<Exception, 10> kBasic{{{0x2A, U'á'},
                                            {0x5C, U'é'},
                                            {0x5E, U'í'},
                                            {0x5F, U'ó'},
                                            {0x60, U'ú'},
                                            {0x7B, U'ç'},
                                            {0x7C, U'÷'},
                                            {0x7D, U'Ñ'},
                                            {0x7E, U'ñ'},
                                            {0x7F, U'█'}}};

/// Of the special set, from 0x30 on (table 49).
constexpr std::u32string_view kSpecial = U"®°½¿™¢£♪à\u00A0èâêîôû";

/// Of the extended sets, from 0x20 on, with the characters that decoders without them show
/// (tables 5 to 10).
constexpr std::u32string_view kSpanishFrench = U"ÁÉÓÚÜü‘¡*’—©℠•“”ÀÂÇÈÊËëÎÏïÔÙùÛ«»";
constexpr std::string_view kSpanishFrenchStems = "AEOUUu'!*'-c .\"\"AACEEEeIIiOUuU\"\"";
constexpr std::u32string_view kPortugueseGerman = U"ÃãÍÌìÒòÕõ{}\\^_|~ÄäÖöß¥¤│ÅåØø┌┐└┘";
constexpr std::string_view kPortugueseGermanStems = "AaIIiOoOo()/ -!-AaOosY !AaOo    ";

static_assert(kSpecial.size() == 16);
static_assert(kSpanishFrench.size() == 32 && kSpanishFrenchStems.size() == 32);
static_assert(kPortugueseGerman.size() == 32 && kPortugueseGermanStems.size() == 32);

std::optional<Cea608Character> basic(char32_t character) {
    for (const Exception& one : kBasic) {
        if (one.character == character) return Cea608Character{0, one.code, 0};
        if (one.code == character) return std::nullopt;
    }
    if (character < 0x20 || character > 0x7A) return std::nullopt;
    return Cea608Character{0, static_cast<uint8_t>(character), 0};
}

std::optional<Cea608Character> extended(char32_t character, uint8_t set,
                                        std::u32string_view characters, std::string_view stems) {
    constexpr unsigned kFirst = 0x20;
    const size_t place = characters.find(character);
    if (place == std::u32string_view::npos) return std::nullopt;
    return Cea608Character{set, static_cast<uint8_t>(kFirst + place),
                           static_cast<uint8_t>(stems[place])};
}

}  // namespace

std::optional<Cea608Character> cea608Character(char32_t character) {
    constexpr unsigned kFirstSpecial = 0x30;
    if (const auto found = basic(character)) return found;
    const size_t special = kSpecial.find(character);
    if (special != std::u32string_view::npos) {
        return Cea608Character{kSpecialSet, static_cast<uint8_t>(kFirstSpecial + special), 0};
    }
    if (const auto found =
            extended(character, kSpanishFrenchSet, kSpanishFrench, kSpanishFrenchStems)) {
        return found;
    }
    return extended(character, kPortugueseGermanSet, kPortugueseGerman, kPortugueseGermanStems);
}

}  // namespace quiravent::desktop::lineup
