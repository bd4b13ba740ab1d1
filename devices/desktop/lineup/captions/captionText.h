#pragma once

#include <string>
#include <vector>

namespace quiravent::desktop::lineup {

/// What fits on the screen, by both standards of captions.
constexpr size_t kMostCaptionLines = 4;
constexpr size_t kMostCaptionColumns = 32;
constexpr const char* kCaptionSize = "at most 4 lines of 32 characters";

/// The lines of a text, UTF-8, as characters.
std::vector<std::u32string> linesOf(const std::string& text);

/// Whether there aren't too many lines, nor characters in one.
bool fitsScreen(const std::vector<std::u32string>& lines);

}  // namespace quiravent::desktop::lineup
