#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "television/TransportPacket.h"

/// What a multiplex is made from. How each value is named in the file, and what it may be, stands
/// in lineupFields.cpp.
namespace quiravent::desktop::lineup {

/// What texts of the tables are written in, and which tables tell the time.
enum class Standard {
    dvb,   ///< ETSI EN 300 468: UTC, time and date table
    isdb,  ///< ABNT NBR 15603: ISO 8859-15, the time of day of Brasília, time offset table
};

/// Seconds that the time of Brasília is ahead of UTC.
constexpr int64_t kBrasiliaZone = -3 * int64_t{3600};

enum class VideoCodec { h264, mpeg2 };
enum class AudioCodec { aac, mp2 };

/// Pictures per second, as a fraction.
struct FrameRate {
    int numerator = 25;
    int denominator = 1;
};

/// A programme of the guide.
struct Event {
    uint16_t id = 0;
    std::string name;
    std::string text;
    std::string language = "por";  ///< ISO 639-2
    int64_t start = 0;             ///< seconds since the beginning of 1970, UTC
    uint32_t duration = 0;         ///< seconds
};

/// A text that is seen from one time of the loop to another, in milliseconds. Lines are separated
/// by line feeds.
struct Caption {
    int64_t from = 0;
    int64_t to = 0;
    std::string text;
};

/// Captions that go with the pictures: CEA-608 in channel CC1, CEA-708 in service 1.
struct Captions {
    bool cea608 = true;
    bool cea708 = true;
    std::string language = "por";
    std::vector<Caption> texts;
};

/// DVB subtitles, a stream of their own.
struct Subtitles {
    Pid pid = 0;
    std::string language = "por";
    std::vector<Caption> texts;
};

struct Video {
    Pid pid = 0;
    VideoCodec codec = VideoCodec::h264;
    uint32_t width = 640;
    uint32_t height = 360;
    FrameRate rate;
    uint32_t bitRate = 800000;
    std::optional<uint32_t> colour;  ///< of the test picture, 0xRRGGBB
    bool copy = false;               ///< take the medium's video as it is
};

struct Audio {
    Pid pid = 0;
    AudioCodec codec = AudioCodec::aac;
    std::string language = "por";
    uint32_t bitRate = 96000;
    double tone = 0;     ///< of the test sound, in Hz
    uint32_t track = 1;  ///< of the medium
    bool copy = false;   ///< take the medium's sound as it is
};

struct Service {
    uint16_t id = 0;
    std::string name;
    std::string provider = "Quiravent";
    Pid mapPid = 0;
    Pid pcrPid = 0;
    std::string media;  ///< path of a file; empty: test picture and tone
    std::optional<Video> video = Video();
    std::vector<Audio> audio = std::vector<Audio>(1);
    std::optional<Captions> captions;
    std::optional<Subtitles> subtitles;
    std::optional<Event> present;
    std::optional<Event> following;
};

/// Packet identifiers and the like that are 0 are given by completeLineup().
struct Lineup {
    std::string schema;  ///< where the file's schema lies, for editors
    uint16_t transportStreamId = 1;
    uint16_t originalNetworkId = 1;
    std::optional<uint16_t> networkId;  ///< none: the original network's
    std::string networkName;
    Standard standard = Standard::dvb;
    uint64_t bitRate = 0;              ///< of the multiplex, per second; 0: as low as it fits
    int64_t duration = 10000;          ///< of the loop, in milliseconds, before it is rounded up
    std::optional<int64_t> startTime;  ///< what the tables tell at the beginning, as Event::start
    std::string font;
    std::vector<Service> services;
};

}  // namespace quiravent::desktop::lineup
