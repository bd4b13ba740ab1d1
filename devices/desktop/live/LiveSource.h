#pragma once

#include <array>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>

#include "media/PacketSource.h"

namespace quiravent::desktop {

/// The packets of a broadcast on their way to the decoders. Nobody can make a broadcast wait: where
/// a decoder is too slow, packets are dropped. Thread-safe.
class LiveSource : public PacketSource {
  public:
    /// Forgets all packets and tracks. Each kind of track waits for a new one, whose segment will
    /// have this serial, which is unique.
    void begin(uint32_t serial);

    /// A track of a kind that has none since begin().
    void addTrack(const TrackRef& track);

    /// A packet of a track that was added. Of video nothing is passed on before a key picture.
    void push(TrackKind kind, PacketRef packet);

    /// Another subtitle track, or none, at any time; with a serial of its own.
    void replaceSubtitles(uint32_t serial, const TrackRef& track);

    void close();

    Read next(TrackKind kind, uint32_t serial) override;
    bool tryNext(TrackKind kind, uint32_t serial, Read& read) override;

  private:
    struct Queue {
        bool hasSegment = false;
        Segment segment;
        std::deque<PacketRef> packets;
        size_t bytes = 0;
        bool needsKey = false;
        uint32_t skipped = 0;  ///< while waiting for a key picture
    };
    Queue& queueOf(TrackKind kind) { return m_queues.at(static_cast<size_t>(kind)); }
    static void clear(Queue& queue, bool needsKey);
    static void beginSegment(Queue& queue, uint32_t serial, const TrackRef& track);
    bool readLocked(TrackKind kind, uint32_t serial, Read& read);

    std::mutex m_mutex;  ///< guards what follows
    std::condition_variable m_changed;
    std::array<Queue, kTrackKinds> m_queues;
    uint32_t m_serial = 0;
    bool m_closed = false;
};

}  // namespace quiravent::desktop
