#include "playing/PlayerService.h"

#include <algorithm>
#include <utility>

#include "media/audio/audioSinks.h"
#include "playing/PlaneOutput.h"
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

std::shared_ptr<Player> PlayerService::createPlayer(const std::string& location,
                                                    const Rect& bounds) {
    auto player = std::make_shared<Player>(engine(), location, bounds,
                                           std::make_shared<PlaneOutput>(m_screen));
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto isGone = [](const std::weak_ptr<Player>& one) { return one.expired(); };
    m_players.erase(std::remove_if(m_players.begin(), m_players.end(), isGone), m_players.end());
    m_players.push_back(player);
    return player;
}

uint32_t PlayerService::createUrlPlayer(const std::string& location,
                                        const s_pl_media_bounds& bounds) {
    return orTooMany(m_urlPlayers.insert(createPlayer(location, checkedBounds(bounds))));
}

uint32_t PlayerService::createAdPlayer(const std::string& location) {
    const Rect screen{0, 0, Screen::kWidth, Screen::kHeight};
    return orTooMany(m_adPlayers.insert(createPlayer(location, screen)));
}

void PlayerService::finish() {
    std::vector<std::weak_ptr<Player>> players;
    MediaEngine* engine = nullptr;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        players.swap(m_players);
        engine = m_engine.get();
    }
    if (engine == nullptr) return;
    for (const std::weak_ptr<Player>& one : players)
        if (const std::shared_ptr<Player> player = one.lock()) player->unload();
    if (!engine->reaper().waitUntilIdle(kPatience))
        log::info("a player is still waiting for the network at the process's end");
}

}  // namespace quiravent::desktop
