#include "media/VideoScaler.h"

#include <libyuv.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace quiravent::desktop {

namespace {

constexpr uint32_t kBlack = 0xFF000000;

bool isFullRange(const AVFrame& picture) {
    return picture.color_range == AVCOL_RANGE_JPEG || picture.format == AV_PIX_FMT_YUVJ420P;
}

/// Pictures that don't say are by convention BT.709 when they are of high definition.
bool isBt709(const AVFrame& picture) {
    if (picture.colorspace == AVCOL_SPC_BT709) return true;
    return picture.colorspace == AVCOL_SPC_UNSPECIFIED && picture.height >= 720;
}

const libyuv::YuvConstants* colorsOf(const AVFrame& picture) {
    const bool full = isFullRange(picture);
    if (picture.colorspace == AVCOL_SPC_BT2020_NCL || picture.colorspace == AVCOL_SPC_BT2020_CL)
        return full ? &libyuv::kYuvV2020Constants : &libyuv::kYuv2020Constants;
    if (isBt709(picture)) return full ? &libyuv::kYuvF709Constants : &libyuv::kYuvH709Constants;
    return full ? &libyuv::kYuvJPEGConstants : &libyuv::kYuvI601Constants;
}

struct Planes {
    std::array<const uint8_t*, 3> data;
    std::array<int, 3> strides;
};

void fillBlack(Surface& surface, const Box& box) {
    for (int64_t y = 0; y < surface.height(); ++y) {
        uint32_t* row = surface.row(static_cast<uint32_t>(y));
        if (y < box.top || y >= box.bottom) {
            std::fill(row, row + surface.width(), kBlack);
        } else {
            std::fill(row, row + box.left, kBlack);
            std::fill(row + box.right, row + surface.width(), kBlack);
        }
    }
}

uint8_t* bytesAt(Surface& surface, const Box& box) {
    return reinterpret_cast<uint8_t*>(surface.row(static_cast<uint32_t>(box.top)) + box.left);
}

}  // namespace

Box fittedBox(uint32_t width, uint32_t height, const VideoFrame& frame) {
    const double aspect = static_cast<double>(frame.picture->width) * frame.pixelAspect.num /
                          (static_cast<double>(frame.picture->height) * frame.pixelAspect.den);
    const auto side = [](double length, uint32_t most) {
        return std::clamp<int64_t>(std::llround(length), 1, most);
    };
    const int64_t w = side(height * aspect, width);
    const int64_t h = side(width / aspect, height);
    return boxAt((width - w) / 2, (height - h) / 2, w, h);
}

VideoScaler::VideoScaler() = default;
VideoScaler::~VideoScaler() = default;

void VideoScaler::Free::operator()(SwsContext* context) const { ffmpeg().sws_freeContext(context); }

std::shared_ptr<Surface> VideoScaler::scale(const VideoFrame& frame, uint32_t width,
                                            uint32_t height, SurfacePool& pool) {
    const AVFrame& picture = *frame.picture;
    if (picture.width <= 0 || picture.height <= 0) return nullptr;
    std::shared_ptr<Surface> surface = pool.create(width, height, SurfacePool::Fill::uninitialised);
    if (!surface) return nullptr;
    const Box box = fittedBox(width, height, frame);
    fillBlack(*surface, box);
    const bool planar =
        picture.format == AV_PIX_FMT_YUV420P || picture.format == AV_PIX_FMT_YUVJ420P;
    const bool converted =
        planar ? convertI420(picture, *surface, box) : convertOther(picture, *surface, box);
    if (!converted) return nullptr;
    surface->setOpaque(true);
    return surface;
}

bool VideoScaler::convertI420(const AVFrame& picture, Surface& surface, const Box& box) {
    const auto w = static_cast<int>(box.width());
    const auto h = static_cast<int>(box.height());
    Planes planes{{picture.data[0], picture.data[1], picture.data[2]},
                  {picture.linesize[0], picture.linesize[1], picture.linesize[2]}};
    if (w != picture.width || h != picture.height) {
        const int chromaWidth = (w + 1) / 2;
        const size_t luma = static_cast<size_t>(w) * static_cast<size_t>(h);
        const size_t chroma = static_cast<size_t>(chromaWidth) * static_cast<size_t>((h + 1) / 2);
        m_planes.resize(luma + 2 * chroma);
        uint8_t* y = m_planes.data();
        uint8_t* u = y + luma;
        uint8_t* v = u + chroma;
        if (libyuv::I420Scale(planes.data[0], planes.strides[0], planes.data[1], planes.strides[1],
                              planes.data[2], planes.strides[2], picture.width, picture.height, y,
                              w, u, chromaWidth, v, chromaWidth, w, h, libyuv::kFilterBox) != 0)
            return false;
        planes = {{y, u, v}, {w, chromaWidth, chromaWidth}};
    }
    return libyuv::I420ToARGBMatrix(planes.data[0], planes.strides[0], planes.data[1],
                                    planes.strides[1], planes.data[2], planes.strides[2],
                                    bytesAt(surface, box), static_cast<int>(surface.stride() * 4),
                                    colorsOf(picture), w, h) == 0;
}

bool VideoScaler::convertOther(const AVFrame& picture, Surface& surface, const Box& box) {
    const auto w = static_cast<int>(box.width());
    const auto h = static_cast<int>(box.height());
    m_context.reset(
        ffmpeg().sws_getCachedContext(m_context.release(), picture.width, picture.height,
                                      static_cast<AVPixelFormat>(picture.format), w, h,
                                      AV_PIX_FMT_RGB32, SWS_BILINEAR, nullptr, nullptr, nullptr));
    if (!m_context) return false;
    const int* matrix =
        ffmpeg().sws_getCoefficients(isBt709(picture) ? SWS_CS_ITU709 : SWS_CS_ITU601);
    ffmpeg().sws_setColorspaceDetails(m_context.get(), matrix, isFullRange(picture) ? 1 : 0,
                                      ffmpeg().sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, 1 << 16,
                                      1 << 16);
    std::array<uint8_t*, 4> data{bytesAt(surface, box)};
    const std::array<int, 4> strides{static_cast<int>(surface.stride() * 4)};
    if (ffmpeg().sws_scale(m_context.get(), picture.data, picture.linesize, 0, picture.height,
                           data.data(), strides.data()) != h)
        return false;
    // A picture's own transparency has nothing to show through to.
    for (int64_t y = box.top; y < box.bottom; ++y) {
        uint32_t* row = surface.row(static_cast<uint32_t>(y));
        for (int64_t x = box.left; x < box.right; ++x) row[x] |= kBlack;
    }
    return true;
}

}  // namespace quiravent::desktop
