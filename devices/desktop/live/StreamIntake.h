#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <vector>

#include "live/PesAssembler.h"
#include "live/ProgramClock.h"
#include "media/Wakeup.h"
#include "television/StreamListener.h"

namespace quiravent::desktop {

/// The streams that a live player plays; kNullPid: none of that kind.
struct LiveStreams {
    Pid video = kNullPid;
    Pid audio = kNullPid;
    Pid clock = kNullPid;
    Pid subtitle = kNullPid;

    bool operator==(const LiveStreams& other) const {
        return video == other.video && audio == other.audio && clock == other.clock &&
               subtitle == other.subtitle;
    }
};

/// Takes a player's packets from the receiving thread and puts aside what they make up, in its
/// order, for the player's thread, which is woken. Thread-safe.
class StreamIntake : public StreamListener {
  public:
    struct Item {
        enum class Kind {
            unit,
            tuned,  ///< a selection begins, or its signal is back: what was before is over
            gone,   ///< no selection, or no signal
            tables,
        };
        Kind kind = Kind::gone;
        PesUnit unit;
    };

    explicit StreamIntake(Wakeup& wakeup) : m_wakeup(wakeup) {}

    /// Forgets all; other streams from now on.
    void reset(const LiveStreams& streams);
    /// Another subtitle stream, without a break for the others.
    void setSubtitle(Pid pid);

    std::vector<Item> take();

    void onTuned() override { note(Item::Kind::tuned); }
    void onUntuned() override { note(Item::Kind::gone); }
    void onPacket(const StreamPacket& packet) override;
    void onTablesChanged() override { add(Item::Kind::tables); }
    void onSignal(bool isPresent) override {
        note(isPresent ? Item::Kind::tuned : Item::Kind::gone);
    }

  private:
    void add(Item::Kind kind);
    void note(Item::Kind kind);
    void begin();

    Wakeup& m_wakeup;
    std::mutex m_mutex;  ///< guards what follows
    LiveStreams m_streams;
    ProgramClock m_clock;
    std::map<Pid, PesAssembler> m_assemblers;
    std::vector<Item> m_items;
    size_t m_bytes = 0;  ///< of the units among them
    std::vector<PesUnit> m_units;
};

}  // namespace quiravent::desktop
