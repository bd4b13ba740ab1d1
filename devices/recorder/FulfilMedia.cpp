#include <cstring>

#include "FakeDevice.h"
#include "Fulfil.h"

namespace quiravent::recorder {
namespace {

uint32_t zero() { return 0; }

void putTime(Answer& answer, s_pl_media_timeref* time) {
    answer.put("begin", &time->begin, zero);
    answer.put("now", &time->now, zero);
    answer.put("end", &time->end, zero);
}

/// Prepared as "times": records of "begin", "now" and "end".
void putTimes(Answer& answer, s_pl_media_timeref** times, uint32_t* count) {
    answer.putArray("times", times, count, [](const Value& time) {
        return s_pl_media_timeref{wordOr(time, "begin", 0), wordOr(time, "now", 0),
                                  wordOr(time, "end", 0)};
    });
}

s_pl_media_track_info toTrack(const Value& value) {
    s_pl_media_track_info track{wordOr(value, "type", 0), wordOr(value, "id", 0), {}};
    const Value* language = value.find("language");
    const std::string text = language ? language->text() : "und";
    text.copy(track.language, sizeof track.language - 1);
    return track;
}

}  // namespace

void Fulfil::operator()(Fn<&pl_media_CreateUrlPlayer>, Answer& answer, const char*,
                        const s_pl_media_bounds*, uint32_t* handle) const {
    answer.put("handle", handle, [] { return device().nextPlayer(); });
}

void Fulfil::operator()(Fn<&pl_media_UrlPlayer_GetTime>, Answer& answer, uint32_t,
                        s_pl_media_timeref* time) const {
    putTime(answer, time);
}

void Fulfil::operator()(Fn<&pl_media_UrlPlayer_GetBufferedTimes>, Answer& answer, uint32_t,
                        s_pl_media_timeref** times, uint32_t* count) const {
    putTimes(answer, times, count);
}

void Fulfil::operator()(Fn<&pl_media_UrlPlayer_SetPlaybackSpeed>, Answer& answer, uint32_t,
                        int32_t* speed) const {
    answer.put("speed", speed, [&] { return *speed; });
}

void Fulfil::operator()(Fn<&pl_media_UrlPlayer_GetThumbnail>, Answer& answer, uint32_t, uint32_t,
                        uint32_t w, uint32_t h, uint32_t* canvas) const {
    answer.put("canvas", canvas, [&] { return device().addCanvas(w, h); });
}

void Fulfil::operator()(Fn<&pl_media_UrlPlayer_GetTracks>, Answer& answer, uint32_t,
                        e_pl_media_component_type, s_pl_media_track_info** tracks,
                        uint32_t* count) const {
    answer.putArray("tracks", tracks, count, toTrack);
}

void Fulfil::operator()(Fn<&pl_media_SetCallback_Event>, Answer& answer, uint32_t handle,
                        pl_media_event_callback callback) const {
    if (!answer.succeeds()) return;
    device().changeCallbacks([&](auto& callbacks) { callbacks.media[handle] = callback; });
}

void Fulfil::operator()(Fn<&pl_media_CreateAdPlayer>, Answer& answer, const char*,
                        uint32_t* handle) const {
    answer.put("handle", handle, [] { return device().nextPlayer(); });
}

void Fulfil::operator()(Fn<&pl_media_AdPlayer_GetTime>, Answer& answer, uint32_t,
                        s_pl_media_timeref* time) const {
    putTime(answer, time);
}

void Fulfil::operator()(Fn<&pl_media_AdPlayer_GetBufferedTimes>, Answer& answer, uint32_t,
                        s_pl_media_timeref** times, uint32_t* count) const {
    putTimes(answer, times, count);
}

void Fulfil::operator()(Fn<&pl_ad_SetCallback_Event>, Answer& answer, uint32_t handle,
                        pl_media_event_callback callback) const {
    if (!answer.succeeds()) return;
    device().changeCallbacks([&](auto& callbacks) { callbacks.ad[handle] = callback; });
}

void Fulfil::operator()(Fn<&pl_dtv_Action_getPlayer>, Answer& answer, uint16_t, uint16_t, uint16_t,
                        uint32_t* handle) const {
    answer.put("handle", handle, [] { return device().nextPlayer(); });
}

void Fulfil::operator()(Fn<&pl_dtv_Action_selectTransportStream>, Answer& answer, const char*,
                        const char*, pl_dtv_action_callback callback) const {
    if (!answer.succeeds()) return;
    device().changeCallbacks([&](auto& callbacks) { callbacks.dtv = callback; });
}

}  // namespace quiravent::recorder
