#include "lineup/streams/TestPictures.h"

#include <algorithm>
#include <array>
#include <memory>

#include "graphics/Canvas.h"
#include "graphics/text/FontLoader.h"
#include "lineup/streams/FrameMark.h"
#include "lineup/streams/PictureFormat.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr int kDigits = 5;

/// The segments of each digit, the lowest bit at the top, clockwise, the middle one last.
constexpr std::array<uint8_t, 10> kSegments{0x3F, 0x06, 0x5B, 0x4F, 0x66,
                                            0x6D, 0x7D, 0x07, 0x7F, 0x6F};

std::shared_ptr<Font> openFont(const std::string& file, uint32_t height) {
    Result<std::shared_ptr<Font>> font = loadFont(file, height);
    if (!font) {
        throw DeviceError(e_pl_status_invalid_argument,
                          joined("the font of the test picture can't be read: ", font.reason(),
                                 "; name another one as \"font\""));
    }
    return *font;
}

/// The font in which the text is as high as it can be within that width.
std::shared_ptr<Font> fittingFont(const std::string& file, const std::string& text, uint32_t height,
                                  uint32_t width) {
    std::shared_ptr<Font> font = openFont(file, height);
    const uint32_t needed = font->measure(text).width;
    if (needed <= width) return font;
    return openFont(file, std::max<uint32_t>(height * width / needed, 1));
}

AvFrame makeBackground(const Service& service, const std::string& fontFile) {
    const Video& video = *service.video;
    SurfacePool pool(size_t{video.width} * video.height * 8 + (1U << 20));
    const std::shared_ptr<Surface> surface = pool.create(video.width, video.height);
    if (!surface) throw std::bad_alloc();
    Canvas canvas(surface);
    const uint32_t colour = video.colour.value_or(0);
    canvas.setColor({static_cast<uint8_t>(colour >> 16), static_cast<uint8_t>(colour >> 8),
                     static_cast<uint8_t>(colour), 255});
    canvas.fillRect({0, 0, video.width, video.height});
    canvas.setColor({255, 255, 255, 255});
    const uint32_t height = std::min(video.height / 6, Font::kMaxPixelHeight);
    const auto font = fittingFont(fontFile, service.name, height, video.width * 9 / 10);
    const TextAlignment centred{1, 2};
    const GlyphRun run = font->layout(service.name, static_cast<int32_t>(video.width / 2),
                                      static_cast<int32_t>(video.height * 3 / 10), centred);
    canvas.drawMasks(run.masks().data(), run.masks().size(), {0, 0, video.width, video.height});
    return toPicture(*surface);
}

/// One digit of seven bars, each `bar` thick.
void drawDigit(AVFrame& picture, int digit, int left, int top, int height, int bar) {
    const int half = (height - 3 * bar) / 2;
    const int width = half + 2 * bar;
    const int right = left + width - bar;
    const int middle = top + bar + half;
    const std::array<std::array<int, 4>, 7> bars{{{left, top, width, bar},
                                                  {right, top, bar, half + 2 * bar},
                                                  {right, middle, bar, half + 2 * bar},
                                                  {left, top + height - bar, width, bar},
                                                  {left, middle, bar, half + 2 * bar},
                                                  {left, top, bar, half + 2 * bar},
                                                  {left, middle, width, bar}}};
    for (size_t i = 0; i < bars.size(); ++i) {
        if ((kSegments[static_cast<size_t>(digit)] >> i & 1) == 0) continue;
        fillRect(picture, bars[i][0], bars[i][1], bars[i][2], bars[i][3], kYuvWhite);
    }
}

}  // namespace

TestPictures::TestPictures(const Service& service, const std::string& fontFile, int64_t count)
    : m_service(static_cast<uint8_t>(service.id)),
      m_count(count),
      m_background(makeBackground(service, fontFile)) {}

AvFrame TestPictures::picture(int64_t number) {
    AvFrame picture = copyOf(*m_background);
    drawMark(*picture, {m_service, static_cast<uint16_t>(number)});
    drawNumber(*picture, number);
    drawSquare(*picture, number);
    return picture;
}

void TestPictures::drawNumber(AVFrame& picture, int64_t number) const {
    const int height = picture.height / 6;
    const int bar = std::max(height / 8, 2) & ~1;
    const int advance = height * 3 / 4;
    int left = picture.width / 2 + advance * kDigits / 2;
    for (int i = 0; i < kDigits; ++i, number /= 10) {
        left -= advance;
        drawDigit(picture, static_cast<int>(number % 10), left, picture.height * 45 / 100, height,
                  bar);
    }
}

void TestPictures::drawSquare(AVFrame& picture, int64_t number) const {
    const int side = picture.height / 12;
    const auto left = static_cast<int>((picture.width - side) * number / m_count);
    fillRect(picture, left, picture.height * 68 / 100, side, side, kYuvWhite);
}

}  // namespace quiravent::desktop::lineup
