#include "TestFont.h"

#include <functional>
#include <sstream>
#include <stdexcept>

namespace quiravent::test {

const desktop::Bytes& testFontBytes() {
    static const auto bytes = desktop::readResource(TEST_FONT);
    if (!bytes) throw std::runtime_error(bytes.reason());
    return *bytes;
}

std::shared_ptr<desktop::Font> testFont(uint32_t pixelHeight) {
    auto font = desktop::Font::load(testFontBytes(), pixelHeight);
    if (!font) throw std::runtime_error(font.reason());
    return *font;
}

std::string described(const desktop::GlyphRun& run) {
    std::ostringstream text;
    for (const auto& mask : run.masks()) {
        std::string coverage;
        for (uint32_t y = 0; y < mask.height; ++y)
            coverage.append(mask.coverage + y * mask.stride,
                            mask.coverage + y * mask.stride + mask.width);
        text << mask.x << ',' << mask.y << ' ' << mask.width << 'x' << mask.height << " #"
             << std::hash<std::string>()(coverage) << '\n';
    }
    return text.str();
}

std::string laidOut(desktop::Font& font, const std::string& text) {
    return described(font.layout(text, {0, 0}));
}

}  // namespace quiravent::test
