#include "lineup/streams/serviceStreams.h"

#include "lineup/captions/CaptionTrack.h"
#include "lineup/streams/TestPictures.h"
#include "lineup/streams/encodeAudio.h"
#include "lineup/streams/encodeVideo.h"

namespace quiravent::desktop::lineup {

namespace {

CodedStream videoStream(const Lineup& lineup, const Service& service, const Place& place) {
    const Video& video = *service.video;
    const std::string subject = place.at("video").text();
    const int64_t count = loopDuration(lineup) / frameDuration(video);
    TestPictures pictures(service, lineup.font, count);
    std::optional<CaptionTrack> captions;
    if (service.captions) {
        captions.emplace(*service.captions, video.rate, count, place.at("captions"));
    }
    const CaptionData data = [&captions](int64_t number) {
        return captions ? captions->dataOf(number) : std::vector<uint8_t>();
    };
    return {video.pid, StreamContent::video, subject,
            encodeVideo(video, subject, pictures, count, data)};
}

CodedStream audioStream(const Lineup& lineup, const Audio& audio, const Place& place) {
    const int64_t count = loopDuration(lineup) / frameDuration(audio);
    const Sound sound = makeTone(audio.tone, count * samplesPerFrame(audio.codec));
    return {audio.pid, StreamContent::audio, place.text(),
            encodeAudio(audio, place.text(), sound, count)};
}

}  // namespace

std::vector<CodedStream> serviceStreams(const Lineup& lineup, const Service& service,
                                        const Place& place) {
    std::vector<CodedStream> streams;
    if (service.video) streams.push_back(videoStream(lineup, service, place));
    for (size_t i = 0; i < service.audio.size(); ++i) {
        streams.push_back(audioStream(lineup, service.audio[i], place.at("audio").at(i)));
    }
    return streams;
}

}  // namespace quiravent::desktop::lineup
