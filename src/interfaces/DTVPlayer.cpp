#include "DTVPlayer.h"

#include "porting/pl_dtv.h"
#include "support/SaturatingCast.h"

void DTVPlayer::Start() const {
    if (m_handle != 0) (void)pl_dtv_Player_Start(m_handle);
}

void DTVPlayer::Stop() const {
    if (m_handle != 0) (void)pl_dtv_Player_Stop(m_handle);
}

void DTVPlayer::SetBounds(int x, int y, int w, int h) const {
    if (m_handle == 0) return;
    const s_pl_media_bounds bounds = {static_cast<uint32_t>(x), static_cast<uint32_t>(y),
                                      static_cast<uint32_t>(w), static_cast<uint32_t>(h)};
    (void)pl_dtv_Player_SetBounds(m_handle, &bounds);
}

void DTVPlayer::SetVolume(double volume) const {
    if (m_handle == 0) return;
    const auto percent = quiravent::SaturatingCast<uint32_t>(volume * 100.0);
    (void)pl_dtv_Player_SetVolume(m_handle, static_cast<uint8_t>(percent & 255U));
}

void DTVPlayer::ToggleClosedCaption(bool on, unsigned int value) const {
    if (m_handle == 0) return;
    (void)pl_dtv_Player_ToggleClosedCaption(m_handle, on, static_cast<uint16_t>(value & 0xFFFFU));
}

void DTVPlayer::Release() {
    if (m_handle == 0) return;
    (void)pl_dtv_Action_releasePlayer(m_handle);
    m_handle = 0;
}
