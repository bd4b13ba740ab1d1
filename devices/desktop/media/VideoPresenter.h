#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "graphics/Geometry.h"
#include "media/PacketSource.h"
#include "media/PictureCaptions.h"
#include "media/SubtitlePainter.h"
#include "media/SubtitleTrack.h"
#include "media/VideoOutput.h"
#include "media/VideoScaler.h"

namespace quiravent::desktop {

/// Brings decoded pictures, with the subtitles on them, to a player's output. For the player's
/// thread, but for the bounds and close().
class VideoPresenter {
  public:
    /// Source, output and pool outlive the presenter.
    VideoPresenter(PacketSource& source, VideoOutput& output, SurfacePool& pool,
                   const std::string& subtitleFont)
        : m_source(source), m_output(output), m_pool(pool), m_painter(subtitleFont) {}

    void setBounds(const Rect& bounds);
    Rect bounds() const;

    /// Captions inside the pictures from now on; null for none.
    void setCaptions(std::shared_ptr<PictureCaptions> captions) {
        m_captions = std::move(captions);
    }
    /// A picture's time has come, whether or not it is presented.
    void follow(const VideoFrame& frame) {
        if (m_captions) m_captions->follow(frame);
    }

    /// Takes the picture that is to be seen now, or is as soon as the presenter shows it.
    void present(VideoFrame frame);
    void setVisible(bool visible);
    bool isVisible() const { return m_visible; }
    /// Shows the present picture anew, since something about it has changed.
    void redraw();

    /// The subtitles and captions that belong onto the present picture.
    std::vector<const SubtitleCue*> shownCues() const;

    bool hasPicture() const { return m_frame.picture != nullptr; }
    const VideoFrame& picture() const { return m_frame; }
    /// Forgets the picture, so that it won't be shown; what is seen stays.
    void forget() { m_frame = {}; }

    /// Takes the picture away; nothing is shown from the return on.
    void close();

  private:
    void followSubtitles();

    PacketSource& m_source;
    VideoOutput& m_output;
    SurfacePool& m_pool;
    VideoScaler m_scaler;
    SubtitlePainter m_painter;
    std::unique_ptr<SubtitleTrack> m_subtitles;
    uint32_t m_subtitleSerial = 0;
    std::deque<PacketRef> m_subtitlePackets;  ///< that aren't due yet
    std::shared_ptr<PictureCaptions> m_captions;
    VideoFrame m_frame;
    bool m_visible = false;

    mutable std::mutex m_mutex;  ///< guards the bounds and the calls of the output
    Rect m_bounds{};
    bool m_closed = false;
};

}  // namespace quiravent::desktop
