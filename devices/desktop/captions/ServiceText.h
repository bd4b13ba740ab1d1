#pragma once

#include <cstdint>
#include <string>

namespace quiravent::desktop {

/// UTF-8 of a character of CEA-708: of G0 and G1, 0x20 to 0x7F and 0xA0 to 0xFF.
std::string serviceCharacter(uint8_t code);

/// The same of the extended sets G2 and G3; a code without a character gives an underline, as
/// receivers do that lack it.
std::string extendedServiceCharacter(uint8_t code);

}  // namespace quiravent::desktop
