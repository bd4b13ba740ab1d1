#include "lineup/streams/FrameMark.h"

#include "lineup/streams/PictureFormat.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr uint32_t kFrameBits = 0x80000001;  ///< 1 0 at the beginning, 0 1 at the end
constexpr uint32_t kFrameMask = 0xC0000003;

uint32_t checkOf(uint32_t content) {
    uint32_t check = 0;
    for (; content != 0; content >>= 4) check ^= content & 0xF;
    return check;
}

uint32_t cellsOf(const FrameMark& mark) {
    const uint32_t content = uint32_t{mark.service} << 16 | mark.number;
    return kFrameBits | content << 6 | checkOf(content) << 2;
}

}  // namespace

void drawMark(AVFrame& picture, const FrameMark& mark) {
    const uint32_t cells = cellsOf(mark);
    for (int i = 0; i < kMarkCells; ++i) {
        const int left = picture.width * i / kMarkCells;
        const int right = picture.width * (i + 1) / kMarkCells;
        const bool isSet = (cells >> (kMarkCells - 1 - i) & 1) != 0;
        fillRect(picture, left, 0, right - left + 1, picture.height / kMarkHeightPart,
                 isSet ? kYuvWhite : kYuvBlack);
    }
}

std::optional<FrameMark> readMark(uint32_t width, uint32_t height,
                                  const std::function<int(uint32_t x, uint32_t y)>& brightness) {
    constexpr int kMiddle = 128;
    uint32_t cells = 0;
    for (uint32_t i = 0; i < kMarkCells; ++i) {
        const uint32_t x = width * (2 * i + 1) / (2 * kMarkCells);
        cells = cells << 1 | (brightness(x, height / (2 * kMarkHeightPart)) >= kMiddle ? 1 : 0);
    }
    const uint32_t content = cells >> 6 & 0xFFFFFF;
    if ((cells & kFrameMask) != kFrameBits || (cells >> 2 & 0xF) != checkOf(content)) {
        return std::nullopt;
    }
    return FrameMark{static_cast<uint8_t>(content >> 16), static_cast<uint16_t>(content)};
}

}  // namespace quiravent::desktop::lineup
