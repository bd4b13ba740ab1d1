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
#include "porting/pl_media.h"
#include "support/HandleTable.h"

namespace quiravent::desktop {

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

    /// What goes wrong on purpose; see FaultList.
    FaultList& faults() { return engine().faults(); }

    /// The process ends: all players are unloaded, and what can end soon has ended.
    void finish();

    /// Fails unless pictures of that size can be shown.
    static Rect checkedBounds(const s_pl_media_bounds& bounds);

  private:
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
    MediaEngine& engine();
    std::shared_ptr<Player> createPlayer(const std::string& location, const Rect& bounds);

    Screen& m_screen;
    const Configuration::Media m_configuration;
    const std::string m_authorities;
    std::mutex m_mutex;                     ///< guards what follows, up to the blank line
    std::unique_ptr<MediaEngine> m_engine;  ///< made for the first player
    std::vector<std::weak_ptr<Player>> m_players;

    HandleTable<Player, HandleKind::urlPlayer> m_urlPlayers;
    HandleTable<Player, HandleKind::adPlayer> m_adPlayers;
};

}  // namespace quiravent::desktop
