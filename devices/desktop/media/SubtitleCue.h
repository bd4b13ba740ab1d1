#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "graphics/Canvas.h"

namespace quiravent::desktop {

/// A subtitle's picture: premultiplied ARGB32, row by row.
struct SubtitleBitmap {
    uint32_t x;
    uint32_t y;
    uint32_t width;
    uint32_t height;
    std::vector<uint32_t> pixels;
};

/// A piece of a line in one look: UTF-8, without markup.
struct StyledText {
    std::string text;
    Color color;
    Color background;
};

/// A line that has a place of its own. Places are parts of the video's width and height, 0 to 1.
struct PlacedLine {
    enum class Anchor { left, centre, right };
    Anchor anchor;  ///< which end of the line x tells
    double x;
    double bottom;
    std::vector<StyledText> pieces;
};

/// An area behind lines; its edges are parts of the video's width and height.
struct FilledArea {
    double left;
    double top;
    double right;
    double bottom;
    Color color;
};

/// What is seen from `begin` until `end`.
struct SubtitleCue {
    int64_t begin;
    int64_t end;
    std::vector<std::string> lines;  ///< UTF-8, without markup, for the usual place at the bottom
    std::vector<SubtitleBitmap> bitmaps;
    uint32_t areaWidth = 0;  ///< of the picture that the bitmaps' places refer to; 0: its own size
    uint32_t areaHeight = 0;
    std::vector<FilledArea> areas;
    std::vector<PlacedLine> placedLines;  ///< in the order in which they are read
};

}  // namespace quiravent::desktop
