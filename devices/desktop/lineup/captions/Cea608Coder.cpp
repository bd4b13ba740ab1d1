#include "lineup/captions/Cea608Coder.h"

#include <algorithm>

#include "lineup/captions/Cea608Characters.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr uint8_t kField1 = 0xFC;
constexpr uint8_t kControl = 0x14;
constexpr uint8_t kResumeLoading = 0x20;
constexpr uint8_t kEraseDisplayed = 0x2C;
constexpr uint8_t kEraseHidden = 0x2E;
constexpr uint8_t kEndOfCaption = 0x2F;

uint8_t withOddParity(uint8_t value) {
    unsigned ones = 0;
    for (unsigned rest = value & 0x7FU; rest != 0; rest >>= 1) ones += rest & 1;
    return static_cast<uint8_t>((value & 0x7F) | (ones % 2 == 0 ? 0x80 : 0));
}

CaptionTriplet pair(uint8_t first, uint8_t second) {
    return {kField1, withOddParity(first), withOddParity(second)};
}

/// Codes of two bytes are sent twice, in case one is lost.
CaptionRun doubled(uint8_t first, uint8_t second) { return CaptionRun(2, pair(first, second)); }

/// Writes the characters of rows, two in a place, codes in places of their own.
class RowWriter {
  public:
    void code(uint8_t first, uint8_t second) {
        flush();
        m_runs.push_back(doubled(first, second));
    }
    void character(const Cea608Character& character) {
        if (character.set == 0) {
            plain(character.code);
            return;
        }
        if (character.stem != 0) plain(character.stem);
        code(character.set, character.code);
    }
    std::vector<CaptionRun> take() {
        flush();
        return std::move(m_runs);
    }

  private:
    void plain(uint8_t code) {
        if (m_half == 0) {
            m_half = code;
        } else {
            m_runs.push_back({pair(m_half, code)});
            m_half = 0;
        }
    }
    void flush() {
        if (m_half != 0) m_runs.push_back({pair(m_half, 0)});
        m_half = 0;
    }

    std::vector<CaptionRun> m_runs;
    uint8_t m_half = 0;  ///< a character that waits for another one; 0: none
};

/// The first bytes of the preambles of rows 12 to 15, and the bit of the second one.
struct RowAddress {
    uint8_t first;
    uint8_t second;
};
constexpr std::array<RowAddress, 4> kRows{{{0x13, 0x40}, {0x13, 0x60}, {0x14, 0x40}, {0x14, 0x60}}};

/// Goes to a row and column, in white.
void address(RowWriter& writer, size_t row, size_t column) {
    constexpr uint8_t kIndent = 0x10;
    constexpr uint8_t kTabs = 0x17;
    constexpr uint8_t kFirstTab = 0x20;
    const auto indent = static_cast<uint8_t>(column / 4 * 2);
    const auto tabs = static_cast<uint8_t>(column % 4);
    writer.code(kRows[row].first, static_cast<uint8_t>(kRows[row].second | kIndent | indent));
    if (tabs != 0) writer.code(kTabs, static_cast<uint8_t>(kFirstTab + tabs));
}

bool writeLine(RowWriter& writer, const std::u32string& line) {
    for (const char32_t one : line) {
        const std::optional<Cea608Character> character = cea608Character(one);
        if (!character) return false;
        writer.character(*character);
    }
    return true;
}

}  // namespace

double Cea608Coder::slotsPerPicture(double pictureRate) const {
    constexpr double kMostRate = 30;
    return pictureRate > kMostRate ? 0.5 : 1;
}

std::optional<CaptionCode> Cea608Coder::encode(const std::vector<std::u32string>& lines) {
    constexpr size_t kColumns = 32;
    RowWriter writer;
    writer.code(kControl, kResumeLoading);
    writer.code(kControl, kEraseHidden);
    for (size_t i = 0; i < lines.size(); ++i) {
        address(writer, kRows.size() - lines.size() + i, (kColumns - lines[i].size()) / 2);
        if (!writeLine(writer, lines[i])) return std::nullopt;
    }
    return CaptionCode{writer.take(), doubled(kControl, kEndOfCaption),
                       doubled(kControl, kEraseDisplayed)};
}

}  // namespace quiravent::desktop::lineup
