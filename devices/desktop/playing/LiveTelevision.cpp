#include "playing/LiveTelevision.h"

#include <algorithm>
#include <utility>

#include "playing/PlaneOutput.h"

namespace quiravent::desktop {

namespace {

Pid firstOf(const Service& service, StreamKind kind) {
    const auto found =
        std::find_if(service.streams.begin(), service.streams.end(),
                     [kind](const ElementaryStream& one) { return kindOf(one.codec) == kind; });
    return found == service.streams.end() ? kNullPid : found->pid;
}

/// The streams of the first service with a picture or, where there is none, with sound.
LiveStreams firstService(const MultiplexRef& description) {
    if (!description) return {};
    for (const StreamKind kind : {StreamKind::video, StreamKind::audio}) {
        for (const Service& service : description->services) {
            if (firstOf(service, kind) == kNullPid) continue;
            return {firstOf(service, StreamKind::video), firstOf(service, StreamKind::audio),
                    service.pcrPid, kNullPid};
        }
    }
    return {};
}

}  // namespace

LiveTelevision::LiveTelevision(const Configuration::Television& configuration,
                               PlayerService& players, Screen& screen, Tuner& tuner,
                               RuntimeState& runtimeState)
    : m_selector(configuration.live),
      m_players(players),
      m_screen(screen),
      m_tuner(tuner),
      m_runtimeState(runtimeState) {}

bool LiveTelevision::isOn() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_player != nullptr;
}

void LiveTelevision::switchTo(bool on) {
    if (on == isOn()) return;
    if (on) {
        begin();
    } else {
        finish();
    }
    const std::lock_guard<std::mutex> switching(m_switching);
    tell();
}

void LiveTelevision::begin() {
    const std::lock_guard<std::mutex> switching(m_switching);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_player) return;
        const Rect screen{0, 0, Screen::kWidth, Screen::kHeight};
        m_player =
            LivePlayer::make(m_players.engine(), m_tuner.multiplex(), LiveStreams{}, screen,
                             std::make_shared<PlaneOutput>(m_screen, PlaneOutput::Place::bottom));
        m_player->start();
    }
    selectOwn();
    m_subscription = m_tuner.multiplex().subscribe(*this, {});
    chooseService();
}

void LiveTelevision::selectOwn() {
    if (m_selector.empty() || m_tuner.status().isSelected) return;
    m_tuner.select(m_selector, "", [](e_pl_dtv_error) {});
    m_hasSelected = true;
}

void LiveTelevision::unselectOwn() {
    if (!std::exchange(m_hasSelected, false)) return;
    // The application may have selected something else in the meantime.
    if (m_tuner.status().selector == m_selector) m_tuner.unselect();
}

void LiveTelevision::finish() {
    const std::lock_guard<std::mutex> switching(m_switching);
    m_subscription.reset();
    std::shared_ptr<LivePlayer> player;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        player.swap(m_player);
    }
    if (player) player->close();
    unselectOwn();
}

void LiveTelevision::chooseService() {
    const LiveStreams streams = firstService(m_tuner.multiplex().description());
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_player) m_player->setStreams(streams);
}

void LiveTelevision::enableEvents() {
    const std::lock_guard<std::mutex> switching(m_switching);
    m_hasEvents = true;
    tell();
}

void LiveTelevision::tell() {
    if (!m_hasEvents) return;
    const bool isAbove = m_runtimeState.get() == e_pl_platform_runtime_state_overlay;
    if (isOn() && !isAbove) m_runtimeState.set(e_pl_platform_runtime_state_overlay);
    if (!isOn() && isAbove) m_runtimeState.set(e_pl_platform_runtime_state_running);
}

}  // namespace quiravent::desktop
