#include "television/text/DvbText.h"

#include <array>
#include <optional>
#include <utility>

#include "support/Text.h"
#include "television/text/CharacterSet.h"

namespace quiravent::desktop {

namespace {

/// By the first byte of the text, from 1 on.
constexpr std::array<const char*, 11> kSets = {
    "ISO-8859-5",  "ISO-8859-6",  "ISO-8859-7",  "ISO-8859-8",  "ISO-8859-9", "ISO-8859-10",
    "ISO-8859-11", "ISO-8859-12", "ISO-8859-13", "ISO-8859-14", "ISO-8859-15"};
constexpr const char* kDefaultSet = "ISO6937";
constexpr uint8_t kFirstPlainByte = 0x20;
constexpr uint8_t kEuroSign = 0xA4;  // in the default set, where ISO 6937 has nothing

struct Coded {
    std::string set;
    ByteView text;
    bool isDefault = false;
};

/// None for a set that is reserved, or that only its owner knows.
std::optional<Coded> withSet(ByteView text) {
    const uint8_t first = text.front();
    const ByteView rest = text.substr(1);
    if (first >= kFirstPlainByte) return Coded{kDefaultSet, text, true};
    if (first >= 1 && first <= kSets.size()) return Coded{kSets[first - 1U], rest};
    switch (first) {
        case 0x10:
            if (text.size() < 3) return std::nullopt;
            return Coded{joined("ISO-8859-", static_cast<int>(text[2])), text.substr(3)};
        case 0x11:
            return Coded{"UCS-2BE", rest};
        case 0x12:
            return Coded{"EUC-KR", rest};
        case 0x13:
            return Coded{"GBK", rest};
        case 0x14:
            return Coded{"UTF-16BE", rest};
        case 0x15:
            return Coded{"UTF-8", rest};
        default:
            return std::nullopt;
    }
}

std::u32string withEuroSigns(ByteView text) {
    const CharacterSet set(kDefaultSet);
    std::u32string result;
    while (true) {
        const size_t at = text.find(kEuroSign);
        result += set.decode(text.substr(0, at));
        if (at == ByteView::npos) return result;
        result += U'€';
        text.remove_prefix(at + 1);
    }
}

}  // namespace

std::u32string dvbText(ByteView text) {
    if (text.empty()) return {};
    const std::optional<Coded> coded = withSet(text);
    if (!coded) return CharacterSet("ASCII").decode(text.substr(1));
    return coded->isDefault ? withEuroSigns(coded->text)
                            : CharacterSet(coded->set.c_str()).decode(coded->text);
}

}  // namespace quiravent::desktop
