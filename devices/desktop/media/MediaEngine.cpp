#include "media/MediaEngine.h"

#include <utility>

#include "media/Av.h"

namespace quiravent::desktop {

namespace {

/// Pictures of the size of the screen for several players; they are no memory of the application's.
constexpr size_t kPictureBytes = 256U << 20;

}  // namespace

MediaEngine::MediaEngine(MediaSettings settings, std::unique_ptr<AudioSink> sink,
                         std::vector<Fault> faults)
    : m_settings(std::move(settings)),
      m_mixer(std::move(sink)),
      m_faults(std::move(faults)),
      m_pictures(kPictureBytes) {
    quietAv();
}

}  // namespace quiravent::desktop
