#include "lineup/tables/sectionFrame.h"
#include "lineup/tables/sections.h"
#include "television/tableIds.h"

namespace quiravent::desktop::lineup {

namespace {

constexpr unsigned kReservedPidBits = 0xE000;

void writePid(ByteWriter& out, Pid pid) { out.word(kReservedPidBits | pid); }

void writeLanguage(ByteWriter& out, const std::string& language) { out.append(language); }

uint8_t typeOf(const Video& video) {
    return video.codec == VideoCodec::h264 ? stream_type::kH264 : stream_type::kMpeg2Video;
}

uint8_t typeOf(const Audio& audio) {
    return audio.codec == AudioCodec::aac ? stream_type::kAacAdts : stream_type::kMpeg1Audio;
}

/// Captions of the pictures, as ATSC A/65 (6.9.2) tells of them.
void writeCaptionService(ByteWriter& out, const Captions& captions) {
    constexpr unsigned kReserved = 0xC0;
    constexpr unsigned kDigital = 0x80;
    constexpr unsigned kReservedBits = 0x40;
    constexpr unsigned kLine21 = 0x3E;
    constexpr unsigned kNoReaderLevel = 0x3FFF;
    constexpr unsigned kServiceNumber = 1;
    out.byte(descriptor::kCaptionService);
    out.counted([&] {
        const unsigned count = (captions.cea608 ? 1 : 0) + (captions.cea708 ? 1 : 0);
        out.byte(kReserved | count);
        if (captions.cea608) {
            writeLanguage(out, captions.language);
            out.byte(kReservedBits | kLine21);
            out.word(kNoReaderLevel);
        }
        if (captions.cea708) {
            writeLanguage(out, captions.language);
            out.byte(kDigital | kReservedBits | kServiceNumber);
            out.word(kNoReaderLevel);
        }
    });
}

void writeSubtitling(ByteWriter& out, const Subtitles& subtitles) {
    constexpr unsigned kNormal = 0x10;
    constexpr unsigned kPage = 1;
    out.byte(descriptor::kSubtitling);
    out.counted([&] {
        writeLanguage(out, subtitles.language);
        out.byte(kNormal);
        out.word(kPage);
        out.word(kPage);
    });
}

void writeAudioLanguage(ByteWriter& out, const std::string& language) {
    out.byte(descriptor::kIso639Language);
    out.counted([&] {
        writeLanguage(out, language);
        out.byte(0);
    });
}

void writeStreams(ByteWriter& out, const Service& service) {
    constexpr unsigned kReserved = 0xF;
    const auto write = [&out](uint8_t type, Pid pid, const auto& writeDescriptors) {
        out.byte(type);
        writePid(out, pid);
        out.countedLoop(kReserved, writeDescriptors);
    };
    if (service.video) {
        write(typeOf(*service.video), service.video->pid, [&] {
            if (service.captions) writeCaptionService(out, *service.captions);
        });
    }
    for (const Audio& audio : service.audio) {
        write(typeOf(audio), audio.pid, [&] { writeAudioLanguage(out, audio.language); });
    }
    if (service.subtitles) {
        write(stream_type::kPrivateData, service.subtitles->pid,
              [&] { writeSubtitling(out, *service.subtitles); });
    }
}

}  // namespace

bool hasNetworkTable(const Lineup& lineup) {
    return !lineup.networkName.empty() || lineup.standard == Standard::isdb;
}

Sections associationTable(const Lineup& lineup) {
    return {longSection({table::kPat, lineup.transportStreamId}, [&](ByteWriter& out) {
        if (hasNetworkTable(lineup)) {
            out.word(0);
            writePid(out, kNitPid);
        }
        for (const Service& service : lineup.services) {
            out.word(service.id);
            writePid(out, service.mapPid);
        }
    })};
}

Sections mapTable(const Service& service) {
    return {longSection({table::kPmt, service.id}, [&](ByteWriter& out) {
        writePid(out, service.pcrPid);
        out.countedLoop(0xF, [] {});
        writeStreams(out, service);
    })};
}

}  // namespace quiravent::desktop::lineup
