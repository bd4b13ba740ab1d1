#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "media/Av.h"

namespace quiravent::desktop::lineup {

/// What a test picture tells to machines, in a strip of 32 cells along its top edge, each a 32nd of
/// the picture wide, the strip a 16th of it high: white is 1, black is 0. The cells are
///
///   1 0 | 8 of the service's identifier | 16 of the number | 4 of the check | 0 1
///
/// with the highest bit first; identifier and number are cut to their lowest bits, and the check is
/// the exclusive or of their six groups of four bits.
struct FrameMark {
    uint8_t service = 0;
    uint16_t number = 0;  ///< of the picture in the loop, from 0 on

    bool operator==(const FrameMark& other) const {
        return service == other.service && number == other.number;
    }
};

constexpr int kMarkCells = 32;
constexpr int kMarkHeightPart = 16;

void drawMark(AVFrame& picture, const FrameMark& mark);

/// Reads the mark of a picture of any size. brightness: of the pixel at (x, y), 0 to 255. None when
/// there is no valid mark.
std::optional<FrameMark> readMark(uint32_t width, uint32_t height,
                                  const std::function<int(uint32_t x, uint32_t y)>& brightness);

}  // namespace quiravent::desktop::lineup
