#include "playing/PlayerService.h"

#include <algorithm>
#include <utility>

#include "media/audio/audioSinks.h"
#include "support/DeviceError.h"
#include "support/Log.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

/// How long the end of the process waits for threads of players.
constexpr int64_t kPatience = kSecond;

MediaSettings settingsFrom(const Configuration::Media& media, const std::string& authorities) {
    MediaSettings settings;
    settings.input.authorities = authorities;
    settings.input.timeLimit = static_cast<int64_t>(media.timeLimitSeconds) * kSecond;
    settings.input.bandwidth = media.bandwidthKbit * 1000;
    settings.cacheBytes = static_cast<size_t>(media.cache);
    settings.subtitleFont = media.subtitleFont;
    return settings;
}

std::unique_ptr<AudioSink> sinkFrom(const Configuration::Media& media) {
    auto sink = createAudioSink(media.audioSink, media.audioFile);
    if (!sink) throw DeviceError(e_pl_status_io_error, sink.reason());
    return std::move(*sink);
}

std::vector<Fault> faultsFrom(const Configuration::Media& media) {
    auto faults = parseFaults(media.faults);
    if (!faults) throw DeviceError(e_pl_status_invalid_argument, faults.reason());
    return std::move(*faults);
}

uint32_t orTooMany(uint32_t handle) {
    if (handle == 0) throw DeviceError(e_pl_status_no_memory, "too many players are open");
    return handle;
}

}  // namespace

PlayerService::PlayerService(const Configuration& configuration, Screen& screen)
    : m_screen(screen),
      m_configuration(configuration.media),
      m_authorities(configuration.network.authorities) {}

Rect PlayerService::checkedBounds(const s_pl_media_bounds& bounds) {
    constexpr uint32_t kMaxSide = SurfacePool::kMaxSide;
    if (bounds.w > kMaxSide || bounds.h > kMaxSide) {
        throw DeviceError(e_pl_status_invalid_argument,
                          joined("video can't be shown in ", bounds.w, " by ", bounds.h,
                                 " pixels; each side may be up to ", kMaxSide));
    }
    return {bounds.x, bounds.y, bounds.w, bounds.h};
}

MediaEngine& PlayerService::engine() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_engine) {
        m_engine =
            std::make_unique<MediaEngine>(settingsFrom(m_configuration, m_authorities),
                                          sinkFrom(m_configuration), faultsFrom(m_configuration));
    }
    return *m_engine;
}

std::shared_ptr<Player> PlayerService::createPlayer(const char* kind, const std::string& location,
                                                    const Rect& bounds) {
    const auto output = std::make_shared<PlaneOutput>(m_screen);
    auto player = std::make_shared<Player>(engine(), location, bounds, output);
    const std::lock_guard<std::mutex> outputLock(m_outputMutex);
    player->setOutputTaken(m_claims > 0);
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto isGone = [](const OpenPlayer& one) { return one.player.expired(); };
    m_players.erase(std::remove_if(m_players.begin(), m_players.end(), isGone), m_players.end());
    m_players.push_back({++m_lastNumber, kind, location, player, output});
    return player;
}

uint32_t PlayerService::createUrlPlayer(const std::string& location,
                                        const s_pl_media_bounds& bounds) {
    return orTooMany(m_urlPlayers.insert(createPlayer("url", location, checkedBounds(bounds))));
}

uint32_t PlayerService::createAdPlayer(const std::string& location) {
    const Rect screen{0, 0, Screen::kWidth, Screen::kHeight};
    return orTooMany(m_adPlayers.insert(createPlayer("ad", location, screen)));
}

std::vector<std::shared_ptr<Player>> PlayerService::openPlayers() const {
    std::vector<std::shared_ptr<Player>> players;
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const OpenPlayer& one : m_players)
        if (auto player = one.player.lock()) players.push_back(std::move(player));
    return players;
}

void PlayerService::setOutputTaken(bool isTaken) {
    for (const auto& player : openPlayers()) player->setOutputTaken(isTaken);
}

std::shared_ptr<const void> PlayerService::takeOutput() {
    {
        const std::lock_guard<std::mutex> lock(m_outputMutex);
        if (++m_claims == 1) setOutputTaken(true);
    }
    return {this, [](PlayerService* service) {
                const std::lock_guard<std::mutex> lock(service->m_outputMutex);
                if (--service->m_claims == 0) service->setOutputTaken(false);
            }};
}

void PlayerService::abortAll() {
    for (const auto& player : openPlayers()) (void)player->abort();
}

std::vector<WatchedPlayer> PlayerService::watch() const {
    std::vector<OpenPlayer> open;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        open = m_players;
    }
    std::vector<WatchedPlayer> watched;
    for (const OpenPlayer& one : open) {
        const auto player = one.player.lock();
        const auto output = one.output.lock();
        if (!player || !output) continue;
        watched.push_back(
            {one.number, one.kind, one.location, output->shownPosition(), player->report()});
    }
    return watched;
}

e_pl_status PlayerService::halt(uint64_t number, e_pl_status (Player::*request)()) {
    std::shared_ptr<Player> player;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        for (const OpenPlayer& one : m_players)
            if (one.number == number) player = one.player.lock();
    }
    return player ? ((*player).*request)() : e_pl_status_not_found;
}

void PlayerService::finish() {
    const std::vector<std::shared_ptr<Player>> players = openPlayers();
    MediaEngine* engine = nullptr;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        engine = m_engine.get();
    }
    if (engine == nullptr) return;
    for (const auto& player : players) player->unload();
    if (!engine->reaper().waitUntilIdle(kPatience))
        log::info("a player is still waiting for the network at the process's end");
}

}  // namespace quiravent::desktop
