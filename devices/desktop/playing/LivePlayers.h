#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "display/Screen.h"
#include "live/LivePlayer.h"
#include "playing/PlayerService.h"
#include "porting/pl_status.h"
#include "support/HandleTable.h"

namespace quiravent::desktop {

/// The live players that the application holds. Thread-safe.
class LivePlayers {
  public:
    /// All outlive the service.
    LivePlayers(PlayerService& players, Screen& screen, Multiplex& multiplex)
        : m_players(players), m_screen(screen), m_multiplex(multiplex) {}

    /// A new player, stopped, which fills the screen. Throws DeviceError for identifiers that no
    /// stream can have.
    uint32_t create(const LiveStreams& streams);

    /// A player that is started takes the output from the players of media, until it is stopped or
    /// released.
    e_pl_status start(uint32_t handle);
    e_pl_status stop(uint32_t handle);

    e_pl_status release(uint32_t handle);

    /// Calls body(LivePlayer&), which gives a status.
    template <class Body>
    e_pl_status with(uint32_t handle, Body body) {
        const std::shared_ptr<LivePlayer> player = m_table.find(handle);
        return player ? body(*player) : e_pl_status_invalid_handle;
    }

    struct Watched {
        uint64_t number = 0;  ///< from 1, in the order in which players were made
        LivePlayer::Captions captions;
    };
    /// The players that aren't released, in the order in which they were made.
    std::vector<Watched> watch();

    /// The process ends: nothing is shown from the return on.
    void finish();

  private:
    struct Living {
        uint64_t number;
        std::weak_ptr<LivePlayer> player;
    };
    void remember(const std::shared_ptr<LivePlayer>& player);
    std::vector<std::pair<uint64_t, std::shared_ptr<LivePlayer>>> living();

    PlayerService& m_players;
    Screen& m_screen;
    Multiplex& m_multiplex;
    HandleTable<LivePlayer, HandleKind::livePlayer> m_table;
    std::mutex m_mutex;  ///< guards what follows
    std::vector<Living> m_living;
    std::map<uint32_t, std::shared_ptr<const void>> m_claims;  ///< of those started, by handle
    uint64_t m_lastNumber = 0;
};

}  // namespace quiravent::desktop
