#pragma once

#include <cstdint>
#include <string>

#include "ComponentType.h"
#include "porting/pl_media.h"

class Canvas;

/// A player for a URL: one player handle of the porting layer, with a method for each function of
/// it. A handle of 0 makes every method do nothing. Results are the device's status.
///
/// Players are never deleted: nothing knows when the last user of one is gone. Script thread, but
/// for Handle, which a pool thread reads too.
class MediaPlayer {
  public:
    explicit MediaPlayer(uint32_t handle) : m_handle(handle) {}

    uint32_t Handle() const { return m_handle; }

    int32_t Fetch();
    int32_t Start();
    int32_t Pause();
    int32_t Resume();
    int32_t Stop();
    /// Keeps the handle: later calls go to the device with it, and are its to refuse.
    int32_t Unload();
    int32_t SetBounds(unsigned x, unsigned y, unsigned w, unsigned h);
    int32_t Seek(unsigned position);
    /// Outputs in this order, which is not that of the device's record; untouched with a handle
    /// of 0.
    int32_t GetTime(unsigned* now, unsigned* begin, unsigned* end);
    /// \param times address of a pointer to the caller's array
    /// \param count in: what the array holds; out: what the device filled
    int32_t GetBufferedTimes(s_pl_media_timeref** times, unsigned* count);
    /// \param speed in: what is asked for; out: what the device took
    int32_t SetPlaybackSpeed(int* speed);
    /// The device gets the low 8 bits.
    int32_t SetVolume(int volume);
    /// \param result a canvas owned by the caller, or null
    void GetThumbnail(unsigned position, unsigned w, unsigned h, Canvas** result);
    int32_t GetTracks(const std::string& type, s_pl_media_track_info** tracks, unsigned* count);
    int32_t SelectTrack(const std::string& type, unsigned id);

    static std::string ComponentType2Str(e_pl_media_component_type type);
    static e_pl_media_component_type Str2ComponentType(const std::string& text);

  private:
    uint32_t m_handle;

    static const quiravent::ComponentNames s_componentNames;
};
