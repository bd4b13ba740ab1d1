#pragma once

#include "common/RecordingOutput.h"
#include "lineup/streams/FrameMark.h"

namespace quiravent::test {

using Mark = desktop::lineup::FrameMark;

inline std::optional<Mark> markOf(const desktop::VideoPicture& picture) {
    const desktop::Surface& surface = *picture.surface;
    return desktop::lineup::readMark(
        surface.width(), surface.height(),
        [&](uint32_t x, uint32_t y) { return static_cast<int>(surface.row(y)[x] >> 8 & 0xFF); });
}

struct MarkedOutput : RecordingOutput<Mark> {
    MarkedOutput() : RecordingOutput(markOf) {}
};

}  // namespace quiravent::test
