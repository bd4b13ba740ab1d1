#include "television/MultiplexDescription.h"

#include <array>

namespace quiravent::desktop {

namespace {

struct CodecTraits {
    StreamKind kind;
    const char* name;
};

/// In the order of StreamCodec.
constexpr std::array<CodecTraits, 13> kCodecs{{
    {StreamKind::other, "other"},
    {StreamKind::video, "MPEG-1 video"},
    {StreamKind::video, "MPEG-2 video"},
    {StreamKind::video, "H.264"},
    {StreamKind::video, "HEVC"},
    {StreamKind::audio, "MPEG audio"},
    {StreamKind::audio, "AAC"},
    {StreamKind::audio, "AAC LATM"},
    {StreamKind::audio, "AC-3"},
    {StreamKind::audio, "E-AC-3"},
    {StreamKind::subtitle, "DVB subtitles"},
    {StreamKind::subtitle, "teletext"},
    {StreamKind::subtitle, "ISDB captions"},
}};

const CodecTraits& traitsOf(StreamCodec codec) { return kCodecs.at(static_cast<size_t>(codec)); }

}  // namespace

StreamKind kindOf(StreamCodec codec) { return traitsOf(codec).kind; }

const char* nameOf(StreamCodec codec) { return traitsOf(codec).name; }

const char* nameOf(StreamKind kind) {
    static constexpr std::array<const char*, 4> kNames{"video", "audio", "subtitle", "other"};
    return kNames.at(static_cast<size_t>(kind));
}

const ElementaryStream* MultiplexDescription::findStream(Pid pid) const {
    for (const Service& service : services)
        for (const ElementaryStream& stream : service.streams)
            if (stream.pid == pid) return &stream;
    return nullptr;
}

}  // namespace quiravent::desktop
