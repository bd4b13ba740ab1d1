#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "graphics/Surface.h"
#include "media/FaultList.h"
#include "media/MediaInput.h"
#include "media/audio/AudioMixer.h"
#include "support/Reaper.h"

namespace quiravent::desktop {

/// How the device plays media.
struct MediaSettings {
    InputLimits input;
    size_t cacheBytes = 64U << 20;  ///< per player
    std::string subtitleFont = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";
};

/// What all players share. Outlives them.
class MediaEngine {
  public:
    MediaEngine(MediaSettings settings, std::unique_ptr<AudioSink> sink,
                std::vector<Fault> faults = {});

    const MediaSettings& settings() const { return m_settings; }
    AudioMixer& mixer() { return m_mixer; }
    FaultList& faults() { return m_faults; }
    SurfacePool& pictures() { return m_pictures; }
    Reaper& reaper() { return m_reaper; }

  private:
    const MediaSettings m_settings;
    AudioMixer m_mixer;
    FaultList m_faults;
    SurfacePool m_pictures;
    Reaper m_reaper{"media-reaper"};  ///< last, since what it destroys uses the others
};

}  // namespace quiravent::desktop
