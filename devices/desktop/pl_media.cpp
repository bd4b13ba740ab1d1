#include "porting/pl_media.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "boundary.h"

namespace {

using namespace quiravent::desktop;

/// Calls use(Player&), which gives a status.
template <class Use>
int32_t withUrlPlayer(const char* function, uint32_t handle, const Required& required, Use use) {
    return answer(function, required,
                  [&](Device& device) { return device.players().withUrlPlayer(handle, use); });
}

template <class Use>
int32_t withAdPlayer(const char* function, uint32_t handle, const Required& required, Use use) {
    return answer(function, required,
                  [&](Device& device) { return device.players().withAdPlayer(handle, use); });
}

uint32_t milliseconds(int64_t microseconds) {
    return static_cast<uint32_t>(std::clamp<int64_t>(microseconds / kMillisecond, 0, UINT32_MAX));
}

e_pl_status setHandler(Player& player, uint32_t handle, pl_media_event_callback callback) {
    if (callback == nullptr)
        player.setEventHandler(nullptr);
    else
        player.setEventHandler([handle, callback](e_pl_media_event event, uint8_t value) {
            callback(handle, event, value);
        });
    return e_pl_status_ok;
}

e_pl_status tellTime(const Player& player, s_pl_media_timeref& time) {
    const Player::Times times = player.times();
    time = {milliseconds(times.begin), milliseconds(times.now), milliseconds(times.end)};
    return e_pl_status_ok;
}

/// Fills the caller's array with at most as many of the elements as it holds.
template <class Element, class Record, class ToRecord>
void fill(const std::vector<Element>& elements, Record* records, uint32_t& count,
          ToRecord toRecord) {
    count = static_cast<uint32_t>(std::min<size_t>(elements.size(), count));
    std::transform(elements.begin(), elements.begin() + count, records, toRecord);
}

e_pl_status tellBuffered(const Player& player, s_pl_media_timeref* times, uint32_t& count) {
    fill(player.bufferedRanges(), times, count, [](const TimeRange& range) {
        return s_pl_media_timeref{milliseconds(range.begin), 0, milliseconds(range.end)};
    });
    return e_pl_status_ok;
}

struct KindOfType {
    e_pl_media_component_type type;
    TrackKind kind;
};
constexpr KindOfType kKinds[] = {
    {e_pl_media_component_type_video, TrackKind::video},
    {e_pl_media_component_type_audio, TrackKind::audio},
    {e_pl_media_component_type_subtitle, TrackKind::subtitle},
};

/// Null for a type of which there are no tracks.
const KindOfType* findKind(e_pl_media_component_type type) {
    const auto* const found =
        std::find_if(std::begin(kKinds), std::end(kKinds),
                     [type](const KindOfType& one) { return one.type == type; });
    return found == std::end(kKinds) ? nullptr : found;
}

s_pl_media_track_info toRecord(const Track& track, e_pl_media_component_type type) {
    s_pl_media_track_info record{type, track.id, {}};
    std::strncpy(record.language, track.language.c_str(), sizeof record.language - 1);
    return record;
}

}  // namespace

int32_t pl_media_CreateUrlPlayer(const char* url, const s_pl_media_bounds* bounds,
                                 uint32_t* handle) {
    return answer(__func__, Required(url, bounds, handle), [&](Device& device) {
        *handle = device.players().createUrlPlayer(url, *bounds);
        return e_pl_status_ok;
    });
}

int32_t pl_media_UrlPlayer_Fetch(uint32_t handle) {
    return withUrlPlayer(__func__, handle, Required(),
                         [](Player& player) { return player.fetch(); });
}

int32_t pl_media_UrlPlayer_Start(uint32_t handle) {
    return withUrlPlayer(__func__, handle, Required(),
                         [](Player& player) { return player.start(); });
}

int32_t pl_media_UrlPlayer_Pause(uint32_t handle) {
    return withUrlPlayer(__func__, handle, Required(),
                         [](Player& player) { return player.pause(); });
}

int32_t pl_media_UrlPlayer_Resume(uint32_t handle) {
    return withUrlPlayer(__func__, handle, Required(),
                         [](Player& player) { return player.resume(); });
}

int32_t pl_media_UrlPlayer_Stop(uint32_t handle) {
    return withUrlPlayer(__func__, handle, Required(),
                         [](Player& player) { return player.stop(); });
}

int32_t pl_media_UrlPlayer_Unload(uint32_t handle) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.players().unloadUrlPlayer(handle); });
}

int32_t pl_media_UrlPlayer_SetBounds(uint32_t handle, const s_pl_media_bounds* bounds) {
    return withUrlPlayer(__func__, handle, Required(bounds), [&](Player& player) {
        return player.setBounds(PlayerService::checkedBounds(*bounds));
    });
}

int32_t pl_media_UrlPlayer_Seek(uint32_t handle, uint32_t position) {
    return withUrlPlayer(__func__, handle, Required(), [&](Player& player) {
        return player.seek(int64_t{position} * kMillisecond);
    });
}

int32_t pl_media_UrlPlayer_GetTime(uint32_t handle, s_pl_media_timeref* time) {
    return withUrlPlayer(__func__, handle, Required(time),
                         [&](const Player& player) { return tellTime(player, *time); });
}

