#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "media/Demuxer.h"
#include "media/FetchProgress.h"
#include "media/Playback.h"
#include "media/Player.h"
#include "media/StallPolicy.h"
#include "media/Thumbnailer.h"
#include "media/Watchdog.h"

namespace quiravent::desktop {

/// What a loaded player consists of. The functions of the first part come from any thread: they
/// check what is asked against the state that the caller knows, change that state, and leave the
/// work to the session's own thread.
class PlayerSession {
  public:
    PlayerSession(MediaEngine& engine, const std::string& location, const Rect& bounds,
                  std::shared_ptr<VideoOutput> output);
    /// Waits for all threads. Only after close().
    ~PlayerSession();
    PlayerSession(const PlayerSession&) = delete;
    PlayerSession& operator=(const PlayerSession&) = delete;

    void setEventHandler(Player::EventHandler handler);
    e_pl_status fetch();
    e_pl_status start();
    e_pl_status pause();
    e_pl_status resume();
    e_pl_status stop();
    e_pl_status seek(int64_t position);
    e_pl_status setBounds(const Rect& bounds);
    e_pl_status setSpeed(double& speed);
    e_pl_status setVolume(uint8_t percent);
    e_pl_status selectTrack(TrackKind kind, uint32_t id);
    e_pl_status abort();
    e_pl_status suspend();
    void setOutputTaken(bool isTaken);
    Player::Times times() const;
    std::vector<TimeRange> bufferedRanges() const;
    std::vector<TrackRef> tracks(TrackKind kind) const;
    PlayerReport report() const;
    Thumbnailer& thumbnailer() { return m_thumbnailer; }

    /// No event is told and nothing is shown from the return on; threads end soon.
    void close();

  private:
    enum class State {
        idle,
        loaded,  ///< being fetched, or fetched; nothing is shown yet
        playing,
        paused,
        suspended,
        stopped,
        completed,
        failed,
    };
    struct Event {
        int64_t time;
        uint32_t registration;  ///< of the handler that is told; 0: of the first
        e_pl_media_event event;
        uint8_t value;
    };

    // Of any thread, with the lock held.
    void post(std::function<void()> command);
    bool isOneOf(std::initializer_list<State> states) const;
    void requestSeek(int64_t position);
    void beSuspended();
    TrackRef findTrack(TrackKind kind, uint32_t id) const;
    PlayerReport::State reportedState() const;

    // Of the session's thread, without the lock.
    void run();
    void runCommands();
    Player::EventHandler handlerOf(const Event& event, int64_t& due) const;
    int64_t deliverEvents();
    void tell(e_pl_media_event event, uint8_t value = 0);
    int64_t step();
    void beginFetch();
    void takeOverMedium();
    void beginAt(int64_t position);
    void beginTrack(TrackKind kind);
    int64_t ahead(const PacketCache::Status& status, int64_t now) const;
    void followFetch(const PacketCache::Status& status, int64_t now);
    void followStalls(const PacketCache::Status& status, int64_t now);
    void followEnd(const PacketCache::Status& status, int64_t now);
    void applyRunning();
    void complete();
    void fail(MediaError error);
    MediaError endError(const PacketCache::Status& status) const;
    State state() const;

    const std::string m_location;
    MediaEngine& m_engine;
    Wakeup m_wakeup;
    std::shared_ptr<VideoOutput> m_output;
    PacketCache m_cache;
    Thumbnailer m_thumbnailer;

    mutable std::mutex m_mutex;  ///< guards what follows, up to the blank line
    State m_state = State::idle;
    bool m_closed = false;
    bool m_outputTaken = false;
    int m_pendingSeeks = 0;  ///< asked for and not begun yet
    int64_t m_position = 0;  ///< where it goes to, or where playing will begin
    double m_speed = 1;
    uint8_t m_volume = 100;
    MediaError m_error = MediaError::none;
    MediaInfo m_info;  ///< written by the session's thread only, once
    std::array<TrackRef, kTrackKinds> m_selected;
    Player::EventHandler m_handler;
    uint32_t m_registration = 0;  ///< how many handlers there have been
    int64_t m_tellFrom = 0;       ///< the handler is told nothing before
    std::deque<std::function<void()>> m_commands;

    // Of the session's thread alone.
    std::unique_ptr<Demuxer> m_demuxer;
    bool m_open = false;
    std::atomic<bool> m_fetchReady{false};  ///< for reports
    bool m_readyTold = false;               ///< playback_ready, since the last start
    bool m_failed = false;
    bool m_audible = false;  ///< the present segment has sound
    bool m_backwards = false;
    uint32_t m_serial = 0;
    int64_t m_duration = 0;  ///< 0: unknown
    FetchProgress m_progress;
    StallPolicy m_stalls;
    Watchdog m_watchdog;
    std::deque<Event> m_events;

    std::unique_ptr<Playback> m_playback;
    std::thread m_thread;
};

}  // namespace quiravent::desktop
