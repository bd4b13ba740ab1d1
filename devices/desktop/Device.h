#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "config/Configuration.h"
#include "control/ControlServer.h"
#include "display/Screen.h"
#include "drawing/DrawingService.h"
#include "input/RemoteControl.h"
#include "persistence/Persistence.h"
#include "platform/Platform.h"
#include "platform/ProcessStart.h"
#include "platform/StandardStreams.h"
#include "playing/LivePlayers.h"
#include "playing/LiveTelevision.h"
#include "playing/OutputPolicy.h"
#include "playing/PlayerService.h"
#include "television/Tuner.h"

namespace quiravent::desktop {

/// The set-top box of this process. It starts at the first call and stays until the process is
/// gone, since threads may be inside of it while the process ends; what is due at an orderly end
/// (the picture of the screen, the closing of the stores, the end of the event threads) is done by
/// an exit handler, by leave() and restart(), or before the process ends by a signal.
class Device {
  public:
    /// Null when it couldn't start; the reason was told on standard error, once.
    static Device* running() noexcept;

    explicit Device(const Configuration& configuration);

    RemoteControl& remote() { return m_remote; }
    DrawingService& drawing() { return m_drawing; }
    PlayerService& players() { return m_players; }
    LivePlayers& livePlayers() { return m_livePlayers; }
    LiveTelevision& liveTelevision() { return m_liveTelevision; }
    Tuner& tuner() { return m_tuner; }
    Persistence& persistence() { return m_persistence; }
    Platform& platform() { return m_platform; }

    /// Switches the device's own television service, which takes the output from the players.
    void switchLiveTelevision(bool on);

    /// Ends the process in good order, with status 0. Not by way of exit(), which would destroy
    /// what threads of the runtime are using, and wait for jobs of its pool that may take long.
    [[noreturn]] void leave() noexcept;

    /// The same, and has the application started anew: by the launcher, where it runs under it, or
    /// else in this same process, with the arguments, environment and folder it began with.
    [[noreturn]] void restart() noexcept;

  private:
    static Device* start() noexcept;
    void startControl(const std::string& path);
    void stopApplication();
    void finish() noexcept;
    void finishInTurn() noexcept;

    const ProcessStart m_processStart;
    const StandardStreams m_standardStreams;
    Platform m_platform;
    RemoteControl m_remote;
    Screen m_screen;
    DrawingService m_drawing;
    Tuner m_tuner;
    PlayerService m_players;
    LivePlayers m_livePlayers{m_players, m_screen, m_tuner.multiplex()};
    LiveTelevision m_liveTelevision;
    OutputPolicy m_outputPolicy{m_players};
    Persistence m_persistence;
    std::unique_ptr<ControlServer> m_control;  ///< null: none was asked for, or it can't be
    std::atomic<bool> m_isComplete{false};     ///< made; until then a viewer may already end it
    std::once_flag m_finished;
};

}  // namespace quiravent::desktop
