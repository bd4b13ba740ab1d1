#include "MediaPlayer.h"

#include "Canvas.h"
#include "MakeOrNull.h"
#include "PlayerCalls.h"
#include "support/InitOrder.h"
#include "support/Kept.h"

const quiravent::ComponentNames MediaPlayer::s_componentNames
    __attribute__((init_priority(quiravent::kMediaPlayerComponents))) =
        quiravent::MakeComponentNames();

using quiravent::CallPlayer;

int32_t MediaPlayer::Fetch() { return CallPlayer(pl_media_UrlPlayer_Fetch, m_handle); }
int32_t MediaPlayer::Start() { return CallPlayer(pl_media_UrlPlayer_Start, m_handle); }
int32_t MediaPlayer::Pause() { return CallPlayer(pl_media_UrlPlayer_Pause, m_handle); }
int32_t MediaPlayer::Resume() { return CallPlayer(pl_media_UrlPlayer_Resume, m_handle); }
int32_t MediaPlayer::Stop() { return CallPlayer(pl_media_UrlPlayer_Stop, m_handle); }
int32_t MediaPlayer::Unload() { return CallPlayer(pl_media_UrlPlayer_Unload, m_handle); }

int32_t MediaPlayer::SetBounds(unsigned x, unsigned y, unsigned w, unsigned h) {
    const s_pl_media_bounds bounds = {x, y, w, h};
    return CallPlayer(pl_media_UrlPlayer_SetBounds, m_handle, &bounds);
}

int32_t MediaPlayer::Seek(unsigned position) {
    return CallPlayer(pl_media_UrlPlayer_Seek, m_handle, position);
}

int32_t MediaPlayer::GetTime(unsigned* now, unsigned* begin, unsigned* end) {
    return quiravent::GetPlayerTime(pl_media_UrlPlayer_GetTime, m_handle, now, begin, end);
}

int32_t MediaPlayer::GetBufferedTimes(s_pl_media_timeref** times, unsigned* count) {
    return CallPlayer(pl_media_UrlPlayer_GetBufferedTimes, m_handle, times, count);
}

int32_t MediaPlayer::SetPlaybackSpeed(int* speed) {
    return CallPlayer(pl_media_UrlPlayer_SetPlaybackSpeed, m_handle, speed);
}

int32_t MediaPlayer::SetVolume(int volume) {
    return CallPlayer(pl_media_UrlPlayer_SetVolume, m_handle, static_cast<uint8_t>(volume & 255));
}

QUIRAVENT_KEPT void MediaPlayer::GetThumbnail(unsigned position, unsigned w, unsigned h,
                                              Canvas** result) {
    *result = nullptr;
    if (m_handle == 0) return;
    uint32_t canvas = 0;
    if (pl_media_UrlPlayer_GetThumbnail(m_handle, position, w, h, &canvas) != 0) return;
    if (canvas == 0) return;
    *result = quiravent::MakeOrNull<Canvas>(w, h, e_GraphicServices_CanvasType_Adopted, canvas);
}

int32_t MediaPlayer::GetTracks(const std::string& type, s_pl_media_track_info** tracks,
                               unsigned* count) {
    return CallPlayer(pl_media_UrlPlayer_GetTracks, m_handle, Str2ComponentType(type), tracks,
                      count);
}

int32_t MediaPlayer::SelectTrack(const std::string& type, unsigned id) {
    return CallPlayer(pl_media_UrlPlayer_SelectTrack, m_handle, Str2ComponentType(type), id);
}

std::string MediaPlayer::ComponentType2Str(e_pl_media_component_type type) {
    return s_componentNames.at(type);
}

e_pl_media_component_type MediaPlayer::Str2ComponentType(const std::string& text) {
    return quiravent::ComponentTypeOf(s_componentNames, text);
}
