#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "graphics/Geometry.h"
#include "live/ElementaryStreamParser.h"
#include "live/LiveSource.h"
#include "live/StreamIntake.h"
#include "live/StreamTiming.h"
#include "media/MediaEngine.h"
#include "media/Playback.h"
#include "media/VideoOutput.h"
#include "television/Multiplex.h"

namespace quiravent::desktop {

/// Plays streams of the tuned multiplex, over all selections: when one comes, or its signal, it
/// begins with the last key picture; when it goes, the picture is taken away. Thread-safe, and no
/// function waits for anything.
class LivePlayer {
  public:
    /// Numbers of captions below this are services inside the video, others packet identifiers.
    static constexpr uint16_t kFirstSubtitlePid = 16;
    static constexpr uint16_t kNoCaptions = 0;

    /// What can be seen of captions at present.
    struct Captions {
        uint16_t number = kNoCaptions;
        std::vector<std::string> lines;  ///< UTF-8
        size_t pictures = 0;             ///< where subtitles are pictures
    };

    /// Made by make() alone. Engine and multiplex outlive it.
    static std::shared_ptr<LivePlayer> make(MediaEngine& engine, Multiplex& multiplex,
                                            const LiveStreams& streams, const Rect& bounds,
                                            std::shared_ptr<VideoOutput> output);
    /// Waits for its threads. Only after close().
    ~LivePlayer();
    LivePlayer(const LivePlayer&) = delete;
    LivePlayer& operator=(const LivePlayer&) = delete;

    void start();
    /// Takes the picture away; can be started again.
    void stop();
    void setStreams(const LiveStreams& streams);
    /// From the next picture on.
    void setBounds(const Rect& bounds);
    /// In hundredths of the broadcast's own amplitude.
    void setVolume(uint8_t percent);
    /// number: as in pl_dtv_Player_ToggleClosedCaption, or kNoCaptions.
    void setCaptions(uint16_t number);

    Captions captions() const;

    /// Takes the picture away at once, and ends the player; it is freed in the background.
    void close();

  private:
    struct Wanted {
        bool playing = false;
        LiveStreams streams;
        uint16_t captions = kNoCaptions;
    };
    struct Stream {
        StreamCodec codec;
        std::unique_ptr<ElementaryStreamParser> parser;  ///< null: of no use here
    };

    LivePlayer(MediaEngine& engine, Multiplex& multiplex, const LiveStreams& streams,
               const Rect& bounds, std::shared_ptr<VideoOutput> output);
    template <class Change>
    void change(Change apply);

    // Of the player's thread.
    void run();
    bool follow();
    void followPlaying(const Wanted& wanted);
    void followCaptions(uint16_t number);
    void handle(StreamIntake::Item& item);
    void begin();
    void end();
    void checkTables();
    void play(PesUnit unit);
    bool playNow(const PesUnit& unit);
    Stream& streamOf(const PesUnit& unit);
    StreamCodec codecOf(const PesUnit& unit) const;
    bool hasUseFor(Pid pid, TrackKind kind) const;
    void noteCaptions();
    std::vector<Pid> pids() const;

    Multiplex& m_multiplex;
    Wakeup m_wakeup;
    StreamIntake m_intake{m_wakeup};
    LiveSource m_source;
    std::shared_ptr<VideoOutput> m_output;
    std::unique_ptr<Playback> m_playback;

    mutable std::mutex m_mutex;  ///< guards what follows, up to the blank line
    Wanted m_wanted;
    bool m_closed = false;
    bool m_redraw = false;
    Captions m_shown;

    // Of the player's thread alone.
    Wanted m_followed;
    uint32_t m_serial = 0;
    std::map<Pid, Stream> m_streams;
    StreamTiming m_timing;
    std::vector<PesUnit> m_waiting;  ///< whose time can't be told yet
    Subscription m_subscription;
    std::thread m_thread;
};

}  // namespace quiravent::desktop
