#include "media/VariantChoice.h"

#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quiravent::desktop {

namespace {

/// Bits per second that the playlist states; 0 where it states none.
uint64_t statedRate(const AVDictionary* metadata) {
    const AVDictionaryEntry* entry = ffmpeg().av_dict_get(metadata, "variant_bitrate", nullptr, 0);
    return entry == nullptr ? 0 : std::strtoull(entry->value, nullptr, 10);
}

bool fitsBetter(uint64_t rate, uint64_t than, uint64_t bandwidth) {
    if (rate <= bandwidth) return than > bandwidth || rate > than;
    return than > bandwidth && rate < than;
}

/// HLS: each variant is a programme of its own, which may share streams with others.
void choosePrograms(AVFormatContext& format, uint64_t bandwidth) {
    const AVProgram* best = nullptr;
    for (unsigned index = 0; index < format.nb_programs; ++index) {
        const AVProgram* program = format.programs[index];
        const uint64_t rate = statedRate(program->metadata);
        if (rate == 0) continue;
        if (best == nullptr || fitsBetter(rate, statedRate(best->metadata), bandwidth))
            best = program;
    }
    if (best == nullptr) return;
    for (unsigned index = 0; index < format.nb_streams; ++index)
        format.streams[index]->discard = AVDISCARD_ALL;
    for (unsigned index = 0; index < best->nb_stream_indexes; ++index)
        format.streams[best->stream_index[index]]->discard = AVDISCARD_DEFAULT;
}

/// DASH: each representation is a stream; those of one kind and language are variants.
void chooseRepresentations(AVFormatContext& format, uint64_t bandwidth) {
    std::map<std::pair<AVMediaType, std::string>, std::vector<AVStream*>> groups;
    for (unsigned index = 0; index < format.nb_streams; ++index) {
        AVStream* stream = format.streams[index];
        if (stream->discard == AVDISCARD_ALL || statedRate(stream->metadata) == 0) continue;
        const AVDictionaryEntry* language =
            ffmpeg().av_dict_get(stream->metadata, "language", nullptr, 0);
        groups[{stream->codecpar->codec_type, language == nullptr ? "" : language->value}]
            .push_back(stream);
    }
    for (const auto& [key, streams] : groups) {
        AVStream* best = streams.front();
        for (AVStream* stream : streams)
            if (fitsBetter(statedRate(stream->metadata), statedRate(best->metadata), bandwidth))
                best = stream;
        for (AVStream* stream : streams)
            if (stream != best) stream->discard = AVDISCARD_ALL;
    }
}

bool isFormat(const AVFormatContext& format, const char* name) {
    return std::string(format.iformat->name) == name;
}

}  // namespace

void chooseVariant(AVFormatContext& format, uint64_t bandwidth) {
    if (isFormat(format, "hls"))
        choosePrograms(format, bandwidth);
    else if (isFormat(format, "dash"))
        chooseRepresentations(format, bandwidth);
}

}  // namespace quiravent::desktop
