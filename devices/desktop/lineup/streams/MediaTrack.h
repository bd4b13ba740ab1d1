#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "lineup/description/fields.h"
#include "media/Decoder.h"
#include "media/MediaInput.h"

namespace quiravent::desktop::lineup {

/// One track of a medium that is read again from its beginning when it is over. Times go on then,
/// by the duration of the medium, so that tracks of one medium stay together.
class MediaTrack {
  public:
    /// number: which of the medium's tracks of that kind, from 1 on. place: of the medium's path,
    /// for messages. Throws DeviceError when the medium can't be opened or lacks the track.
    MediaTrack(std::string path, TrackKind kind, size_t number, const Place& place);

    const Track& track() const { return *m_track; }
    const Place& place() const { return m_place; }

    /// The next packet of the track. Null when the medium is over: the next call begins again. Its
    /// times are those of the medium; begin() is what has to be added.
    PacketRef read();
    int64_t begin() const { return m_begin; }

    /// Throws DeviceError: the medium can't be used.
    [[noreturn]] void refuse(const std::string& reason) const;

  private:
    void open();

    const std::string m_path;
    const TrackKind m_kind;
    const size_t m_number;
    const Place m_place;
    const std::atomic<bool> m_cancelled{false};
    std::unique_ptr<MediaInput> m_input;
    TrackRef m_track;
    int64_t m_begin = 0;
    int64_t m_end = 0;  ///< of the packets read since the medium began
    bool m_isOver = false;
};

/// The decoded content of such a track.
class DecodedTrack {
  public:
    /// Throws DeviceError when there is no decoder for it.
    explicit DecodedTrack(MediaTrack& track);

    /// The next picture or piece of sound; its pts includes what went before, in microseconds.
    /// Throws DeviceError when there is nothing that can be decoded.
    AvFrame next();

  private:
    void feed();

    MediaTrack& m_track;
    std::unique_ptr<Decoder> m_decoder;
    int64_t m_begin = 0;        ///< of the run of the medium that is being decoded
    bool m_isOver = false;      ///< this run has been read, and is being drained
    bool m_hasDecoded = false;  ///< in this run
};

}  // namespace quiravent::desktop::lineup
