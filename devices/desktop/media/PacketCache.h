#pragma once

#include <array>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

#include "media/PacketRange.h"
#include "media/PacketSource.h"
#include "media/Wakeup.h"

namespace quiravent::desktop {

/// A stretch of a medium that is in the cache.
struct TimeRange {
    int64_t begin;
    int64_t end;
};

/// What was read of a medium and isn't yet, or may again be, needed: between the thread that reads
/// and those that decode. It decides what is read next.
///
/// Several ranges are kept, of which one is played. The bytes stay within a budget: other ranges go
/// first, then what lies behind the position; ahead of it a quarter of the budget stays free for
/// that. Thread-safe.
class PacketCache : public PacketSource {
  public:
    struct Limits {
        size_t bytes = 64U << 20;
        int64_t ahead = 600 * kSecond;  ///< no more is read ahead than this
    };

    /// wakeup: signalled whenever something was added.
    PacketCache(const Limits& limits, Wakeup& wakeup) : m_limits(limits), m_wakeup(wakeup) {}

    /// Ends all waiting, for good.
    void close();
    void setAheadLimit(int64_t ahead);

    /// What the reading thread is to do next. `generation` goes back with what was done for it;
    /// what comes with an old one is ignored.
    struct Task {
        enum class Kind {
            seek,   ///< go to the last key packet of `leading` at or before `time`
            read,   ///< read one packet
            group,  ///< read the pictures from the last key packet before `time` up to there
            close,
        };
        Kind kind;
        uint32_t generation;
        int64_t time;
        uint32_t leading;
    };
    Task awaitTask();
    void sought(uint32_t generation);
    void append(PacketRef packet, uint32_t generation);
    /// No more packets: the end of the medium, or an error.
    void finish(MediaError error, uint32_t generation);
    /// The packets of a group in the order of decoding; none: there is nothing before `time`.
    void appendGroup(std::vector<PacketRef> group, uint32_t generation);

    /// Begins new segments for all kinds; tracks[kind] may be null. The source is asked for what
    /// isn't there.
    struct Start {
        uint32_t serial = 0;
        int64_t target = 0;
        PlayMode mode = PlayMode::all;
        double speed = 1;
        std::array<TrackRef, kTrackKinds> tracks;
        bool stay = false;  ///< the source can't go elsewhere: play on from what was read
    };
    void start(const Start& start);
    /// Begins a new segment for one kind alone, from what is there.
    void startTrack(TrackKind kind, const Segment& segment);

    Read next(TrackKind kind, uint32_t serial) override;
    bool tryNext(TrackKind kind, uint32_t serial, Read& read) override;

    struct Status {
        int64_t end = 0;        ///< of what is there from the position on
        bool finished = false;  ///< nothing follows it
        MediaError error = MediaError::none;
        uint64_t received = 0;   ///< packets ever appended, to tell whether reading goes on
        bool full = false;       ///< no more is read before something is played
        bool hasGroups = false;  ///< backwards: something is there
    };
    Status status() const;

    /// In rising order, merged.
    std::vector<TimeRange> ranges() const;

  private:
    struct Slot {
        Segment segment;
        uint64_t number = 0;
        bool endTold = false;
    };
    struct GroupPacket {
        PacketRef packet;
        bool last;
    };

    Slot& slotOf(TrackKind kind) { return m_slots[indexOf(kind)]; }
    const Slot* leadingSlot() const;
    bool isBackwards() const;
    void activate(int64_t target, bool stay);
    void place(Slot& slot);
    int64_t position() const;
    bool wantsMore() const;
    void keepWithinBudget();
    void joinRanges();
    bool takeLocked(TrackKind kind, uint32_t serial, Read& read);
    bool takeGroupPacket(Slot& slot, Read& read);
    void takeCachedGroups();
    bool takeCachedGroup();
    void pushGroup(std::vector<PacketRef> group);
    bool nextTask(Task& task);
    bool nextGroupTask(Task& task);

    Limits m_limits;
    Wakeup& m_wakeup;

    mutable std::mutex m_mutex;  ///< guards what follows
    std::condition_variable m_changed;
    bool m_closed = false;
    uint32_t m_generation = 0;
    std::array<Slot, kTrackKinds> m_slots;
    std::vector<std::unique_ptr<PacketRange>> m_ranges;  ///< the one used last is last: it plays
    bool m_atEnd = false;  ///< the source stands where the playing range ends
    uint64_t m_received = 0;

    std::deque<GroupPacket> m_groups;  ///< when playing backwards
    size_t m_groupCount = 0;
    int64_t m_groupBefore = 0;
    bool m_groupsDone = false;
    MediaError m_groupError = MediaError::none;
};

}  // namespace quiravent::desktop
