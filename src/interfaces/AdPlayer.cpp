#include "AdPlayer.h"

#include "PlayerCalls.h"
#include "support/InitOrder.h"

const quiravent::ComponentNames AdPlayer::s_componentNames
    __attribute__((init_priority(quiravent::kAdPlayerComponents))) =
        quiravent::MakeComponentNames();

using quiravent::CallPlayer;

int32_t AdPlayer::Start() { return CallPlayer(pl_media_AdPlayer_Start, m_handle); }
int32_t AdPlayer::Pause() { return CallPlayer(pl_media_AdPlayer_Pause, m_handle); }
int32_t AdPlayer::Resume() { return CallPlayer(pl_media_AdPlayer_Resume, m_handle); }
int32_t AdPlayer::Stop() { return CallPlayer(pl_media_AdPlayer_Stop, m_handle); }
int32_t AdPlayer::Unload() { return CallPlayer(pl_media_AdPlayer_Unload, m_handle); }

int32_t AdPlayer::GetTime(unsigned* now, unsigned* begin, unsigned* end) {
    return quiravent::GetPlayerTime(pl_media_AdPlayer_GetTime, m_handle, now, begin, end);
}

int32_t AdPlayer::GetBufferedTimes(s_pl_media_timeref** times, unsigned* count) {
    return CallPlayer(pl_media_AdPlayer_GetBufferedTimes, m_handle, times, count);
}

int32_t AdPlayer::SetVolume(int volume) {
    return CallPlayer(pl_media_AdPlayer_SetVolume, m_handle, static_cast<uint8_t>(volume & 255));
}

std::string AdPlayer::ComponentType2Str(e_pl_media_component_type type) {
    return s_componentNames.at(type);
}

e_pl_media_component_type AdPlayer::Str2ComponentType(const std::string& text) {
    return quiravent::ComponentTypeOf(s_componentNames, text);
}
