#include "television/text/broadcastText.h"

#include "television/text/CharacterSet.h"
#include "television/text/DvbText.h"
#include "television/text/IsdbText.h"

namespace quiravent::desktop {

namespace {

// Line breaks of DVB, in sets of one byte and of two.
constexpr char32_t kNarrowLineBreak = 0x8A;
constexpr char32_t kWideLineBreak = 0xE08A;

/// Controls, and the part of the private use area in which broadcasters have controls too.
bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F) ||
           (character >= 0xE000 && character <= 0xF8FF);
}

}  // namespace

std::string broadcastText(ByteView text, TextCoding coding) {
    std::u32string plain;
    for (const char32_t character :
         coding == TextCoding::dvb ? dvbText(text) : isdbText(text, coding)) {
        const bool isBreak =
            character == U'\n' || character == kNarrowLineBreak || character == kWideLineBreak;
        if (isBreak) {
            plain += U'\n';
        } else if (!isControl(character)) {
            plain += character;
        }
    }
    return toUtf8(plain);
}

}  // namespace quiravent::desktop
