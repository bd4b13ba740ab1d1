#pragma once

#include <memory>

#include "media/audio/SoundQueue.h"
#include "support/Result.h"

namespace quiravent::desktop {

/// An open sound card, which plays what is in its queue. For one thread.
class SoundCard {
  public:
    virtual ~SoundCard() = default;
    virtual SoundQueue& queue() = 0;
    /// False once the card has been taken away.
    virtual bool isPlugged() const = 0;
};

/// Opens the card that the desktop's user has chosen. SDL's SDL_AUDIODRIVER names another way to
/// it, for example "dummy" or "disk". May take a while.
Result<std::unique_ptr<SoundCard>> openSdlSoundCard();

}  // namespace quiravent::desktop
