#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "television/TransportPacket.h"

namespace quiravent::desktop {

/// What a packet identifier carries.
enum class StreamCodec {
    other,  ///< known by its number only, see ElementaryStream::type
    mpeg1Video,
    mpeg2Video,
    h264,
    hevc,
    mpegAudio,  ///< layers I to III
    aac,        ///< with ADTS headers
    aacLatm,
    ac3,
    eac3,
    dvbSubtitle,
    teletext,
    isdbCaption,
};

enum class StreamKind { video, audio, subtitle, other };
StreamKind kindOf(StreamCodec codec);

// Names for people and for JSON, such as "H.264" and "video".
const char* nameOf(StreamCodec codec);
const char* nameOf(StreamKind kind);

/// One stream of a service, as its program map tells it.
struct ElementaryStream {
    Pid pid = kNullPid;
    uint8_t type = 0;  ///< the map's number
    StreamCodec codec = StreamCodec::other;
    std::string language;              ///< ISO 639-2; empty where none is told
    std::vector<uint8_t> descriptors;  ///< of the stream, as they stand in the map
};

/// What is on, or is on next.
struct ServiceEvent {
    uint16_t id = 0;
    /// Seconds since the beginning of 1970: UTC with DVB, the broadcaster's own time of day with
    /// ISDB. 0 where it isn't told.
    int64_t start = 0;
    uint32_t duration = 0;  ///< seconds
    std::string language;   ///< of the texts, ISO 639-2
    std::string title;
    std::string text;
};

/// A programme of the multiplex. What its tables haven't told yet is empty.
struct Service {
    uint16_t number = 0;  ///< program number, which is the service's identifier
    Pid mapPid = kNullPid;
    Pid pcrPid = kNullPid;
    bool hasMap = false;  ///< pcrPid and streams are known
    std::vector<ElementaryStream> streams;
    uint8_t type = 0;  ///< of the service description: 1 television, 2 radio, ...
    std::string name;
    std::string provider;
    std::optional<ServiceEvent> present;
    std::optional<ServiceEvent> following;
};

/// What the tables of a multiplex tell. Texts are UTF-8.
struct MultiplexDescription {
    uint16_t transportStreamId = 0;
    uint16_t networkId = 0;  ///< 0 while unknown
    std::string networkName;
    std::vector<Service> services;  ///< in the order of the association table

    /// The stream of any service with that packet identifier; null when none has it.
    const ElementaryStream* findStream(Pid pid) const;
};
using MultiplexRef = std::shared_ptr<const MultiplexDescription>;

}  // namespace quiravent::desktop
