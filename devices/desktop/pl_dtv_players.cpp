// Live players of digital television. What is tuned is in pl_dtv.cpp.

#include "boundary.h"
#include "porting/pl_dtv.h"

using quiravent::desktop::answer;
using quiravent::desktop::Device;
using quiravent::desktop::LivePlayer;
using quiravent::desktop::PlayerService;
using quiravent::desktop::Required;

namespace {

/// Asks something of a live player, which it does at once.
template <class Request>
int32_t withPlayer(const char* function, uint32_t handle, const Required& required,
                   Request request) {
    return answer(function, required, [&](Device& device) {
        return device.livePlayers().with(handle, [&](LivePlayer& player) {
            request(player);
            return e_pl_status_ok;
        });
    });
}

}  // namespace

int32_t pl_dtv_Action_getPlayer(uint16_t video_pid, uint16_t audio_pid, uint16_t pcr_pid,
                                uint32_t* handle) {
    return answer(__func__, Required(handle), [&](Device& device) {
        *handle = device.livePlayers().create(
            {video_pid, audio_pid, pcr_pid, quiravent::desktop::kNullPid});
        return e_pl_status_ok;
    });
}

int32_t pl_dtv_Action_releasePlayer(uint32_t handle) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.livePlayers().release(handle); });
}

int32_t pl_dtv_Player_Start(uint32_t handle) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.livePlayers().start(handle); });
}

int32_t pl_dtv_Player_Stop(uint32_t handle) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.livePlayers().stop(handle); });
}

int32_t pl_dtv_Player_SetBounds(uint32_t handle, const s_pl_media_bounds* bounds) {
    return withPlayer(__func__, handle, Required(bounds), [&](LivePlayer& player) {
        player.setBounds(PlayerService::checkedBounds(*bounds));
    });
}

int32_t pl_dtv_Player_SetVolume(uint32_t handle, uint8_t volume) {
    return withPlayer(__func__, handle, Required(),
                      [&](LivePlayer& player) { player.setVolume(volume); });
}

int32_t pl_dtv_Player_ToggleClosedCaption(uint32_t handle, bool on, uint16_t value) {
    return answer(__func__, Required(), [&](Device& device) {
        return device.livePlayers().with(handle, [&](LivePlayer& player) {
            if (on && (value == LivePlayer::kNoCaptions || value >= quiravent::desktop::kNullPid))
                return e_pl_status_invalid_argument;
            player.setCaptions(on ? value : LivePlayer::kNoCaptions);
            return e_pl_status_ok;
        });
    });
}
