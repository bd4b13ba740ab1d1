#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "media/MediaErrors.h"
#include "media/Packet.h"
#include "media/Timeline.h"

namespace quiravent::desktop {

/// How media are read.
struct InputLimits {
    int64_t timeLimit = 10 * kSecond;  ///< for opening, and for each silence while reading
    uint64_t bandwidth = 8000000;      ///< bits per second for the choice among variants
    std::string authorities;  ///< PEM file of who certifies servers; empty: whom the system trusts
};

/// What is known of a medium once it is open.
struct MediaInfo {
    std::vector<TrackRef> tracks;
    int64_t duration = 0;   ///< 0 where it has none, being live
    bool seekable = false;  ///< can go to any position
    bool remote = false;    ///< read from the network
};

/// An open medium: a local path, a file: URL, or a URL of HTTP; progressive, HLS or DASH. For one
/// thread at a time.
class MediaInput {
  public:
    /// cancelled: set by another thread, makes what is under way fail soon; outlives the input.
    MediaInput(const InputLimits& limits, const std::atomic<bool>& cancelled);
    MediaInput(const MediaInput&) = delete;
    MediaInput& operator=(const MediaInput&) = delete;

    /// Blocks until the tracks are known. Called once.
    MediaError open(const std::string& location);

    const MediaInfo& info() const { return m_info; }

    /// Goes back so far that a key packet of the leading track at or before the position follows,
    /// or to the beginning. Blocks.
    MediaError seekToKey(int64_t position, uint32_t leading);

    /// The next packet; null at the end of the medium and after an error. Blocks.
    PacketRef read(MediaError& error);

    /// Reads from now on the packets of one track only, as far as the format allows that.
    void readOnly(uint32_t track);

  private:
    static int isInterrupted(void* input);
    static int openPart(AVFormatContext* format, AVIOContext** stream, const char* url, int flags,
                        AVDictionary** options);
    MediaError openFormat(const std::string& target, bool remote);
    MediaError findTracks();
    TrackRef trackOf(const AVStream& stream) const;
    MediaError seek(int64_t position, uint32_t leading);
    void leaveOutBeforeKey(uint32_t leading);
    PacketRef readNext(MediaError& error);
    PacketRef toPacket(AvPacket data);
    int64_t mediumStart() const;

    const InputLimits m_limits;
    const std::atomic<bool>& m_cancelled;
    int64_t m_deadline = INT64_MAX;                          ///< on the steady clock, for opening
    decltype(AVFormatContext::io_open) m_openAny = nullptr;  ///< FFmpeg's own
    AvFormatContext m_format;
    MediaInfo m_info;
    std::vector<Timeline> m_timelines;  ///< per stream
    std::deque<PacketRef> m_read;       ///< read in advance by a seek
};

}  // namespace quiravent::desktop
