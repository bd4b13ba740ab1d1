#include "lineup/streams/encodeSubtitles.h"

#include <algorithm>
#include <array>

#include "graphics/Surface.h"
#include "lineup/streams/Encoder.h"
#include "lineup/streams/fonts.h"
#include "media/SubtitlePainter.h"

namespace quiravent::desktop::lineup {

namespace {

/// Colours of a region: none, and then three levels of opacity with five of grey.
constexpr size_t kPaletteSize = 16;
constexpr uint32_t kGreys = 5;
constexpr uint32_t kOpacities = 3;

using Palette = std::array<uint32_t, kPaletteSize>;

Palette makePalette() {
    Palette palette{};
    for (uint32_t i = 1; i < kPaletteSize; ++i) {
        const uint32_t opacity = ((i - 1) / kGreys + 1) * 255 / kOpacities;
        const uint32_t grey = (i - 1) % kGreys * 255 / (kGreys - 1);
        palette.at(i) = opacity << 24 | grey << 16 | grey << 8 | grey;
    }
    return palette;
}

/// The nearest colour to a premultiplied pixel of grey.
uint8_t indexOf(uint32_t pixel) {
    const uint32_t alpha = pixel >> 24;
    const uint32_t opacity = (alpha * kOpacities + 127) / 255;
    if (opacity == 0) return 0;
    const uint32_t grey = std::min<uint32_t>((pixel & 0xFF) * 255 / alpha, 255);
    const uint32_t level = (grey * (kGreys - 1) + 127) / 255;
    return static_cast<uint8_t>(1 + (opacity - 1) * kGreys + level);
}

/// The rows of a surface with something on them.
struct Rows {
    uint32_t first;
    uint32_t count;
};

Rows usedRows(const Surface& surface) {
    const auto isUsed = [&surface](uint32_t y) {
        const uint32_t* const row = surface.row(y);
        return std::any_of(row, row + surface.width(),
                           [](uint32_t pixel) { return indexOf(pixel) != 0; });
    };
    uint32_t first = 0;
    uint32_t end = surface.height();
    while (first < end && !isUsed(first)) ++first;
    while (end > first && !isUsed(end - 1)) --end;
    return {first, end - first};
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines(1);
    for (const char one : text) {
        if (one == '\n') {
            lines.emplace_back();
        } else {
            lines.back().push_back(one);
        }
    }
    return lines;
}

/// Makes the pages of one stream.
class PageMaker {
  public:
    PageMaker(uint32_t width, uint32_t height, const std::string& fontFile,
              const std::string& subject)
        : m_width(width),
          m_height(height),
          m_painter(fontFile),
          m_pool(size_t{width} * height * 8 + (1U << 20)),
          m_encoder("dvbsub", subject, [&](AVCodecContext& context) {
              context.width = static_cast<int>(width);
              context.height = static_cast<int>(height);
              context.time_base = {1, 1000};
          }) {}

    std::vector<uint8_t> page(const std::string& text) {
        const std::shared_ptr<Surface> surface = m_pool.create(m_width, m_height);
        if (!surface) throw std::bad_alloc();
        SubtitleCue cue{};
        cue.lines = linesOf(text);
        m_painter.paint(cue, surface, boxAt(0, 0, m_width, m_height));
        const Rows rows = usedRows(*surface);
        if (rows.count == 0) return emptyPage();
        std::vector<uint8_t> pixels;
        for (uint32_t y = 0; y < rows.count; ++y) {
            const uint32_t* const row = surface->row(rows.first + y);
            std::transform(row, row + m_width, std::back_inserter(pixels), indexOf);
        }
        return encode(rows, pixels);
    }

    std::vector<uint8_t> emptyPage() { return framed(m_encoder.encode(AVSubtitle())); }

  private:
    std::vector<uint8_t> encode(const Rows& rows, std::vector<uint8_t>& pixels) {
        Palette palette = makePalette();
        AVSubtitleRect rect{};
        rect.type = SUBTITLE_BITMAP;
        rect.y = static_cast<int>(rows.first);
        rect.w = static_cast<int>(m_width);
        rect.h = static_cast<int>(rows.count);
        rect.nb_colors = static_cast<int>(palette.size());
        rect.data[0] = pixels.data();
        rect.data[1] = reinterpret_cast<uint8_t*>(palette.data());
        rect.linesize[0] = rect.w;
        AVSubtitleRect* rects = &rect;
        AVSubtitle subtitle{};
        subtitle.num_rects = 1;
        subtitle.rects = &rects;
        return framed(m_encoder.encode(subtitle));
    }

    /// Segments as a stream carries them (EN 300 743, 7.1).
    static std::vector<uint8_t> framed(const std::vector<uint8_t>& segments) {
        constexpr uint8_t kDataIdentifier = 0x20;
        constexpr uint8_t kStreamId = 0;
        constexpr uint8_t kEnd = 0xFF;
        std::vector<uint8_t> data(segments.size() + 3);
        data[0] = kDataIdentifier;
        data[1] = kStreamId;
        std::copy(segments.begin(), segments.end(), data.begin() + 2);
        data.back() = kEnd;
        return data;
    }

    const uint32_t m_width;
    const uint32_t m_height;
    SubtitlePainter m_painter;
    SurfacePool m_pool;
    Encoder m_encoder;
};

}  // namespace

AccessUnits encodeSubtitles(const Service& service, const std::string& fontFile, Ticks loop,
                            const std::string& subject) {
    constexpr uint32_t kStandardWidth = 720;
    constexpr uint32_t kStandardHeight = 576;
    constexpr Ticks kBeforeEnd = 40 * kTicksPerMillisecond;
    const bool hasSize = service.video && !service.video->copy;
    // The painter leaves texts out without a word when the font is missing.
    openFont(fontFile, 1);
    PageMaker maker(hasSize ? service.video->width : kStandardWidth,
                    hasSize ? service.video->height : kStandardHeight, fontFile, subject);
    const std::vector<Caption>& texts = service.subtitles->texts;
    AccessUnits units;
    const auto add = [&](int64_t milliseconds, std::vector<uint8_t> data) {
        const Ticks time = std::min(milliseconds * kTicksPerMillisecond, loop - kBeforeEnd);
        units.push_back({time, time, true, std::move(data)});
    };
    for (size_t i = 0; i < texts.size(); ++i) {
        add(texts[i].from, maker.page(texts[i].text));
        const bool isReplaced = i + 1 < texts.size() && texts[i + 1].from == texts[i].to;
        if (!isReplaced) add(texts[i].to, maker.emptyPage());
    }
    return units;
}

}  // namespace quiravent::desktop::lineup
