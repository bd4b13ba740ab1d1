#include "lineup/TestLineup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>

#include "common/errorOf.h"
#include "lineup/description/readLineup.h"
#include "lineup/makeMultiplex.h"
#include "media/Decoder.h"
#include "media/audio/AudioFormat.h"
#include "media/audio/Resampler.h"
#include "television/TransportPacket.h"

namespace quiravent::test {

using namespace quiravent::desktop;

namespace {

constexpr const char* kName = "lineup.json";

/// A file of that text, in a folder of its own.
class LineupFile {
  public:
    explicit LineupFile(const std::string& json) {
        quietAv();
        std::ofstream(path()) << json;
    }
    std::string path() const { return m_folder / kName; }

  private:
    TemporaryFolder m_folder;
};

/// Calls use for each packet of the identifier.
void forEachPacket(const Bytes& multiplex, Pid pid,
                   const std::function<void(const TransportPacket&)>& use) {
    for (size_t at = 0; at + TransportPacket::kSize <= multiplex.size();
         at += TransportPacket::kSize) {
        const TransportPacket packet(&multiplex[at]);
        if (packet.pid() == pid) use(packet);
    }
}

}  // namespace

lineup::Lineup lineupOf(const std::string& json) {
    return lineup::readLineup(LineupFile(json).path());
}

Bytes multiplexOf(const std::string& json) { return lineup::makeMultiplex(lineupOf(json), kName); }

std::string refusalOf(const std::string& json) {
    const LineupFile file(json);
    const std::string text =
        errorOf([&] { lineup::makeMultiplex(lineup::readLineup(file.path()), file.path()); });
    const size_t start = text.find(kName);
    return start == std::string::npos ? text : text.substr(start);
}

ByteView viewOf(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

Bytes twice(const Bytes& bytes) {
    Bytes both = bytes;
    both.insert(both.end(), bytes.begin(), bytes.end());
    return both;
}

Bytes contentOf(const Bytes& multiplex, Pid pid) {
    constexpr size_t kHeadSizeAt = 8;
    Bytes content;
    forEachPacket(multiplex, pid, [&](const TransportPacket& packet) {
        if (!packet.hasPayload()) return;
        const uint8_t* const payload = packet.payload();
        const size_t head = packet.startsUnit() ? kHeadSizeAt + 1 + payload[kHeadSizeAt] : 0;
        content.insert(content.end(), payload + head, payload + packet.payloadSize());
    });
    return content;
}

void readTrack(const Bytes& bytes, const std::string& name, TrackKind kind,
               const std::function<void(const Track&, const Packet*)>& use) {
    const TemporaryFolder folder;
    const std::atomic<bool> cancelled{false};
    MediaInput input({}, cancelled);
    ASSERT_EQ(input.open(folder.write(name, bytes)), MediaError::none);
    const auto& tracks = input.info().tracks;
    const auto found = std::find_if(tracks.begin(), tracks.end(),
                                    [=](const TrackRef& track) { return track->kind == kind; });
    ASSERT_NE(found, tracks.end());
    const TrackRef& track = *found;
    MediaError error = MediaError::none;
    while (const PacketRef packet = input.read(error))
        if (packet->track == track->id) use(*track, packet.get());
    use(*track, nullptr);
    EXPECT_EQ(error, MediaError::none);
}

void decode(const Bytes& bytes, const std::string& name, TrackKind kind,
            const std::function<void(const AVFrame&)>& use) {
    std::unique_ptr<Decoder> decoder;
    readTrack(bytes, name, kind, [&](const Track& track, const Packet* packet) {
        if (!decoder) decoder = Decoder::open(track);
        ASSERT_TRUE(decoder);
        EXPECT_TRUE(decoder->send(packet == nullptr ? nullptr : packet->data.get()));
        while (const AvFrame frame = decoder->receive()) use(*frame);
    });
}

std::vector<float> soundOf(const Bytes& bytes, const std::string& name) {
    std::vector<float> left;
    Resampler resampler;
    decode(bytes, name, TrackKind::audio, [&](const AVFrame& piece) {
        const std::vector<float> samples = resampler.convert(piece);
        for (size_t i = 0; i < samples.size(); i += kAudioChannels) left.push_back(samples[i]);
    });
    return left;
}

size_t crossingsOf(const std::vector<float>& samples, size_t from, size_t to) {
    size_t crossings = 0;
    for (size_t i = from; i + 1 < to; ++i) {
        crossings += samples[i] < 0 && samples[i + 1] >= 0 ? 1 : 0;
    }
    return crossings;
}

}  // namespace quiravent::test
