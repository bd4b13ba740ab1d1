#include "captions/captionText.h"

#include <algorithm>

namespace quiravent::desktop {

namespace {

std::string trimmed(const std::string& text) {
    const size_t begin = text.find_first_not_of(' ');
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

}  // namespace

std::vector<std::string> captionText(const SubtitleCue& cue) {
    std::vector<const PlacedLine*> placed;
    for (const PlacedLine& line : cue.placedLines) placed.push_back(&line);
    std::stable_sort(placed.begin(), placed.end(), [](const auto* one, const auto* other) {
        return one->bottom < other->bottom;
    });
    std::vector<std::string> lines = cue.lines;
    for (const PlacedLine* line : placed) {
        std::string text;
        for (const StyledText& piece : line->pieces) text += piece.text;
        text = trimmed(text);
        if (!text.empty()) lines.push_back(std::move(text));
    }
    return lines;
}

}  // namespace quiravent::desktop
