#include "live/Broadcast.h"

#include <chrono>
#include <fstream>

#include "common/TemporaryFolder.h"
#include "lineup/description/readLineup.h"
#include "lineup/makeMultiplex.h"
#include "media/Av.h"
#include "support/Clock.h"

namespace quiravent::test {

namespace {

constexpr const char* kLineup = R"({
  "duration": 2,
  "services": [
    {"id": 1, "name": "One", "pcrPid": 256,
     "video": {"pid": 256, "width": 320, "height": 180, "bitRate": 400000},
     "audio": [{"pid": 257, "tone": 440}],
     "captions": {"texts": [{"from": 0.9, "to": 1.8, "text": "Bom dia\nserra"}]}},
    {"id": 2, "name": "Two", "pcrPid": 272,
     "video": {"pid": 272, "codec": "mpeg2", "width": 320, "height": 180, "bitRate": 800000},
     "audio": [{"pid": 273, "codec": "mp2", "bitRate": 128000, "tone": 880}],
     "subtitles": {"pid": 274, "texts": [{"from": 0.2, "to": 1.9, "text": "Marés"}]}}
  ]
})";

const std::vector<uint8_t>& bytes() {
    static const std::vector<uint8_t> made = [] {
        desktop::quietAv();
        const TemporaryFolder folder;
        const std::string file = folder / "lineup.json";
        std::ofstream(file) << kLineup;
        return desktop::lineup::makeMultiplex(desktop::lineup::readLineup(file), file);
    }();
    return made;
}

desktop::TransportPacket packetAt(size_t number) {
    return desktop::TransportPacket(bytes().data() + number * desktop::TransportPacket::kSize);
}

size_t packetsOfLoop() { return bytes().size() / desktop::TransportPacket::kSize; }

/// By the clock references, between which packets come at an even rate.
double durationOfPacket() {
    static const double duration = [] {
        std::vector<std::pair<size_t, int64_t>> references;
        for (size_t number = 0; number < packetsOfLoop(); ++number) {
            const desktop::TransportPacket packet = packetAt(number);
            const auto reference = packet.clockReference();
            if (packet.pid() == kVideo1 && reference) references.emplace_back(number, *reference);
        }
        const auto ticks = references.back().second - references.front().second;
        const auto packets = references.back().first - references.front().first;
        return static_cast<double>(ticks) / 27 / static_cast<double>(packets);
    }();
    return duration;
}

desktop::ElementaryStream stream(desktop::Pid pid, desktop::StreamCodec codec) {
    desktop::ElementaryStream made;
    made.pid = pid;
    made.codec = codec;
    return made;
}

desktop::Service service(uint16_t number, desktop::Pid clock,
                         std::vector<desktop::ElementaryStream> streams) {
    desktop::Service made;
    made.number = number;
    made.hasMap = true;
    made.pcrPid = clock;
    made.streams = std::move(streams);
    return made;
}

}  // namespace

int Broadcast::picturesOfLoop() {
    int pictures = 0;
    for (size_t number = 0; number < packetsOfLoop(); ++number)
        if (packetAt(number).pid() == kVideo1 && packetAt(number).startsUnit()) ++pictures;
    return pictures;
}

Broadcast::Broadcast() {
    bytes();
    retune();
}

void Broadcast::retune() {
    m_selection = m_multiplex.begin();
    m_multiplex.setSignal(m_selection, true);
    m_next = 0;
    m_epoch = desktop::clock::now();
}

void Broadcast::publishTables() {
    using desktop::StreamCodec;
    auto description = std::make_shared<desktop::MultiplexDescription>();
    description->services = {
        service(1, kVideo1,
                {stream(kVideo1, StreamCodec::h264), stream(kAudio1, StreamCodec::aac)}),
        service(2, kVideo2,
                {stream(kVideo2, StreamCodec::mpeg2Video), stream(kAudio2, StreamCodec::mpegAudio),
                 stream(kSubtitle2, StreamCodec::dvbSubtitle)})};
    m_multiplex.publish(m_selection, description, true);
}

int64_t Broadcast::dueOfNext() const {
    return m_epoch + static_cast<int64_t>(static_cast<double>(m_next) * durationOfPacket());
}

void Broadcast::receiveOne() {
    constexpr size_t kSize = desktop::TransportPacket::kSize;
    const size_t place = m_next % packetsOfLoop();
    if (place == 0) m_seenInLoop.clear();
    const auto begin = bytes().begin() + static_cast<std::ptrdiff_t>(place * kSize);
    std::vector<uint8_t> packet(begin, begin + kSize);
    const desktop::Pid pid = desktop::TransportPacket(packet.data()).pid();
    if (!m_spoil(packet)) {
        m_lost.insert(pid);
    } else {
        const bool isFirst = m_seenInLoop.insert(pid).second && m_next >= packetsOfLoop();
        const bool isAfterLoss = m_lost.erase(pid) != 0;
        m_multiplex.receive(m_selection, {{desktop::TransportPacket(packet.data()), dueOfNext(),
                                           isFirst || isAfterLoss, false}});
    }
    ++m_next;
}

void Broadcast::receivePast(int64_t duration) {
    const int64_t now = desktop::clock::now();
    m_epoch += now - duration - dueOfNext();
    while (dueOfNext() < now) receiveOne();
}

void Broadcast::play() {
    m_stopped = false;
    m_thread = std::thread([this] {
        while (!m_stopped) {
            while (dueOfNext() <= desktop::clock::now()) receiveOne();
            std::this_thread::sleep_until(desktop::clock::timePoint(dueOfNext() + 5000));
        }
    });
}

void Broadcast::stop() {
    m_stopped = true;
    if (m_thread.joinable()) m_thread.join();
}

}  // namespace quiravent::test
