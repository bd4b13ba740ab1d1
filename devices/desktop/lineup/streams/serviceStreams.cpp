#include "lineup/streams/serviceStreams.h"

#include "lineup/streams/TestPictures.h"
#include "lineup/streams/encodeAudio.h"
#include "lineup/streams/encodeVideo.h"
#include "support/Text.h"

namespace quiravent::desktop::lineup {

namespace {

CodedStream videoStream(const Lineup& lineup, const Service& service, const std::string& subject) {
    const Video& video = *service.video;
    const int64_t count = loopDuration(lineup) / frameDuration(video);
    TestPictures pictures(service, lineup.font, count);
    return {video.pid, StreamContent::video, subject,
            encodeVideo(video, subject, pictures, count, {})};
}

CodedStream audioStream(const Lineup& lineup, const Audio& audio, const std::string& subject) {
    const int64_t count = loopDuration(lineup) / frameDuration(audio);
    const Sound sound = makeTone(audio.tone, count * samplesPerFrame(audio.codec));
    return {audio.pid, StreamContent::audio, subject, encodeAudio(audio, subject, sound, count)};
}

}  // namespace

std::vector<CodedStream> serviceStreams(const Lineup& lineup, const Service& service,
                                        const std::string& subject) {
    std::vector<CodedStream> streams;
    if (service.video) {
        streams.push_back(videoStream(lineup, service, joined(subject, ".video")));
    }
    for (size_t i = 0; i < service.audio.size(); ++i) {
        streams.push_back(
            audioStream(lineup, service.audio[i], joined(subject, ".audio[", i, ']')));
    }
    return streams;
}

}  // namespace quiravent::desktop::lineup
