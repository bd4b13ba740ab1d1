#include "media/TestOutput.h"

#include "common/filmNumber.h"
#include "support/Clock.h"

namespace quiravent::test {

namespace {

uint32_t brightnessAt(const desktop::Surface& surface, uint32_t x, uint32_t y) {
    return surface.row(y)[x] >> 8 & 0xFF;
}

std::optional<SeenPicture> see(const desktop::VideoPicture& picture) {
    const desktop::Surface& surface = *picture.surface;
    return SeenPicture{pictureNumber(surface), desktop::clock::now(), picture.position,
                       surface.width(), surface.height()};
}

}  // namespace

int pictureNumber(const desktop::Surface& surface) {
    return filmNumber(surface.width(), surface.height(),
                      [&](uint32_t x, uint32_t y) { return brightnessAt(surface, x, y); });
}

TestOutput::TestOutput() : RecordingOutput(see) {}

bool TestOutput::waitForNumber(int number) const {
    return waitUntil(
        [=](const auto& seen) { return !seen.empty() && seen.back().number == number; });
}

}  // namespace quiravent::test
