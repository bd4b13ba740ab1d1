#include "lineup/captions/captionText.h"

#include <algorithm>
#include <string_view>

#include "graphics/text/Utf8.h"

namespace quiravent::desktop::lineup {

std::vector<std::u32string> linesOf(const std::string& text) {
    std::vector<std::u32string> lines(1);
    for (std::string_view rest = text; !rest.empty();) {
        const char32_t character = takeUtf8Character(rest);
        if (character == U'\n') {
            lines.emplace_back();
        } else {
            lines.back().push_back(character);
        }
    }
    return lines;
}

bool fitsScreen(const std::vector<std::u32string>& lines) {
    return lines.size() <= kMostCaptionLines &&
           std::all_of(lines.begin(), lines.end(), [](const std::u32string& line) {
               return line.size() <= kMostCaptionColumns;
           });
}

}  // namespace quiravent::desktop::lineup
