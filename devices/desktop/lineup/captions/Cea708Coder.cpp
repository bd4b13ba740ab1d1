#include "lineup/captions/Cea708Coder.h"

#include <algorithm>
#include <cmath>

namespace quiravent::desktop::lineup {

namespace {

using Code = std::vector<uint8_t>;

constexpr unsigned kDefineWindow = 0x98;
constexpr unsigned kDisplayWindows = 0x89;
constexpr unsigned kDeleteWindows = 0x8C;
constexpr unsigned kSetPenLocation = 0x92;
constexpr uint8_t kEndOfText = 0x03;

uint8_t byte(unsigned value) { return static_cast<uint8_t>(value); }

constexpr uint8_t kStart = 0xFF;
constexpr uint8_t kContinuation = 0xFE;

/// A packet of the caption channel with one block of the service; its number comes later.
CaptionRun packetOf(const Code& block) {
    constexpr unsigned kService = 1;
    Code bytes{0, byte(kService << 5 | static_cast<unsigned>(block.size()))};
    bytes.insert(bytes.end(), block.begin(), block.end());
    if (bytes.size() % 2 != 0) bytes.push_back(0);
    bytes[0] = byte(static_cast<unsigned>(bytes.size() / 2));
    CaptionRun run;
    for (size_t i = 0; i < bytes.size(); i += 2) {
        run.push_back({i == 0 ? kStart : kContinuation, bytes[i], bytes[i + 1]});
    }
    return run;
}

/// Packets for codes, none of which may be divided among blocks.
std::vector<CaptionRun> packetsOf(const std::vector<Code>& codes) {
    constexpr size_t kMostBlockBytes = 31;
    std::vector<CaptionRun> runs;
    Code block;
    for (const Code& code : codes) {
        if (block.size() + code.size() > kMostBlockBytes) {
            runs.push_back(packetOf(block));
            block.clear();
        }
        block.insert(block.end(), code.begin(), code.end());
    }
    if (!block.empty()) runs.push_back(packetOf(block));
    return runs;
}

/// A window of that size, hidden, its middle at the bottom of the title-safe area.
Code defineWindow(unsigned window, size_t rows, size_t columns) {
    constexpr unsigned kLocksAndPriority = 0x18;
    constexpr unsigned kRelative = 0x80;
    constexpr unsigned kPercentDown = 95;
    constexpr unsigned kPercentAcross = 50;
    constexpr unsigned kBottomCentre = 7;
    constexpr unsigned kPopUpStyles = 0x09;
    return {byte(kDefineWindow + window),
            byte(kLocksAndPriority),
            byte(kRelative | kPercentDown),
            byte(kPercentAcross),
            byte(kBottomCentre << 4 | static_cast<unsigned>(rows - 1)),
            byte(static_cast<unsigned>(columns - 1)),
            byte(kPopUpStyles)};
}

/// Of the sets G0, which is ASCII but for the note, and G1, which is ISO 8859-1.
std::optional<uint8_t> codeOf(char32_t character) {
    constexpr uint8_t kNote = 0x7F;
    if (character == U'♪') return kNote;
    const bool isKnown =
        (character >= 0x20 && character <= 0x7E) || (character >= 0xA0 && character <= 0xFF);
    return isKnown ? std::optional(byte(character)) : std::nullopt;
}

}  // namespace

double Cea708Coder::slotsPerPicture(double pictureRate) const {
    // The channel has 600 constructs per second; two of a picture are for CEA-608.
    constexpr double kPerSecond = 600;
    return std::round(kPerSecond / pictureRate) - 2;
}

std::optional<CaptionCode> Cea708Coder::encode(const std::vector<std::u32string>& lines) {
    size_t columns = 1;
    for (const std::u32string& line : lines) columns = std::max(columns, line.size());
    std::vector<Code> codes{defineWindow(m_window, lines.size(), columns)};
    for (size_t row = 0; row < lines.size(); ++row) {
        const size_t column = (columns - lines[row].size()) / 2;
        codes.push_back({kSetPenLocation, static_cast<uint8_t>(row), static_cast<uint8_t>(column)});
        for (const char32_t character : lines[row]) {
            const std::optional<uint8_t> code = codeOf(character);
            if (!code) return std::nullopt;
            codes.push_back({*code});
        }
    }
    codes.push_back({kEndOfText});
    const uint8_t windows = byte(1U << m_window);
    m_window = 1 - m_window;
    CaptionCode code;
    code.load = packetsOf(codes);
    code.show = packetOf({kDisplayWindows, windows, kDeleteWindows, byte(1U << m_window)});
    code.hide = packetOf({kDeleteWindows, windows});
    return code;
}

void Cea708Coder::finish(SlotPlan& plan) const {
    unsigned number = 0;
    for (size_t slot = 0; slot < plan.size(); ++slot) {
        std::optional<CaptionTriplet>& triplet = plan.at(slot);
        if (!triplet || triplet->front() != kStart) continue;
        (*triplet)[1] = byte((*triplet)[1] | number << 6);
        number = (number + 1) % 4;
    }
}

}  // namespace quiravent::desktop::lineup
