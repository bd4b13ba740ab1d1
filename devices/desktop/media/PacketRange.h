#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>

#include "media/MediaErrors.h"
#include "media/Packet.h"

namespace quiravent::desktop {

/// Packets of all tracks that follow each other without a gap. The packets of a track have rising
/// numbers, which stay theirs when older ones are dropped. Not thread-safe.
class PacketRange {
  public:
    /// wanted: the position for whose sake the range was begun.
    explicit PacketRange(int64_t wanted) : m_wanted(wanted) {}

    int64_t wanted() const { return m_wanted; }
    size_t byteSize() const { return m_byteSize; }
    bool isEmpty(uint32_t track) const;

    /// Takes the packet at the end, unless it repeats what the range holds after resumed().
    void append(PacketRef packet);
    /// The source is read on from resumePoint() or somewhere before.
    void resumed();
    /// Where all tracks are known up to.
    int64_t resumePoint() const;

    /// Whether another range begins within this one and goes on beyond it, with all its tracks.
    bool runsInto(const PacketRange& next) const;
    /// Takes over how `next`, which this range runs into, goes on and ends.
    void absorb(const PacketRange& next);

    /// No packets follow, either since the medium ends or since it couldn't be read on.
    void finish(MediaError error);
    bool isFinished() const { return m_finished; }
    MediaError error() const { return m_error; }

    /// First and last position of a track; `wanted` while it has no packet.
    int64_t begin(uint32_t track) const;
    int64_t end(uint32_t track) const;
    bool covers(uint32_t track, int64_t position) const;
    /// End of the track that goes furthest.
    int64_t lastEnd() const;

    /// Null when there is none (yet).
    PacketRef packet(uint32_t track, uint64_t number) const;
    uint64_t firstNumber(uint32_t track) const;
    uint64_t nextNumber(uint32_t track) const;
    /// Bytes of all tracks that were appended from that packet on.
    size_t bytesFrom(uint32_t track, uint64_t number) const;

    /// Number of the last packet from which the picture or sound at a position can be decoded; the
    /// first one's where there is none.
    uint64_t decodeStart(uint32_t track, int64_t position) const;

    /// Drops what lies before the last key packet of `leading` that isn't after `position`.
    /// False when there was nothing to drop.
    bool dropBefore(uint32_t leading, int64_t position);

  private:
    struct Entry {
        PacketRef packet;
        size_t bytesBefore;  ///< appended to the range before this one
    };
    struct Queue {
        std::deque<Entry> entries;
        uint64_t first = 0;
        int64_t end = 0;
        bool resumed = false;
    };
    const Queue* find(uint32_t track) const;
    static bool isContinuous(const Queue& queue);
    void dropFront(Queue& queue);

    int64_t m_wanted;
    std::map<uint32_t, Queue> m_queues;
    size_t m_byteSize = 0;
    size_t m_appended = 0;
    bool m_finished = false;
    MediaError m_error = MediaError::none;
};

}  // namespace quiravent::desktop
