#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/imgutils.h>
#include <libavutil/log.h>
#include <libavutil/pixdesc.h>
#include <libswresample/swresample.h>
#include <libswscale/swscale.h>
}

#include "support/SharedLibrary.h"

namespace quiravent::desktop {

/// The FFmpeg libraries. They are opened when a medium is wanted, not linked: they bring more than
/// a hundred libraries into the process, which take longer to open than all else of the
/// device, and many an application plays nothing. Each member is the function of that name; the
/// libraries' headers tell what it does. Their types, constants and inline functions are used as
/// anywhere.
class Ffmpeg {
  public:
    /// Opened once, by whoever comes first; any thread. Throws DeviceError with the reason where a
    /// library is missing, or isn't the one that the device was built for.
    static const Ffmpeg& instance();

    Ffmpeg(const Ffmpeg&) = delete;
    Ffmpeg& operator=(const Ffmpeg&) = delete;

  private:
    Ffmpeg();

    const SharedLibrary m_avutil;
    const SharedLibrary m_avcodec;
    const SharedLibrary m_avformat;
    const SharedLibrary m_swresample;
    const SharedLibrary m_swscale;

  public:
#define FFMPEG_USED(library, name) decltype(&::name) const name;
#include "media/ffmpeg_functions.def"
#undef FFMPEG_USED
};

inline const Ffmpeg& ffmpeg() { return Ffmpeg::instance(); }

}  // namespace quiravent::desktop
