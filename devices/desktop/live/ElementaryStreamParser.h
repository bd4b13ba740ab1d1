#pragma once

#include <memory>
#include <vector>

#include "live/PesAssembler.h"
#include "media/Packet.h"
#include "television/MultiplexDescription.h"

struct AVCodecParserContext;

namespace quiravent::desktop {

/// Cuts what the units of a stream carry into pictures, pieces of sound, or subtitles. For one
/// thread.
class ElementaryStreamParser {
  public:
    /// Null when the device can't decode that codec, or nothing of its kind was asked for.
    static std::unique_ptr<ElementaryStreamParser> make(Pid pid, StreamCodec codec);
    ~ElementaryStreamParser();

    const TrackRef& track() const { return m_track; }

    /// Times are positions, in microseconds; kNoTime where the unit tells none.
    std::vector<PacketRef> parse(const PesUnit& unit, int64_t pts, int64_t dts);

  private:
    struct Close {
        void operator()(AVCodecParserContext* parser) const;
    };
    explicit ElementaryStreamParser(TrackRef track);
    PacketRef subtitle(const PesUnit& unit, int64_t pts) const;
    PacketRef packet(const uint8_t* data, size_t size, int64_t pts, int64_t dts);

    const TrackRef m_track;
    AvCodecContext m_context;
    std::unique_ptr<AVCodecParserContext, Close> m_parser;
    std::vector<uint8_t> m_padded;
    int64_t m_nextTime = 0;  ///< for what has none
};

}  // namespace quiravent::desktop