int32_t pl_media_UrlPlayer_GetBufferedTimes(uint32_t handle, s_pl_media_timeref** times,
                                            uint32_t* count) {
    return withUrlPlayer(
        __func__, handle, Required(times, count, times ? *times : nullptr),
        [&](const Player& player) { return tellBuffered(player, *times, *count); });
}

int32_t pl_media_UrlPlayer_SetPlaybackSpeed(uint32_t handle, int32_t* speed) {
    return withUrlPlayer(__func__, handle, Required(speed), [&](Player& player) {
        double value = *speed;
        const e_pl_status status = player.setSpeed(value);
        *speed = static_cast<int32_t>(std::lround(value));
        return status;
    });
}

int32_t pl_media_UrlPlayer_SetVolume(uint32_t handle, uint8_t volume) {
    return withUrlPlayer(__func__, handle, Required(),
                         [&](Player& player) { return player.setVolume(volume); });
}

int32_t pl_media_UrlPlayer_GetThumbnail(uint32_t handle, uint32_t position, uint32_t w, uint32_t h,
                                        uint32_t* canvas) {
    return answer(__func__, Required(canvas), [&](Device& device) {
        return device.players().withUrlPlayer(handle, [&](Player& player) {
            *canvas = device.drawing().createCanvas([&](SurfacePool& pool) {
                auto picture = player.thumbnail(int64_t{position} * kMillisecond, w, h, pool);
                if (!picture) throw DeviceError(e_pl_status_io_error, picture.reason());
                return *picture;
            });
            return e_pl_status_ok;
        });
    });
}

int32_t pl_media_UrlPlayer_GetTracks(uint32_t handle, e_pl_media_component_type type,
                                     s_pl_media_track_info** tracks, uint32_t* count) {
    return withUrlPlayer(__func__, handle, Required(tracks, count, tracks ? *tracks : nullptr),
                         [&](const Player& player) {
                             const KindOfType* const kind = findKind(type);
                             fill(kind ? player.tracks(kind->kind) : std::vector<TrackRef>{},
                                  *tracks, *count,
                                  [type](const TrackRef& track) { return toRecord(*track, type); });
                             return e_pl_status_ok;
                         });
}

int32_t pl_media_UrlPlayer_SelectTrack(uint32_t handle, e_pl_media_component_type type,
                                       uint32_t id) {
    return withUrlPlayer(__func__, handle, Required(), [&](Player& player) {
        const KindOfType* const kind = findKind(type);
        return kind ? player.selectTrack(kind->kind, id) : e_pl_status_invalid_argument;
    });
}

int32_t pl_media_SetCallback_Event(uint32_t handle, pl_media_event_callback callback) {
    return withUrlPlayer(__func__, handle, Required(),
                         [&](Player& player) { return setHandler(player, handle, callback); });
}

e_pl_ad_media_error pl_media_CreateAdPlayer(const char* url, uint32_t* handle) {
    const int32_t status = answer(__func__, Required(url, handle), [&](Device& device) {
        *handle = device.players().createAdPlayer(url);
        return e_pl_status_ok;
    });
    switch (status) {
        case e_pl_status_ok:
            return e_pl_ad_media_error_none;
        case e_pl_status_invalid_argument:
            return e_pl_ad_media_error_invalid_argument;
        case e_pl_status_unavailable:
            return e_pl_ad_media_error_not_supported;
        default:
            return e_pl_ad_media_error_no_resource;
    }
}

int32_t pl_media_AdPlayer_Start(uint32_t handle) {
    return withAdPlayer(__func__, handle, Required(),
                        [](Player& player) { return player.start(); });
}

int32_t pl_media_AdPlayer_Pause(uint32_t handle) {
    return withAdPlayer(__func__, handle, Required(),
                        [](Player& player) { return player.pause(); });
}

int32_t pl_media_AdPlayer_Resume(uint32_t handle) {
    return withAdPlayer(__func__, handle, Required(),
                        [](Player& player) { return player.resume(); });
}

int32_t pl_media_AdPlayer_Stop(uint32_t handle) {
    return withAdPlayer(__func__, handle, Required(), [](Player& player) { return player.stop(); });
}

int32_t pl_media_AdPlayer_Unload(uint32_t handle) {
    return answer(__func__, Required(),
                  [&](Device& device) { return device.players().unloadAdPlayer(handle); });
}

int32_t pl_media_AdPlayer_GetTime(uint32_t handle, s_pl_media_timeref* time) {
    return withAdPlayer(__func__, handle, Required(time),
                        [&](const Player& player) { return tellTime(player, *time); });
}

int32_t pl_media_AdPlayer_GetBufferedTimes(uint32_t handle, s_pl_media_timeref** times,
                                           uint32_t* count) {
    return withAdPlayer(__func__, handle, Required(times, count, times ? *times : nullptr),
                        [&](const Player& player) { return tellBuffered(player, *times, *count); });
}

int32_t pl_media_AdPlayer_SetVolume(uint32_t handle, uint8_t volume) {
    return withAdPlayer(__func__, handle, Required(),
                        [&](Player& player) { return player.setVolume(volume); });
}

int32_t pl_ad_SetCallback_Event(uint32_t handle, pl_media_event_callback callback) {
    return withAdPlayer(__func__, handle, Required(),
                        [&](Player& player) { return setHandler(player, handle, callback); });
}
