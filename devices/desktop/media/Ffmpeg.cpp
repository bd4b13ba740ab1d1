#include "media/Ffmpeg.h"

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

// Of each library the version whose headers this was built with: types differ between them.
Ffmpeg::Ffmpeg() try
    : m_avutil("libavutil.so." AV_STRINGIFY(LIBAVUTIL_VERSION_MAJOR)),
      m_avcodec("libavcodec.so." AV_STRINGIFY(LIBAVCODEC_VERSION_MAJOR)),
      m_avformat("libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR)),
      m_swresample("libswresample.so." AV_STRINGIFY(LIBSWRESAMPLE_VERSION_MAJOR)),
      m_swscale("libswscale.so." AV_STRINGIFY(LIBSWSCALE_VERSION_MAJOR))
#define FFMPEG_USED(library, name) , name(m_##library.require<decltype(name)>(#name))
#include "media/ffmpeg_functions.def"
#undef FFMPEG_USED
{
} catch (const DeviceError& error) {
    throw DeviceError(error.status(),
                      joined("media can't be used: ", error.what(),
                             "; install the FFmpeg libraries that the device was built for"));
}

const Ffmpeg& Ffmpeg::instance() {
    static const Ffmpeg ffmpeg;
    return ffmpeg;
}

}  // namespace quiravent::desktop
