#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "graphics/Geometry.h"
#include "media/MediaEngine.h"
#include "media/PacketCache.h"
#include "media/PlayerReport.h"
#include "media/VideoOutput.h"
#include "porting/pl_media.h"
#include "porting/pl_status.h"
#include "support/Result.h"

namespace quiravent::desktop {

class PlayerSession;

/// A player for one medium: functions that ask for something and come back at once, and events that
/// tell what came of it. Thread-safe. No function waits for the network, a decoder or the screen,
/// but for thumbnail().
///
/// Positions are in microseconds. A function that makes no sense in the player's state gives
/// e_pl_status_wrong_state and changes nothing; after unload() that is all of them.
class Player {
  public:
    /// Called by the player's own thread, with no lock held.
    using EventHandler = std::function<void(e_pl_media_event event, uint8_t value)>;

    /// Nothing is read yet. The output is freed some time after unload().
    Player(MediaEngine& engine, const std::string& location, const Rect& bounds,
           std::shared_ptr<VideoOutput> output);
    /// Unloads.
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// Replaces the handler; events from before aren't told again. The first one is told what was
    /// in the second before, and each is told nothing until its caller can be listening.
    void setEventHandler(EventHandler handler);

    e_pl_status fetch();
    e_pl_status start();
    e_pl_status pause();
    e_pl_status resume();
    e_pl_status stop();
    /// To the nearest position that there is: within the medium or, where it is live, within what
    /// was read and kept.
    e_pl_status seek(int64_t position);
    e_pl_status setBounds(const Rect& bounds);

    /// How many times as fast as normal, negative backwards: between 0.5 and 2 with sound, faster
    /// by key pictures. Held to kMaxSpeed and kMinSpeed. In and out: afterwards the speed that
    /// holds, also where it couldn't be changed.
    static constexpr double kMaxSpeed = 32;
    static constexpr double kMinSpeed = 0.25;
    e_pl_status setSpeed(double& speed);

    /// In hundredths of the medium's own amplitude.
    e_pl_status setVolume(uint8_t percent);

    struct Times {
        int64_t begin;
        int64_t now;
        int64_t end;
    };
    /// Where positions are that can be gone to; of live media those that were read and kept. Zeros
    /// before anything is known.
    Times times() const;
    /// What can be played without reading on, in rising order. A local medium is there as a whole.
    std::vector<TimeRange> bufferedRanges() const;
    /// In the medium's order; none before anything is known.
    std::vector<TrackRef> tracks(TrackKind kind) const;
    /// All of that at once, and more. Of an unloaded player it is that of one that is idle.
    PlayerReport report() const;

    /// An unknown id of a subtitle switches subtitles off; of another kind it is not found.
    e_pl_status selectTrack(TrackKind kind, uint32_t id);

    /// A new surface with the key picture at or before a position. Waits for reading, at most
    /// Thumbnailer::kTimeLimit for each step.
    Result<std::shared_ptr<Surface>> thumbnail(int64_t position, uint32_t width, uint32_t height,
                                               SurfacePool& pool);

    /// Ended by the device for good: e_pl_media_event_playback_abort.
    e_pl_status abort();
    /// Halted by the device until resume(): e_pl_media_event_playback_suspend.
    e_pl_status suspend();
    /// Whether something else has the output of pictures and sound. As long as it has, a player
    /// that plays, or begins to, is suspended, and can't be resumed.
    void setOutputTaken(bool isTaken);

    /// Takes the picture away and frees everything, in the background. No event is told from the
    /// return on, but that whose handler is already being called.
    void unload();

  private:
    std::shared_ptr<PlayerSession> session() const;

    mutable std::mutex m_mutex;
    std::shared_ptr<PlayerSession> m_session;  ///< null once unloaded
};

}  // namespace quiravent::desktop
