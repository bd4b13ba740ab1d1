#pragma once

#include <cstdint>
#include <optional>

namespace quiravent::desktop::lineup {

/// A character of CEA-608.
struct Cea608Character {
    uint8_t set;   ///< 0: of the basic set; else the first byte of channel 1 that selects its set
    uint8_t code;  ///< within the set
    uint8_t stem;  ///< of the extended sets, which take the place of the character before: that one
};

/// None for characters that CEA-608 lacks.
std::optional<Cea608Character> cea608Character(char32_t character);

}  // namespace quiravent::desktop::lineup
