#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "config/Configuration.h"
#include "display/Screen.h"
#include "media/MediaEngine.h"
#include "media/Player.h"
#include "playing/PlaneOutput.h"
#include "porting/pl_media.h"
#include "support/HandleTable.h"

namespace quiravent::desktop {

/// An open player as it is watched and steered from outside.
struct WatchedPlayer {
    uint64_t number = 0;    ///< from 1, in the order in which players were made
    const char* kind = "";  ///< "url" or "ad"
    std::string location;
    int64_t shownPosition = PlaneOutput::kNoPicture;  ///< see there
    PlayerReport report;
};

/// All players of the application, known by handles: those for a URL and those for advertisements,
/// which differ in their handles only. Thread-safe. What can't be made is thrown as DeviceError
/// with the reason.
class PlayerService {
  public:
    PlayerService(const Configuration& configuration, Screen& screen);

    /// Handle of a new player.
    uint32_t createUrlPlayer(const std::string& location, const s_pl_media_bounds& bounds);
    /// The same for an advertisement, which fills the screen.
    uint32_t createAdPlayer(const std::string& location);

    e_pl_status unloadUrlPlayer(uint32_t handle) { return unload(m_urlPlayers, handle); }
    e_pl_status unloadAdPlayer(uint32_t handle) { return unload(m_adPlayers, handle); }

    /// Calls use(Player&), which gives a status.
    template <class Use>
    e_pl_status withUrlPlayer(uint32_t handle, Use use) const {
        return with(m_urlPlayers, handle, use);
    }
    template <class Use>
    e_pl_status withAdPlayer(uint32_t handle, Use use) const {
        return with(m_adPlayers, handle, use);
    }

    /// Takes the output of pictures and sound for something else, for as long as the claim is kept,
    /// which is in the life of this service at most: players that play are suspended, and stay so
    /// until the application resumes them after that. There may be several claims.
    [[nodiscard]] std::shared_ptr<const void> takeOutput();

    /// The system stops the application: all players are aborted, for good.
    void abortAll();

    /// The open players, in the order in which they were made.
    std::vector<WatchedPlayer> watch() const;
    /// Calls request, which is Player::suspend or Player::abort, of one of those.
    e_pl_status halt(uint64_t number, e_pl_status (Player::*request)());

    /// What all players share; made for the first one. Throws DeviceError when it can't be.
    MediaEngine& engine();

    /// What goes wrong on purpose; see FaultList.
    FaultList& faults() { return engine().faults(); }

    /// The process ends: all players are unloaded, and what can end soon has ended.
    void finish();

    /// Fails unless pictures of that size can be shown.
    static Rect checkedBounds(const s_pl_media_bounds& bounds);

  private:
    struct OpenPlayer {
        uint64_t number;
        const char* kind;
        std::string location;
        std::weak_ptr<Player> player;
        std::weak_ptr<PlaneOutput> output;
    };

    template <class Table, class Use>
    static e_pl_status with(const Table& table, uint32_t handle, Use& use) {
        const std::shared_ptr<Player> player = table.find(handle);
        return player ? use(*player) : e_pl_status_invalid_handle;
    }
    template <class Table>
    static e_pl_status unload(Table& table, uint32_t handle) {
        const std::shared_ptr<Player> player = table.remove(handle);
        if (!player) return e_pl_status_invalid_handle;
        player->unload();
        return e_pl_status_ok;
    }
    std::shared_ptr<Player> createPlayer(const char* kind, const std::string& location,
                                         const Rect& bounds);
    std::vector<std::shared_ptr<Player>> openPlayers() const;
    void setOutputTaken(bool isTaken);

    Screen& m_screen;
    const Configuration::Media m_configuration;
    const std::string m_authorities;
    mutable std::mutex m_mutex;             ///< guards what follows, up to the blank line
    std::unique_ptr<MediaEngine> m_engine;  ///< made for the first player
    std::vector<OpenPlayer> m_players;
    uint64_t m_lastNumber = 0;

    std::mutex m_outputMutex;  ///< guards the number of claims, and that all players know of it
    size_t m_claims = 0;

    HandleTable<Player, HandleKind::urlPlayer> m_urlPlayers;
    HandleTable<Player, HandleKind::adPlayer> m_adPlayers;
};

}  // namespace quiravent::desktop
