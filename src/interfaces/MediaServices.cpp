#include "MediaServices.h"

#include "AdPlayer.h"
#include "MediaPlayer.h"

MediaPlayer* MediaServices::GetPlayer(const std::string& url, unsigned x, unsigned y, unsigned w,
                                      unsigned h) {
    const s_pl_media_bounds bounds = {x, y, w, h};
    uint32_t handle = 0;
    if (pl_media_CreateUrlPlayer(url.c_str(), &bounds, &handle) != 0 || handle == 0) return nullptr;
    return new MediaPlayer(handle);
}

AdPlayer* MediaServices::GetAdPlayer(const std::string& url, e_pl_ad_media_error* error) {
    uint32_t handle = 0;
    *error = pl_media_CreateAdPlayer(url.c_str(), &handle);
    if (*error != e_pl_ad_media_error_none || handle == 0) return nullptr;
    return new AdPlayer(handle);
}
