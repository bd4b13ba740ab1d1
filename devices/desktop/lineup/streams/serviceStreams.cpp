#include "lineup/streams/serviceStreams.h"

#include "lineup/captions/CaptionTrack.h"
#include "lineup/streams/MediaPictures.h"
#include "lineup/streams/TestPictures.h"
#include "lineup/streams/copyTrack.h"
#include "lineup/streams/encodeAudio.h"
#include "lineup/streams/encodeVideo.h"
#include "lineup/streams/mediaSound.h"

namespace quiravent::desktop::lineup {

namespace {

AccessUnits codeVideo(const Service& service, Pictures& pictures, int64_t count,
                      const Place& place) {
    std::optional<CaptionTrack> captions;
    if (service.captions) {
        captions.emplace(*service.captions, service.video->rate, count, place.at("captions"));
    }
    const CaptionData data = [&captions](int64_t number) {
        return captions ? captions->dataOf(number) : std::vector<uint8_t>();
    };
    return encodeVideo(*service.video, place.at("video").text(), pictures, count, data);
}

AccessUnits videoUnits(const Lineup& lineup, const Service& service, const Place& place) {
    const Video& video = *service.video;
    const Ticks loop = loopDuration(lineup);
    const int64_t count = loop / frameDuration(video);
    if (service.media.empty()) {
        TestPictures pictures(service, lineup.font, count);
        return codeVideo(service, pictures, count, place);
    }
    MediaTrack track(service.media, TrackKind::video, 1, place.at("media"));
    if (video.copy) return copyVideo(video, track, loop, place.at("video").at("copy"));
    MediaPictures pictures(video, track);
    return codeVideo(service, pictures, count, place);
}

AccessUnits audioUnits(const Lineup& lineup, const Service& service, const Audio& audio,
                       const Place& servicePlace, const Place& place) {
    const Ticks loop = loopDuration(lineup);
    const int64_t count = loop / frameDuration(audio);
    const int64_t samples = count * samplesPerFrame(audio.codec);
    if (service.media.empty()) {
        return encodeAudio(audio, place.text(), makeTone(audio.tone, samples), count);
    }
    MediaTrack track(service.media, TrackKind::audio, audio.track, servicePlace.at("media"));
    if (audio.copy) return copyAudio(audio, track, loop, place.at("copy"));
    return encodeAudio(audio, place.text(), mediaSound(track, samples), count);
}

}  // namespace

std::vector<CodedStream> serviceStreams(const Lineup& lineup, const Service& service,
                                        const Place& place) {
    std::vector<CodedStream> streams;
    if (service.video) {
        streams.push_back(
            {service.video->pid, StreamContent::video, videoUnits(lineup, service, place)});
    }
    for (size_t i = 0; i < service.audio.size(); ++i) {
        const Audio& audio = service.audio[i];
        streams.push_back({audio.pid, StreamContent::audio,
                           audioUnits(lineup, service, audio, place, place.at("audio").at(i))});
    }
    return streams;
}

}  // namespace quiravent::desktop::lineup
