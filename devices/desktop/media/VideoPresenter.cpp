#include "media/VideoPresenter.h"

#include <utility>

namespace quiravent::desktop {

void VideoPresenter::setBounds(const Rect& bounds) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_bounds = bounds;
}

Rect VideoPresenter::bounds() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_bounds;
}

void VideoPresenter::present(VideoFrame frame) {
    m_frame = std::move(frame);
    redraw();
}

void VideoPresenter::setVisible(bool visible) {
    if (m_visible == visible) return;
    m_visible = visible;
    if (visible) {
        redraw();
        return;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_closed) m_output.hide();
}

void VideoPresenter::redraw() {
    if (!m_visible || !hasPicture()) return;
    const Rect bounds = this->bounds();
    if (bounds.width == 0 || bounds.height == 0) return;
    const std::shared_ptr<Surface> surface =
        m_scaler.scale(m_frame, bounds.width, bounds.height, m_pool);
    if (!surface) return;
    followSubtitles();
    for (const SubtitleCue* const cue : shownCues())
        m_painter.paint(*cue, surface, fittedBox(bounds.width, bounds.height, m_frame));
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_closed) m_output.show({surface, bounds, m_frame.pts});
}

std::vector<const SubtitleCue*> VideoPresenter::shownCues() const {
    const SubtitleCue* const subtitle = m_subtitles ? m_subtitles->at(m_frame.pts) : nullptr;
    const SubtitleCue* const caption = m_captions ? m_captions->cue() : nullptr;
    std::vector<const SubtitleCue*> cues;
    for (const SubtitleCue* const cue : {subtitle, caption})
        if (cue != nullptr && hasPicture()) cues.push_back(cue);
    return cues;
}

void VideoPresenter::followSubtitles() {
    PacketSource::Read read{};
    while (m_source.tryNext(TrackKind::subtitle, m_subtitleSerial, read)) {
        if (read.state == PacketSource::Read::State::closed) return;
        if (read.state == PacketSource::Read::State::newSegment) {
            m_subtitleSerial = read.segment.serial;
            m_subtitles =
                read.segment.track ? std::make_unique<SubtitleTrack>(*read.segment.track) : nullptr;
            m_subtitlePackets.clear();
        } else if (read.state == PacketSource::Read::State::packet) {
            m_subtitlePackets.push_back(std::move(read.packet));
        }
    }
    while (!m_subtitlePackets.empty() && m_subtitlePackets.front()->pts <= m_frame.pts) {
        if (m_subtitles) m_subtitles->decode(*m_subtitlePackets.front());
        m_subtitlePackets.pop_front();
    }
}

void VideoPresenter::close() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_closed) m_output.hide();
    m_closed = true;
}

}  // namespace quiravent::desktop
