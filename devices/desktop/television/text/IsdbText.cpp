#include "television/text/IsdbText.h"

#include <array>
#include <cstdint>

#include "television/text/CharacterSet.h"

namespace quiravent::desktop {

namespace {

/// Sets of characters by the byte that designates them.
enum Set : uint8_t {
    kKanji = 0x42,
    kKanjiPlane1 = 0x39,
    kKanjiPlane2 = 0x3A,
    kAdditionalSymbols = 0x3B,
    kAlphanumeric = 0x4A,
    kProportionalAlphanumeric = 0x36,
    kHiragana = 0x30,
    kProportionalHiragana = 0x37,
    kKatakana = 0x31,
    kProportionalKatakana = 0x38,
    kHalfWidthKatakana = 0x49,
    kLatinExtension = 0x4B,
    kLatinSpecial = 0x4C,
    kOther = 0,  ///< drawings, of which there is no text
};

bool hasTwoBytes(uint8_t set) {
    return set == kKanji || set == kKanjiPlane1 || set == kKanjiPlane2 || set == kAdditionalSymbols;
}

enum Control : uint8_t {
    kLineBreak = 0x0D,
    kLockingShift1 = 0x0E,
    kLockingShift0 = 0x0F,
    kParameterOne = 0x16,  // PAPF
    kSingleShift2 = 0x19,
    kEscape = 0x1B,
    kPositionSet = 0x1C,  // APS
    kSingleShift3 = 0x1D,
    kDelete = 0x7F,
    kColour = 0x90,
    kFirstWithParameter = 0x91,
    kTime = 0x9D,
    kLastWithParameter = 0x98,
    kControlSequence = 0x9B,
};

/// Characters of the kana sets from 0x77 on; the two that differ are those of repetition.
constexpr std::array<char32_t, 8> kHiraganaMarks = {U'ゝ', U'ゞ', U'ー', U'。',
                                                    U'「', U'」', U'、', U'・'};
constexpr std::array<char32_t, 8> kKatakanaMarks = {U'ヽ', U'ヾ', U'ー', U'。',
                                                    U'「', U'」', U'、', U'・'};
constexpr uint8_t kFirstMark = 0x77;

char32_t kana(uint8_t code, char32_t first, uint8_t last, const std::array<char32_t, 8>& marks) {
    if (code >= kFirstMark) return code - kFirstMark < 8 ? marks[code - kFirstMark] : U'\0';
    return code <= last ? first + (code - 0x21U) : U'\0';
}

class Decoder {
  public:
    Decoder(ByteView text, TextCoding coding) : m_reader(text) {
        if (coding == TextCoding::isdbLatin) {
            m_designated = {kAlphanumeric, kAlphanumeric, kLatinExtension, kLatinSpecial};
        } else {
            m_designated = {kKanji, kAlphanumeric, kHiragana, kKatakana};
        }
    }

    std::u32string decode() {
        while (!m_reader.isAtEnd()) takeNext();
        return std::move(m_text);
    }

  private:
    void takeNext() {
        const uint8_t byte = m_reader.byte();
        const uint8_t code = byte & 0x7F;
        if (code == ' ') {
            m_text += U' ';
        } else if (byte == kDelete || byte == 0xFF || code < 0x20) {
            if (byte != 0xFF) control(byte);
        } else if (byte < 0x80) {
            character(m_designated[m_single != 0 ? m_single : m_left], code);
            m_single = 0;
        } else {
            character(m_designated[m_right], code);
        }
    }

    void control(uint8_t byte) {
        if (byte == kLineBreak) m_text += U'\n';
        if (byte == kLockingShift0) m_left = 0;
        if (byte == kLockingShift1) m_left = 1;
        if (byte == kSingleShift2) m_single = 2;
        if (byte == kSingleShift3) m_single = 3;
        if (byte == kEscape) escape();
        m_reader.skip(parametersOf(byte));
    }

    /// How many bytes belong to a control besides itself.
    size_t parametersOf(uint8_t byte) {
        if (byte == kParameterOne) return 1;
        if (byte == kPositionSet || byte == kTime) return 2;
        if (byte >= kFirstWithParameter && byte <= kLastWithParameter) return 1;
        if (byte == kColour) return m_reader.byte() == 0x20 ? 1 : 0;
        if (byte == kControlSequence) skipSequence();
        return 0;
    }

    void skipSequence() {
        while (!m_reader.isAtEnd() && m_reader.byte() < 0x40) continue;
    }

    void escape() {
        const uint8_t first = m_reader.byte();
        switch (first) {
            case 0x6E:
                m_left = 2;
                return;
            case 0x6F:
                m_left = 3;
                return;
            case 0x7E:
                m_right = 1;
                return;
            case 0x7D:
                m_right = 2;
                return;
            case 0x7C:
                m_right = 3;
                return;
            default:
                designate(first);
        }
    }

    /// Puts a set in one of the four places: 0x28 to 0x2B name the place, 0x24 says that the set
    /// has two bytes and is followed by the place, or by the set for the first place.
    void designate(uint8_t byte) {
        bool isNamed = false;
        if (byte == 0x24) byte = m_reader.byte();
        size_t place = 0;
        if (byte >= 0x28 && byte <= 0x2B) {
            place = byte - 0x28U;
            byte = m_reader.byte();
            isNamed = true;
        }
        if (isNamed && byte == 0x20) {
            m_reader.byte();
            byte = kOther;
        }
        m_designated[place] = byte;
    }

    void character(uint8_t set, uint8_t code) {
        const char32_t decoded = hasTwoBytes(set) ? ofTwoBytes(set, code) : ofOneByte(set, code);
        if (decoded != 0) m_text += decoded;
    }

    char32_t ofTwoBytes(uint8_t set, uint8_t code) {
        const uint8_t second = m_reader.byte() | 0x80;
        if (set == kAdditionalSymbols || set == kKanjiPlane2 || code >= 0x75) return 0;
        const std::array<uint8_t, 2> bytes = {static_cast<uint8_t>(code | 0x80), second};
        const std::u32string decoded = m_kanji.decode({bytes.data(), bytes.size()});
        return decoded.empty() ? 0 : decoded.front();
    }

    char32_t ofOneByte(uint8_t set, uint8_t code) const {
        switch (set) {
            case kAlphanumeric:
            case kProportionalAlphanumeric:
                return code;
            case kHiragana:
            case kProportionalHiragana:
                return kana(code, U'ぁ', 0x73, kHiraganaMarks);
            case kKatakana:
            case kProportionalKatakana:
                return kana(code, U'ァ', 0x76, kKatakanaMarks);
            case kHalfWidthKatakana:
                return code <= 0x5F ? U'｡' + (code - 0x21U) : U'\0';
            case kLatinExtension: {
                const uint8_t byte = code | 0x80;
                return m_latin.decode({&byte, 1}).front();
            }
            default:
                return 0;
        }
    }

    ByteReader m_reader;
    std::array<uint8_t, 4> m_designated{};
    size_t m_left = 0;    ///< place of the set for bytes below 0x80
    size_t m_right = 2;   ///< and above
    size_t m_single = 0;  ///< place for the next character only; 0: none
    const CharacterSet m_kanji{"EUC-JP"};
    const CharacterSet m_latin{"ISO-8859-15"};
    std::u32string m_text;
};

}  // namespace

std::u32string isdbText(ByteView text, TextCoding coding) { return Decoder(text, coding).decode(); }

}  // namespace quiravent::desktop
