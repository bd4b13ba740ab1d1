#include "playing/LivePlayers.h"

#include <algorithm>
#include <utility>

#include "playing/PlaneOutput.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

void check(const char* what, Pid pid) {
    if (pid <= kNullPid) return;
    throw DeviceError(e_pl_status_invalid_argument,
                      joined("the ", what, " packet identifier is ", pid,
                             "; allowed: 0 to 8191, which means none"));
}

}  // namespace

uint32_t LivePlayers::create(const LiveStreams& streams) {
    check("video", streams.video);
    check("audio", streams.audio);
    check("clock", streams.clock);
    const Rect screen{0, 0, Screen::kWidth, Screen::kHeight};
    auto player = LivePlayer::make(m_players.engine(), m_multiplex, streams, screen,
                                   std::make_shared<PlaneOutput>(m_screen));
    const uint32_t handle = m_table.insert(player);
    if (handle == 0) {
        player->close();
        throw DeviceError(e_pl_status_no_memory, "too many live players are open");
    }
    remember(player);
    return handle;
}

e_pl_status LivePlayers::start(uint32_t handle) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return with(handle, [&](LivePlayer& player) {
        std::shared_ptr<const void>& claim = m_claims[handle];
        if (!claim) claim = m_players.takeOutput();
        player.start();
        return e_pl_status_ok;
    });
}

e_pl_status LivePlayers::stop(uint32_t handle) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return with(handle, [&](LivePlayer& player) {
        m_claims.erase(handle);
        player.stop();
        return e_pl_status_ok;
    });
}

e_pl_status LivePlayers::release(uint32_t handle) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_claims.erase(handle);
    const std::shared_ptr<LivePlayer> player = m_table.remove(handle);
    if (!player) return e_pl_status_invalid_handle;
    player->close();
    return e_pl_status_ok;
}

void LivePlayers::remember(const std::shared_ptr<LivePlayer>& player) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto isGone = [](const Living& one) { return one.player.expired(); };
    m_living.erase(std::remove_if(m_living.begin(), m_living.end(), isGone), m_living.end());
    m_living.push_back({++m_lastNumber, player});
}

std::vector<std::pair<uint64_t, std::shared_ptr<LivePlayer>>> LivePlayers::living() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<std::pair<uint64_t, std::shared_ptr<LivePlayer>>> players;
    for (const Living& one : m_living)
        if (auto player = one.player.lock()) players.emplace_back(one.number, std::move(player));
    return players;
}

std::vector<LivePlayers::Watched> LivePlayers::watch() {
    std::vector<Watched> all;
    for (const auto& [number, player] : living()) all.push_back({number, player->captions()});
    return all;
}

void LivePlayers::finish() {
    for (const auto& [number, player] : living()) player->close();
}

}  // namespace quiravent::desktop
