#include "lineup/streams/MediaTrack.h"

#include <algorithm>

#include "media/MediaErrors.h"

namespace quiravent::desktop::lineup {

namespace {

/// A track that is shorter would have to begin again all the time.
constexpr int64_t kShortest = 10 * kMillisecond;

const char* nameOf(TrackKind kind) { return kind == TrackKind::video ? "video" : "sound"; }

}  // namespace

MediaTrack::MediaTrack(std::string path, TrackKind kind, size_t number, const Place& place)
    : m_path(std::move(path)), m_kind(kind), m_number(number), m_place(place) {
    open();
}

void MediaTrack::refuse(const std::string& reason) const {
    refuseValue(m_place, m_path,
                joined("a file with ", nameOf(m_kind), " track ", m_number,
                       " that can be read; here, ", reason));
}

void MediaTrack::open() {
    m_input = std::make_unique<MediaInput>(InputLimits(), m_cancelled);
    const MediaError error = m_input->open(m_path);
    if (error != MediaError::none) refuse(describe(error));
    size_t found = 0;
    for (const TrackRef& track : m_input->info().tracks) {
        if (track->kind == m_kind && ++found == m_number) m_track = track;
    }
    if (found < m_number) refuse(joined("there are ", found));
    m_input->readOnly(m_track->id);
    m_isOver = false;
    m_end = 0;
}

PacketRef MediaTrack::read() {
    if (m_isOver) {
        m_begin += std::max(m_input->info().duration, m_end);
        open();
    }
    MediaError error = MediaError::none;
    PacketRef packet = m_input->read(error);
    while (packet && packet->track != m_track->id) packet = m_input->read(error);
    if (error != MediaError::none) refuse(describe(error));
    m_isOver = !packet;
    if (packet) m_end = std::max(m_end, packet->end());
    if (m_isOver && m_end < kShortest) refuse("it is empty");
    return packet;
}

DecodedTrack::DecodedTrack(MediaTrack& track)
    : m_track(track), m_decoder(Decoder::open(track.track())) {
    if (!m_decoder) track.refuse(describe(MediaError::unknownCodec));
}

AvFrame DecodedTrack::next() {
    for (;;) {
        AvFrame frame = m_decoder->receive();
        if (frame && frame->best_effort_timestamp != kNoTime) {
            m_hasDecoded = true;
            frame->pts = frame->best_effort_timestamp + m_begin;
            return frame;
        }
        if (!frame) feed();
    }
}

void DecodedTrack::feed() {
    if (m_isOver) {
        if (!m_hasDecoded) m_track.refuse(describe(MediaError::undecodable));
        m_decoder->reset();
        m_isOver = false;
        m_hasDecoded = false;
    }
    const PacketRef packet = m_track.read();
    m_begin = m_track.begin();
    m_isOver = !packet;
    m_decoder->send(packet ? packet->data.get() : nullptr);
}

}  // namespace quiravent::desktop::lineup
