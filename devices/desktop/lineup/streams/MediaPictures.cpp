#include "lineup/streams/MediaPictures.h"

#include <new>

#include "lineup/streams/PictureFormat.h"

namespace quiravent::desktop::lineup {

namespace {

/// Frames may begin a little late by the rounding of their times.
constexpr int64_t kTolerance = 2 * kMillisecond;

}  // namespace

MediaPictures::MediaPictures(const Video& video, MediaTrack& track)
    : m_video(video),
      m_track(track),
      m_frames(track),
      m_next(m_frames.next()),
      m_pool(size_t{video.width} * video.height * 16 + (1U << 20)) {}

AvFrame MediaPictures::picture(int64_t number) {
    const int64_t time =
        av_rescale(number * kSecond, m_video.rate.denominator, m_video.rate.numerator);
    AvFrame newest;
    while (m_next->pts <= time + kTolerance || (!newest && !m_current)) {
        newest = std::move(m_next);
        m_next = m_frames.next();
    }
    if (newest) m_current = convert(std::move(newest));
    return copyOf(*m_current);
}

AvFrame MediaPictures::convert(AvFrame frame) {
    VideoFrame whole;
    whole.picture = std::shared_ptr<const AVFrame>(std::move(frame));
    whole.pixelAspect = m_track.track().pixelAspect;
    const std::shared_ptr<Surface> surface =
        m_scaler.scale(whole, m_video.width, m_video.height, m_pool);
    if (!surface) m_track.refuse("its pictures can't be converted");
    return toPicture(*surface);
}

}  // namespace quiravent::desktop::lineup
