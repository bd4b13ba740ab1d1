#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "EventWorker.h"
#include "porting/pl_media.h"

namespace quiravent {

/// Thins out repeated reports: a report passes when its event is another than the last one that
/// passed, or its value is higher. One device thread at a time is expected; two at once may both
/// pass, and no more harm is done.
class PlayerEventFilter {
  public:
    bool Passes(e_pl_media_event event, unsigned char value) {
        const Last last = m_last;
        const int number = static_cast<int>(event);
        if (number == last.event && value <= last.value) return false;
        m_last = Last{number, value};
        return true;
    }

  private:
    struct Last {
        int event;
        int value;
    };
    std::atomic<Last> m_last{Last{-1, -1}};
};

/// The name of a player event as the script sees it; empty for a number that has none.
inline std::string PlayerEventName(e_pl_media_event event) {
    static constexpr std::array<const char*, 10> kNames = {
        "fetch_in_progress", "fetch_ready",      "fetch_error",         "playback_ready",
        "playback_error",    "playback_stalled", "playback_recovering", "playback_completed",
        "playback_abort",    "playback_suspend"};
    return event < kNames.size() ? kNames[event] : "";
}

/// The event worker of both kinds of player, which differ in the player and in the function that
/// registers the callback. Reports carry no player: all go to the worker made last.
template <class Player, auto registerCallback>
class PlayerWorker : public EventWorker<std::pair<std::string, int>> {
  public:
    PlayerWorker(const Listeners& listeners, const Player* player)
        : EventWorker(listeners), m_player(player) {}

    static WorkerSlot<PlayerWorker>& Slot() {
        static WorkerSlot<PlayerWorker> slot;
        return slot;
    }

    void close() override {
        SetClosed();
        Wake();
    }

  private:
    using Report = std::pair<std::string, int>;

    /// Called by the device for the first parameter's player, which is not looked at.
    static void onPlayerEvent(uint32_t, e_pl_media_event event, unsigned char value) {
        const std::shared_ptr<PlayerWorker> worker = Slot().Get();
        if (worker && worker->m_filter.Passes(event, value)) {
            worker->AddReport({PlayerEventName(event), value});
        }
    }

    void Attach() override { (void)registerCallback(m_player->Handle(), onPlayerEvent); }

    Message MessageOf(Report report) override {
        return {std::move(report.first), std::to_string(report.second)};
    }

    const Player* m_player;
    PlayerEventFilter m_filter;
};

}  // namespace quiravent
