#include "live/Broadcast.h"

#include <chrono>

#include "lineup/TestLineup.h"
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
    static const std::vector<uint8_t> made = multiplexOf(kLineup);
    return made;
}

const desktop::lineup::Inspection& inspection() {
    static const desktop::lineup::Inspection made = desktop::lineup::inspect(viewOf(bytes()));
    return made;
}

size_t packetsOfLoop() { return bytes().size() / desktop::TransportPacket::kSize; }

}  // namespace

int Broadcast::picturesOfLoop() { return static_cast<int>(inspection().streams.at(kVideo1).units); }

Broadcast::Broadcast() {
    inspection();
    retune();
}

void Broadcast::retune() {
    m_selection = m_multiplex.begin();
    m_multiplex.setSignal(m_selection, true);
    m_next = 0;
    m_epoch = desktop::clock::now();
}

void Broadcast::publishTables() {
    m_multiplex.publish(m_selection,
                        std::make_shared<desktop::MultiplexDescription>(inspection().description),
                        true);
}

int64_t Broadcast::dueOfNext() const {
    const double durationOfPacket =
        8.0 * desktop::TransportPacket::kSize * desktop::kSecond / inspection().bitRate;
    return m_epoch + static_cast<int64_t>(static_cast<double>(m_next) * durationOfPacket);
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
