#include <mutex>
#include <string>
#include <utility>

#include "media/audio/AudioFormat.h"
#include "media/audio/SoundCard.h"
#include "sdl/Sdl.h"
#include "support/Clock.h"
#include "support/DeviceError.h"

namespace quiravent::desktop {

namespace {

/// Portion of a card, some 20 ms: short enough that a pause is heard at once, long enough that a
/// busy machine doesn't break the sound.
constexpr uint16_t kPeriod = 1024;

/// SDL's sound: begun with the first card that is opened, ended with the last. SDL's own counting
/// of its parts isn't made for several threads, and the window has one of its own.
class SdlSound {
  public:
    explicit SdlSound(const Sdl& sdl) : m_sdl(sdl) {
        const std::lock_guard<std::mutex> lock(s_mutex);
        if (s_users == 0 && m_sdl.AudioInit(nullptr) != 0) {
            const std::string reason = m_sdl.error();
            m_sdl.TLSCleanup();
            throw DeviceError(e_pl_status_unavailable, reason);
        }
        ++s_users;
    }
    ~SdlSound() {
        const std::lock_guard<std::mutex> lock(s_mutex);
        if (--s_users == 0) m_sdl.AudioQuit();
        // The memory that SDL keeps for this thread, which isn't one of SDL's own.
        m_sdl.TLSCleanup();
    }
    SdlSound(const SdlSound&) = delete;
    SdlSound& operator=(const SdlSound&) = delete;

  private:
    static std::mutex s_mutex;
    static int s_users;
    const Sdl& m_sdl;
};
std::mutex SdlSound::s_mutex;
int SdlSound::s_users = 0;

void giveSamples(void* queue, Uint8* bytes, int size) {
    static_cast<SoundQueue*>(queue)->take(
        reinterpret_cast<float*>(bytes), static_cast<size_t>(size) / sizeof(float) / kAudioChannels,
        clock::now());
}

class SdlSoundCard : public SoundCard {
  public:
    /// Throws DeviceError with the reason.
    explicit SdlSoundCard(const Sdl& sdl) : m_sdl(sdl), m_sound(sdl), m_queue(kPeriod) {
        // Asked for a card where there is none, ALSA tells a page of its own on standard error.
        if (m_sdl.GetNumAudioDevices(SDL_FALSE) == 0)
            throw DeviceError(e_pl_status_unavailable, "there is none");
        SDL_AudioSpec wanted{};
        wanted.freq = kAudioRate;
        wanted.format = AUDIO_F32SYS;
        wanted.channels = kAudioChannels;
        wanted.samples = kPeriod;
        wanted.callback = giveSamples;
        wanted.userdata = &m_queue;
        m_device = m_sdl.OpenAudioDevice(nullptr, SDL_FALSE, &wanted, nullptr, 0);
        if (m_device == 0) throw DeviceError(e_pl_status_unavailable, m_sdl.error());
        m_sdl.PauseAudioDevice(m_device, SDL_FALSE);
    }
    ~SdlSoundCard() override { m_sdl.CloseAudioDevice(m_device); }
    SdlSoundCard(const SdlSoundCard&) = delete;
    SdlSoundCard& operator=(const SdlSoundCard&) = delete;

    SoundQueue& queue() override { return m_queue; }
    bool isPlugged() const override {
        return m_sdl.GetAudioDeviceStatus(m_device) != SDL_AUDIO_STOPPED;
    }

  private:
    const Sdl& m_sdl;
    const SdlSound m_sound;
    SoundQueue m_queue;
    SDL_AudioDeviceID m_device = 0;
};

}  // namespace

Result<std::unique_ptr<SoundCard>> openSdlSoundCard() {
    try {
        return std::unique_ptr<SoundCard>(std::make_unique<SdlSoundCard>(Sdl::instance()));
    } catch (const DeviceError& error) {
        return Failure{error.what()};
    }
}

}  // namespace quiravent::desktop
