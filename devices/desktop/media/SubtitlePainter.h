#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "graphics/Geometry.h"
#include "graphics/Surface.h"
#include "graphics/text/Font.h"
#include "media/SubtitleCue.h"

namespace quiravent::desktop {

/// Draws subtitles over pictures: text with a black edge, in white at the bottom unless it has a
/// colour and a place of its own, in a height that goes with the picture's. For one thread.
class SubtitlePainter {
  public:
    /// fontFile: a TrueType or OpenType file, read when text is drawn for the first time; without
    /// it text isn't drawn.
    explicit SubtitlePainter(std::string fontFile) : m_fontFile(std::move(fontFile)) {}

    /// area: where the video lies on the surface.
    void paint(const SubtitleCue& cue, const std::shared_ptr<Surface>& surface, const Box& area);

  private:
    struct Place {
        int32_t x = 0;
        int32_t bottom = 0;
        TextAlignment alignment{};
    };
    void paintUsualLines(const SubtitleCue& cue, const std::shared_ptr<Surface>& surface,
                         const Box& area);
    void paintLine(const StyledText& text, const std::shared_ptr<Surface>& surface,
                   const Place& place);
    void paintPlacedLine(const PlacedLine& line, const std::shared_ptr<Surface>& surface,
                         const Box& area);
    void paintBitmap(const SubtitleBitmap& bitmap, const SubtitleCue& cue,
                     const std::shared_ptr<Surface>& surface, const Box& area);
    bool prepareFont(const Box& area, int64_t linesInPicture);
    Font* fontOf(uint32_t pixelHeight);

    const std::string m_fontFile;
    uint32_t m_pixelHeight = 0;  ///< for which the font was loaded, or couldn't be
    std::shared_ptr<Font> m_font;
    SurfacePool m_pool{16U << 20};
};

}  // namespace quiravent::desktop
