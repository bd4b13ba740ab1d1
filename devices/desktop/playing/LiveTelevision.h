#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "display/Screen.h"
#include "live/LivePlayer.h"
#include "platform/RuntimeState.h"
#include "playing/PlayerService.h"
#include "television/Tuner.h"

namespace quiravent::desktop {

/// The device's own television service, seen below everything else: the first service that can be
/// watched of the multiplex that is selected, or, where none is when it is switched on, of the
/// configured one. Thread-safe.
class LiveTelevision : public StreamListener {
  public:
    /// All outlive it.
    LiveTelevision(const Configuration::Television& configuration, PlayerService& players,
                   Screen& screen, Tuner& tuner, RuntimeState& runtimeState);
    ~LiveTelevision() override { finish(); }
    LiveTelevision(const LiveTelevision&) = delete;
    LiveTelevision& operator=(const LiveTelevision&) = delete;

    void switchTo(bool on);
    bool isOn() const;

    /// The application has asked for the events of television: from now on, the runtime state
    /// tells whether the application lies above television.
    void enableEvents();

    /// The process ends, or nobody looks any more.
    void finish();

    void onTuned() override { chooseService(); }
    void onUntuned() override {}
    void onPacket(const StreamPacket&) override {}
    void onTablesChanged() override { chooseService(); }
    void onSignal(bool) override {}

  private:
    void begin();
    void selectOwn();
    void unselectOwn();
    void chooseService();
    void tell();

    const std::string m_selector;  ///< empty: only what the application selects is watched
    PlayerService& m_players;
    Screen& m_screen;
    Tuner& m_tuner;
    RuntimeState& m_runtimeState;

    std::mutex m_switching;  ///< one switch at a time; guards what follows up to the blank line
    Subscription m_subscription;
    bool m_hasEvents = false;
    bool m_hasSelected = false;

    mutable std::mutex m_mutex;            ///< guards what follows; taken after the other
    std::shared_ptr<LivePlayer> m_player;  ///< null: off
};

}  // namespace quiravent::desktop
