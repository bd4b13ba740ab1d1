#pragma once

#include <cstdint>
#include <string>

#include "ComponentType.h"
#include "porting/pl_media.h"

/// A player for an advertisement: the smaller sibling of MediaPlayer, with the same rules.
class AdPlayer {
  public:
    explicit AdPlayer(uint32_t handle) : m_handle(handle) {}

    uint32_t Handle() const { return m_handle; }

    int32_t Start();
    int32_t Pause();
    int32_t Resume();
    int32_t Stop();
    int32_t Unload();
    int32_t GetTime(unsigned* now, unsigned* begin, unsigned* end);
    int32_t GetBufferedTimes(s_pl_media_timeref** times, unsigned* count);
    int32_t SetVolume(int volume);

    static std::string ComponentType2Str(e_pl_media_component_type type);
    static e_pl_media_component_type Str2ComponentType(const std::string& text);

  private:
    uint32_t m_handle;

    static const quiravent::ComponentNames s_componentNames;
};
