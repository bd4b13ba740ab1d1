#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "media/audio/AudioSink.h"
#include "media/audio/NullSink.h"
#include "media/audio/SoundCard.h"
#include "support/Log.h"

namespace quiravent::desktop {

/// Plays the sound on a sound card. Without one, or with one that goes away or hangs, the sound is
/// dropped in its own time, which is told once; when playing begins anew, a card is looked for
/// again.
class SoundCardSink : public AudioSink {
  public:
    using Open = std::function<Result<std::unique_ptr<SoundCard>>()>;

    /// missing: as what the lack of a card is told. open is called when sound is to be heard.
    explicit SoundCardSink(log::Level missing, Open open = openSdlSoundCard);

    int64_t nextHeardAt() override;
    void write(const float* samples, size_t frames) override;
    void rest() override;

  private:
    void lookForCard(int64_t now);
    void lose();

    const log::Level m_missing;
    const Open m_open;
    std::unique_ptr<SoundCard> m_card;  ///< null: there is none
    bool m_resting = true;
    bool m_told = false;
    int64_t m_nextLook = 0;
    NullSink m_pace;
};

}  // namespace quiravent::desktop
