#pragma once

#include <string>

#include "porting/pl_media.h"

class AdPlayer;
class MediaPlayer;

/// Creates players. Any thread; may take as long as the device needs. Results belong to the caller
/// and are null when the device refuses.
class MediaServices {
  public:
    static MediaPlayer* GetPlayer(const std::string& url, unsigned x, unsigned y, unsigned w,
                                  unsigned h);
    /// \param error what the device answered; it may be 0 beside a null
    static AdPlayer* GetAdPlayer(const std::string& url, e_pl_ad_media_error* error);
};
