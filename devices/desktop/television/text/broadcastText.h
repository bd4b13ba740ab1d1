#pragma once

#include <string>

#include "television/ByteReader.h"

namespace quiravent::desktop {

/// How the texts of tables are coded.
enum class TextCoding {
    dvb,           ///< ETSI EN 300 468, annex A
    isdbLatin,     ///< ABNT NBR 15608-3: ARIB STD-B24's 8-bit codes with Latin sets at the start
    isdbJapanese,  ///< ARIB STD-B24, part 2, 7.2: with Kanji and Kana at the start
};

/// The text as UTF-8. Line breaks become line feeds; other controls are left out, and so are
/// characters that broadcasters draw themselves. What can't be decoded becomes U+FFFD.
std::string broadcastText(ByteView text, TextCoding coding);

}  // namespace quiravent::desktop
