#include "television/ProgramMap.h"

#include <array>

#include "television/Descriptors.h"
#include "television/tableIds.h"

namespace quiravent::desktop {

namespace {

struct CodecOfType {
    uint8_t type;
    StreamCodec codec;
};

/// ISO/IEC 13818-1, table 2-34, and the numbers of ATSC for Dolby's codecs.
constexpr std::array<CodecOfType, 10> kTypes{{{stream_type::kMpeg1Video, StreamCodec::mpeg1Video},
                                              {stream_type::kMpeg2Video, StreamCodec::mpeg2Video},
                                              {stream_type::kMpeg1Audio, StreamCodec::mpegAudio},
                                              {stream_type::kMpeg2Audio, StreamCodec::mpegAudio},
                                              {stream_type::kAacAdts, StreamCodec::aac},
                                              {stream_type::kAacLatm, StreamCodec::aacLatm},
                                              {stream_type::kH264, StreamCodec::h264},
                                              {stream_type::kH265, StreamCodec::hevc},
                                              {stream_type::kAc3, StreamCodec::ac3},

                                              {stream_type::kEac3, StreamCodec::eac3}}};

/// Data component 8 of ISDB is captions, of a stream with 0x12 those of mobile receivers.
bool isIsdbCaption(ByteView content) {
    const uint16_t component = ByteReader(content).word();
    return component == 0x0008 || component == 0x0012;
}

StreamCodec codecOfRegistration(ByteView content) {
    static constexpr std::array<uint8_t, 4> kAc3Format{'A', 'C', '-', '3'};
    static constexpr std::array<uint8_t, 4> kEac3Format{'E', 'A', 'C', '3'};
    static constexpr std::array<uint8_t, 4> kHevcFormat{'H', 'E', 'V', 'C'};
    const ByteView format = content.substr(0, 4);
    const auto is = [&](const std::array<uint8_t, 4>& known) {
        return format == ByteView(known.data(), known.size());
    };
    if (is(kAc3Format)) return StreamCodec::ac3;
    if (is(kEac3Format)) return StreamCodec::eac3;
    return is(kHevcFormat) ? StreamCodec::hevc : StreamCodec::other;
}

StreamCodec codecOfPrivateData(ByteView descriptors) {
    if (findDescriptor(descriptors, descriptor::kAc3)) return StreamCodec::ac3;
    if (findDescriptor(descriptors, descriptor::kEnhancedAc3)) return StreamCodec::eac3;
    if (findDescriptor(descriptors, descriptor::kSubtitling)) return StreamCodec::dvbSubtitle;
    if (findDescriptor(descriptors, descriptor::kTeletext)) return StreamCodec::teletext;
    const auto component = findDescriptor(descriptors, descriptor::kIsdbDataComponent);
    if (component && isIsdbCaption(*component)) return StreamCodec::isdbCaption;
    const auto registration = findDescriptor(descriptors, descriptor::kRegistration);
    return registration ? codecOfRegistration(*registration) : StreamCodec::other;
}

StreamCodec codecOf(uint8_t type, ByteView descriptors) {
    for (const CodecOfType& known : kTypes)
        if (known.type == type) return known.codec;
    return type == stream_type::kPrivateData ? codecOfPrivateData(descriptors) : StreamCodec::other;
}

/// The three letters that stand at a place of a descriptor's content; empty when they are none.
std::string languageAt(ByteView content, size_t place) {
    constexpr size_t kLetters = 3;
    if (content.size() < place + kLetters) return {};
    std::string language;
    for (const uint8_t byte : content.substr(place, kLetters)) {
        const char letter = static_cast<char>(byte | 0x20);
        if (letter < 'a' || letter > 'z') return {};
        language += letter;
    }
    return language;
}

std::string languageOf(ByteView descriptors) {
    constexpr size_t kPlaceInAudioComponent = 6;
    for (const uint8_t tag :
         {descriptor::kIso639Language, descriptor::kSubtitling, descriptor::kTeletext})
        if (const auto content = findDescriptor(descriptors, tag)) return languageAt(*content, 0);
    const auto component = findDescriptor(descriptors, descriptor::kIsdbAudioComponent);
    return component ? languageAt(*component, kPlaceInAudioComponent) : std::string();
}

}  // namespace

ProgramMap parseProgramMap(const Section& section) {
    ByteReader reader(section.body);
    ProgramMap map;
    map.pcrPid = reader.pid();
    reader.skip(reader.length());
    while (!reader.isAtEnd()) {
        ElementaryStream stream;
        stream.type = reader.byte();
        stream.pid = reader.pid();
        const ByteView descriptors = reader.take(reader.length());
        stream.codec = codecOf(stream.type, descriptors);
        stream.language = languageOf(descriptors);
        stream.descriptors.assign(descriptors.begin(), descriptors.end());
        map.streams.push_back(std::move(stream));
    }
    return map;
}

}  // namespace quiravent::desktop
