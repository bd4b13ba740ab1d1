#pragma once

#include <map>
#include <string>

#include "Answer.h"
#include "porting/pl_functions.h"

namespace quiravent::recorder {

/// Names a function of the interface as a type.
template <auto function>
struct Fn {};

/// What the functions do that have outputs or that the fake device remembers something of; all
/// others only give a status. `out` pointers may be null.
struct Fulfil {
    void operator()(Fn<&pl_gfx_CreateCanvas>, Answer& answer, uint32_t width, uint32_t height,
                    uint32_t* handle) const;
    void operator()(Fn<&pl_gfx_GetTargetCanvas>, Answer& answer, uint32_t* handle) const;
    void operator()(Fn<&pl_gfx_ReleaseCanvas>, Answer& answer, uint32_t handle) const;
    void operator()(Fn<&pl_gfx_Canvas_GetSize>, Answer& answer, uint32_t handle, uint32_t* w,
                    uint32_t* h) const;
    void operator()(Fn<&pl_gfx_Canvas_GetColor>, Answer& answer, uint32_t handle,
                    s_pl_gfx_color* color) const;
    void operator()(Fn<&pl_gfx_Canvas_GetClip>, Answer& answer, uint32_t handle,
                    s_pl_gfx_rect* clip) const;

    /// Each byte of the text is 10 wide, and a line is 20 high.
    void operator()(Fn<&pl_gfx_Canvas_MeasureText>, Answer& answer, uint32_t handle,
                    const char* text, uint32_t* w, uint32_t* h) const;
    void operator()(Fn<&pl_gfx_Canvas_SetColor>, Answer& answer, uint32_t handle,
                    s_pl_gfx_color color) const;
    void operator()(Fn<&pl_gfx_Canvas_SetClip>, Answer& answer, uint32_t handle,
                    const s_pl_gfx_rect* clip) const;

    /// A picture of 64 by 32 pixels, whatever the path.
    void operator()(Fn<&pl_gfx_LoadImage>, Answer& answer, const char* path,
                    uint32_t* handle) const;
    void operator()(Fn<&pl_gfx_LoadFont>, Answer& answer, const char* path, uint8_t size,
                    uint32_t* handle) const;
    void operator()(Fn<&pl_gfx_GetVRAMStats>, Answer& answer, s_pl_gfx_vram_stats* stats) const;

    void operator()(Fn<&pl_media_CreateUrlPlayer>, Answer& answer, const char* url,
                    const s_pl_media_bounds* bounds, uint32_t* handle) const;
    void operator()(Fn<&pl_media_UrlPlayer_GetTime>, Answer& answer, uint32_t handle,
                    s_pl_media_timeref* time) const;
    void operator()(Fn<&pl_media_UrlPlayer_GetBufferedTimes>, Answer& answer, uint32_t handle,
                    s_pl_media_timeref** times, uint32_t* count) const;
    void operator()(Fn<&pl_media_UrlPlayer_SetPlaybackSpeed>, Answer& answer, uint32_t handle,
                    int32_t* speed) const;
    void operator()(Fn<&pl_media_UrlPlayer_GetThumbnail>, Answer& answer, uint32_t handle,
                    uint32_t position, uint32_t w, uint32_t h, uint32_t* canvas) const;
    void operator()(Fn<&pl_media_UrlPlayer_GetTracks>, Answer& answer, uint32_t handle,
                    e_pl_media_component_type type, s_pl_media_track_info** tracks,
                    uint32_t* count) const;
    void operator()(Fn<&pl_media_SetCallback_Event>, Answer& answer, uint32_t handle,
                    pl_media_event_callback callback) const;
    void operator()(Fn<&pl_media_CreateAdPlayer>, Answer& answer, const char* url,
                    uint32_t* handle) const;
    void operator()(Fn<&pl_media_AdPlayer_GetTime>, Answer& answer, uint32_t handle,
                    s_pl_media_timeref* time) const;
    void operator()(Fn<&pl_media_AdPlayer_GetBufferedTimes>, Answer& answer, uint32_t handle,
                    s_pl_media_timeref** times, uint32_t* count) const;
    void operator()(Fn<&pl_ad_SetCallback_Event>, Answer& answer, uint32_t handle,
                    pl_media_event_callback callback) const;

    void operator()(Fn<&pl_persistent_GetPersistent>, Answer& answer, unsigned int* handle,
                    const std::string& context) const;
    void operator()(Fn<&pl_persistent_GetValue>, Answer& answer, unsigned int handle,
                    const std::string& key, std::string& value) const;
    void operator()(Fn<&pl_persistent_SetValue>, Answer& answer, unsigned int handle,
                    const std::string& key, const std::string& value) const;
    void operator()(Fn<&pl_persistent_GetAllValues>, Answer& answer, unsigned int handle,
                    std::map<std::string, std::string>& values) const;

    void operator()(Fn<&pl_platform_InitProperties>, Answer& answer,
                    s_pl_platform_properties* properties) const;
    void operator()(Fn<&pl_platform_GetRuntimeState>, Answer& answer,
                    e_pl_platform_runtime_state* state) const;
    void operator()(Fn<&pl_platform_SetRuntimeState>, Answer& answer,
                    e_pl_platform_runtime_state state) const;
    void operator()(Fn<&pl_platform_SetCallback_RuntimeStateChange>, Answer& answer,
                    pl_platform_runtime_state_callback callback) const;
    void operator()(Fn<&pl_platform_ToggleLiveDTV>, Answer& answer, bool on) const;
    void operator()(Fn<&pl_platform_GetLiveDTVStatus>, Answer& answer, uint8_t* on) const;

    void operator()(Fn<&pl_dtv_Action_getPlayer>, Answer& answer, uint16_t videoPid,
                    uint16_t audioPid, uint16_t pcrPid, uint32_t* handle) const;
    void operator()(Fn<&pl_dtv_Action_selectTransportStream>, Answer& answer, const char* selector,
                    const char* option, pl_dtv_action_callback callback) const;

    void operator()(Fn<&pl_input_SetCallback_KeyPress>, Answer& answer,
                    pl_input_key_callback callback) const;
    void operator()(Fn<&pl_input_SetCallback_KeyRelease>, Answer& answer,
                    pl_input_key_callback callback) const;
};

}  // namespace quiravent::recorder
