#include "live/sniffStream.h"

namespace quiravent::desktop {

namespace {

/// What the start code with that byte tells, and the byte after it.
StreamCodec codecOfStartCode(uint8_t code, uint8_t second) {
    constexpr uint8_t kHevcLayer0 = 0x01;  // ISO/IEC 23008-2: of the lowest layer
    const unsigned hevcType = code >> 1U;
    const bool isHevcHead = hevcType >= 32 && hevcType <= 35;  // parameter sets, delimiter
    if (isHevcHead && (code & 1) == 0 && second == kHevcLayer0) return StreamCodec::hevc;
    const unsigned h264Type = code & 0x1FU;  // ISO/IEC 14496-10
    const bool isDelimiter = code == 0x09;
    const bool isParameterSet = h264Type == 7 && (code & 0x60) != 0 && (code & 0x80) == 0;
    return isDelimiter || isParameterSet ? StreamCodec::h264 : StreamCodec::other;
}

/// Of a sequence, a group or a picture (ISO/IEC 13818-2, 6.2.1), with which its units begin, and
/// those of the newer codecs don't.
bool beginsMpegVideo(uint8_t code) { return code == 0xB3 || code == 0xB8 || code == 0x00; }

StreamCodec sniffVideo(const uint8_t* data, size_t size) {
    bool isFirst = true;
    for (size_t at = 0; at + 4 < size; ++at) {
        if (data[at] != 0 || data[at + 1] != 0 || data[at + 2] != 1) continue;
        if (isFirst && beginsMpegVideo(data[at + 3])) return StreamCodec::mpeg2Video;
        isFirst = false;
        const StreamCodec codec = codecOfStartCode(data[at + 3], data[at + 4]);
        if (codec != StreamCodec::other) return codec;
        at += 3;
    }
    return StreamCodec::other;
}

struct PictureMark {
    bool mayBegin;   ///< stands before all else of a picture
    bool isCounted;  ///< there is one in each picture
};

/// What the byte of a start code tells of where pictures begin.
PictureMark pictureMarkOf(uint8_t code, StreamCodec codec) {
    if (codec == StreamCodec::mpeg1Video || codec == StreamCodec::mpeg2Video)
        return {beginsMpegVideo(code), code == 0x00};
    const bool isDelimiter = codec == StreamCodec::h264 ? (code & 0x9FU) == 9 : code >> 1U == 35;
    return {isDelimiter, isDelimiter};
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

bool isOnePicture(const uint8_t* data, size_t size, StreamCodec codec) {
    size_t pictures = 0;
    bool isFirst = true;
    for (size_t at = 0; at + 3 < size; ++at) {
        if (data[at] != 0 || data[at + 1] != 0 || data[at + 2] != 1) continue;
        const PictureMark mark = pictureMarkOf(data[at + 3], codec);
        if (isFirst && (at > 1 || !mark.mayBegin)) return false;
        isFirst = false;
        pictures += mark.isCounted ? 1 : 0;
        at += 3;
    }
    return pictures == 1;
}

}  // namespace quiravent::desktop
