#include "media/Player.h"

#include <utility>

#include "media/PlayerSession.h"

namespace quiravent::desktop {

namespace {

/// Asks something of the session; after unload() there is none.
template <class Request>
e_pl_status ask(const std::shared_ptr<PlayerSession>& session, Request request) {
    return session ? request(*session) : e_pl_status_wrong_state;
}

}  // namespace

Player::Player(MediaEngine& engine, const std::string& location, const Rect& bounds,
               std::shared_ptr<VideoOutput> output)
    : m_session(engine.reaper().buried(
          std::make_unique<PlayerSession>(engine, location, bounds, std::move(output)))) {}

Player::~Player() { unload(); }

std::shared_ptr<PlayerSession> Player::session() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_session;
}

void Player::unload() {
    std::shared_ptr<PlayerSession> session;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        session.swap(m_session);
    }
    if (session) session->close();
}

void Player::setEventHandler(EventHandler handler) {
    if (const auto loaded = session()) loaded->setEventHandler(std::move(handler));
}

e_pl_status Player::fetch() {
    return ask(session(), [](PlayerSession& loaded) { return loaded.fetch(); });
}

e_pl_status Player::start() {
    return ask(session(), [](PlayerSession& loaded) { return loaded.start(); });
}

e_pl_status Player::pause() {
    return ask(session(), [](PlayerSession& loaded) { return loaded.pause(); });
}

e_pl_status Player::resume() {
    return ask(session(), [](PlayerSession& loaded) { return loaded.resume(); });
}

e_pl_status Player::stop() {
    return ask(session(), [](PlayerSession& loaded) { return loaded.stop(); });
}

e_pl_status Player::seek(int64_t position) {
    return ask(session(), [&](PlayerSession& loaded) { return loaded.seek(position); });
}

e_pl_status Player::setBounds(const Rect& bounds) {
    return ask(session(), [&](PlayerSession& loaded) { return loaded.setBounds(bounds); });
}

e_pl_status Player::setSpeed(double& speed) {
    return ask(session(), [&](PlayerSession& loaded) { return loaded.setSpeed(speed); });
}

e_pl_status Player::setVolume(uint8_t percent) {
    return ask(session(), [&](PlayerSession& loaded) { return loaded.setVolume(percent); });
}

e_pl_status Player::selectTrack(TrackKind kind, uint32_t id) {
    return ask(session(), [&](PlayerSession& loaded) { return loaded.selectTrack(kind, id); });
}

e_pl_status Player::abort() {
    return ask(session(), [](PlayerSession& loaded) { return loaded.abort(); });
}

e_pl_status Player::suspend() {
    return ask(session(), [](PlayerSession& loaded) { return loaded.suspend(); });
}

void Player::setOutputTaken(bool isTaken) {
    if (const auto loaded = session()) loaded->setOutputTaken(isTaken);
}

Player::Times Player::times() const {
    const auto loaded = session();
    return loaded ? loaded->times() : Times{0, 0, 0};
}

std::vector<TimeRange> Player::bufferedRanges() const {
    const auto loaded = session();
    return loaded ? loaded->bufferedRanges() : std::vector<TimeRange>{};
}

std::vector<TrackRef> Player::tracks(TrackKind kind) const {
    const auto loaded = session();
    return loaded ? loaded->tracks(kind) : std::vector<TrackRef>{};
}

PlayerReport Player::report() const {
    const auto loaded = session();
    return loaded ? loaded->report() : PlayerReport{};
}

Result<std::shared_ptr<Surface>> Player::thumbnail(int64_t position, uint32_t width,
                                                   uint32_t height, SurfacePool& pool) {
    const auto loaded = session();
    if (!loaded) return Failure{"the player is unloaded"};
    return loaded->thumbnailer().make(position, width, height, pool);
}

}  // namespace quiravent::desktop
