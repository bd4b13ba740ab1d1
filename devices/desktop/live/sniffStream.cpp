#include "live/sniffStream.h"

namespace quiravent::desktop {

namespace {

/// What a unit of video with that start code tells. second: the byte after the code.
StreamCodec codecOfStartCode(uint8_t code, uint8_t second) {
    constexpr uint8_t kSequenceHeader = 0xB3;  // ISO/IEC 13818-2
    constexpr uint8_t kHevcLayer0 = 0x01;      // ISO/IEC 23008-2: of the lowest layer
    if (code == kSequenceHeader) return StreamCodec::mpeg2Video;
    if ((code & 0x80) != 0) return StreamCodec::other;
    const unsigned hevcType = code >> 1U;
    const bool isHevcHead = hevcType >= 32 && hevcType <= 35;  // parameter sets, delimiter
    if (isHevcHead && (code & 1) == 0 && second == kHevcLayer0) return StreamCodec::hevc;
    const unsigned h264Type = code & 0x1FU;  // ISO/IEC 14496-10
    const bool isDelimiter = code == 0x09;
    const bool isParameterSet = h264Type == 7 && (code & 0x60) != 0;
    return isDelimiter || isParameterSet ? StreamCodec::h264 : StreamCodec::other;
}

StreamCodec sniffVideo(const uint8_t* data, size_t size) {
    for (size_t at = 0; at + 4 < size; ++at) {
        if (data[at] != 0 || data[at + 1] != 0 || data[at + 2] != 1) continue;
        const StreamCodec codec = codecOfStartCode(data[at + 3], data[at + 4]);
        if (codec != StreamCodec::other) return codec;
        at += 3;
    }
    return StreamCodec::other;
}

bool isMpegAudio(const uint8_t* data) {
    const unsigned layer = data[1] >> 1 & 3U;
    const unsigned bitRate = data[2] >> 4U;
    const unsigned sampleRate = data[2] >> 2 & 3U;
    return data[0] == 0xFF && (data[1] & 0xE0) == 0xE0 && layer != 0 && bitRate != 15 &&
           bitRate != 0 && sampleRate != 3;
}

bool isAdts(const uint8_t* data) {
    constexpr unsigned kRates = 13;
    return data[0] == 0xFF && (data[1] & 0xF6) == 0xF0 && (data[2] >> 2 & 0x0FU) < kRates;
}

StreamCodec sniffAudio(const uint8_t* data) {
    constexpr unsigned kLastAc3 = 10;
    constexpr unsigned kLastEac3 = 16;
    if (isAdts(data)) return StreamCodec::aac;
    if (isMpegAudio(data)) return StreamCodec::mpegAudio;
    if (data[0] == 0x56 && (data[1] & 0xE0) == 0xE0) return StreamCodec::aacLatm;
    if (data[0] != 0x0B || data[1] != 0x77) return StreamCodec::other;
    const unsigned version = data[5] >> 3U;
    if (version <= kLastAc3) return StreamCodec::ac3;
    return version <= kLastEac3 ? StreamCodec::eac3 : StreamCodec::other;
}

/// ETSI EN 300 743: identifier of the data, of the stream, and the first segment.
bool isDvbSubtitle(const uint8_t* data) {
    return data[0] == 0x20 && data[1] == 0x00 && data[2] == 0x0F;
}

}  // namespace

StreamCodec sniffStream(const uint8_t* data, size_t size) {
    constexpr size_t kLongestHead = 6;
    if (size < kLongestHead) return StreamCodec::other;
    if (isDvbSubtitle(data)) return StreamCodec::dvbSubtitle;
    const StreamCodec audio = sniffAudio(data);
    return audio != StreamCodec::other ? audio : sniffVideo(data, size);
}

}  // namespace quiravent::desktop
