#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <set>
#include <thread>
#include <vector>

#include "television/Multiplex.h"

namespace quiravent::test {

/// Packet identifiers of the broadcast's two services; the first one's pictures are H.264 with
/// captions, the second one's MPEG-2 with DVB subtitles.
constexpr desktop::Pid kVideo1 = 0x100;
constexpr desktop::Pid kAudio1 = 0x101;
constexpr desktop::Pid kVideo2 = 0x110;
constexpr desktop::Pid kAudio2 = 0x111;
constexpr desktop::Pid kSubtitle2 = 0x112;

/// A multiplex that is received, of pictures with marks (see FrameMark), in a loop of about two
/// seconds.
class Broadcast {
  public:
    Broadcast();
    ~Broadcast() { stop(); }
    Broadcast(const Broadcast&) = delete;
    Broadcast& operator=(const Broadcast&) = delete;

    desktop::Multiplex& multiplex() { return m_multiplex; }

    /// How many pictures each service has, before the first one comes again.
    static int picturesOfLoop();

    /// Tells what the streams are, as tables would.
    void publishTables();

    /// Changes packets on their way; false loses one. Not while sending.
    using Spoil = std::function<bool(std::vector<uint8_t>& packet)>;
    void setSpoil(Spoil spoil) { m_spoil = std::move(spoil); }

    /// What has come up to now, all at once, as if it had come in its time: so many microseconds.
    void receivePast(int64_t duration);

    /// Goes on in its own time until stop(), from where it has come to.
    void play();
    void stop();

    void setSignal(bool isPresent) { m_multiplex.setSignal(m_selection, isPresent); }
    /// Another selection of the same.
    void retune();

  private:
    void receiveOne();
    int64_t dueOfNext() const;

    desktop::Multiplex m_multiplex{32U << 20};
    uint64_t m_selection = 0;
    size_t m_next = 0;  ///< number of the next packet, over all loops
    int64_t m_epoch = 0;
    Spoil m_spoil = [](std::vector<uint8_t>&) { return true; };
    std::set<desktop::Pid> m_seenInLoop;
    std::set<desktop::Pid> m_lost;
    std::atomic<bool> m_stopped{true};
    std::thread m_thread;
};

}  // namespace quiravent::test
