#include "media/Deinterlacer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace quiravent::desktop {

namespace {

constexpr int kAlignment = 32;

/// Noise of a still picture isn't motion.
constexpr int kNoise = 2;

bool isPlanar8(int format) {
    const AVPixFmtDescriptor* description =
        ffmpeg().av_pix_fmt_desc_get(static_cast<AVPixelFormat>(format));
    if (description == nullptr || (description->flags & AV_PIX_FMT_FLAG_RGB) != 0) return false;
    if ((description->flags & AV_PIX_FMT_FLAG_PLANAR) == 0) return false;
    return std::all_of(
        description->comp, description->comp + description->nb_components,
        [](const AVComponentDescriptor& one) { return one.depth == 8 && one.step == 1; });
}

struct Plane {
    const uint8_t* bytes;
    int stride;
    const uint8_t* line(int y) const { return bytes + std::ptrdiff_t{y} * stride; }
};

/// A missing line, from those of the field above and below it, the other field's line there, and
/// the same three of the picture before: between its neighbours, but so close to the other field's
/// as nothing moved.
struct Neighbours {
    const uint8_t* above;
    const uint8_t* below;
    const uint8_t* other;
    const uint8_t* aboveBefore;
    const uint8_t* belowBefore;
    const uint8_t* otherBefore;
};

void fillMoving(uint8_t* __restrict line, int width, const Neighbours& from) {
    for (int x = 0; x < width; ++x) {
        const int between = (from.above[x] + from.below[x] + 1) / 2;
        const int motion = std::max({std::abs(from.above[x] - from.aboveBefore[x]),
                                     std::abs(from.below[x] - from.belowBefore[x]),
                                     std::abs(from.other[x] - from.otherBefore[x])});
        const int moved = motion <= kNoise ? 0 : motion;
        const int other = from.other[x];
        line[x] = static_cast<uint8_t>(std::clamp(between, other - moved, other + moved));
    }
}

void fillBetween(uint8_t* __restrict line, int width, const uint8_t* above, const uint8_t* below) {
    for (int x = 0; x < width; ++x) line[x] = static_cast<uint8_t>((above[x] + below[x] + 1) / 2);
}

/// Fills a plane with the field whose lines are the even (parity 0) or odd ones. before: of the
/// picture before, or with null bytes.
void fillPlane(uint8_t* to, int toStride, const Plane& from, const Plane& before, int width,
               int height, int parity) {
    for (int y = 0; y < height; ++y, to += toStride) {
        if (y % 2 == parity) {
            std::memcpy(to, from.line(y), static_cast<size_t>(width));
            continue;
        }
        const int above = y > 0 ? y - 1 : y + 1;
        const int below = y + 1 < height ? y + 1 : y - 1;
        if (before.bytes == nullptr)
            fillBetween(to, width, from.line(above), from.line(below));
        else
            fillMoving(to, width,
                       {from.line(above), from.line(below), from.line(y), before.line(above),
                        before.line(below), before.line(y)});
    }
}

/// Not every picture before the target of a seek is decoded.
bool follows(const VideoFrame& frame, const VideoFrame& before) {
    if (!before.picture || std::abs(frame.pts - before.end()) > frame.duration / 2) return false;
    const AVFrame& one = *frame.picture;
    const AVFrame& other = *before.picture;
    return one.format == other.format && one.width == other.width && one.height == other.height;
}

}  // namespace

void Deinterlacer::Free::operator()(AVBufferPool* pool) const {
    ffmpeg().av_buffer_pool_uninit(&pool);
}

bool Deinterlacer::isInterlaced(const VideoFrame& frame) {
    return frame.picture->interlaced_frame != 0 && frame.picture->height >= 2 &&
           isPlanar8(frame.picture->format);
}

AvFrame Deinterlacer::allocate(const AVFrame& like) {
    const auto format = static_cast<AVPixelFormat>(like.format);
    const int size = ffmpeg().av_image_get_buffer_size(format, like.width, like.height, kAlignment);
    if (size <= 0) return nullptr;
    if (m_poolSize != static_cast<size_t>(size)) {
        m_poolSize = static_cast<size_t>(size);
        m_pool.reset(ffmpeg().av_buffer_pool_init(m_poolSize, nullptr));
    }
    AvFrame frame = makeFrame();
    if (!m_pool || ffmpeg().av_frame_copy_props(frame.get(), &like) < 0) return nullptr;
    frame->format = like.format;
    frame->width = like.width;
    frame->height = like.height;
    frame->buf[0] = ffmpeg().av_buffer_pool_get(m_pool.get());
    if (frame->buf[0] == nullptr) return nullptr;
    if (ffmpeg().av_image_fill_arrays(frame->data, frame->linesize, frame->buf[0]->data, format,
                                      like.width, like.height, kAlignment) < 0)
        return nullptr;
    frame->interlaced_frame = 0;
    return frame;
}

VideoFrame Deinterlacer::field(const VideoFrame& frame, const AVFrame* before, int parity) {
    const AVFrame& picture = *frame.picture;
    AvFrame made = allocate(picture);
    if (!made) return frame;
    const AVPixFmtDescriptor& format =
        *ffmpeg().av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
    for (int plane = 0;
         plane < ffmpeg().av_pix_fmt_count_planes(static_cast<AVPixelFormat>(picture.format));
         ++plane) {
        const bool chroma = plane == 1 || plane == 2;
        const int width = AV_CEIL_RSHIFT(picture.width, chroma ? format.log2_chroma_w : 0);
        const int height = AV_CEIL_RSHIFT(picture.height, chroma ? format.log2_chroma_h : 0);
        const Plane old = before == nullptr ? Plane{nullptr, 0}
                                            : Plane{before->data[plane], before->linesize[plane]};
        fillPlane(made->data[plane], made->linesize[plane],
                  {picture.data[plane], picture.linesize[plane]}, old, width, height, parity);
    }
    VideoFrame result = frame;
    result.picture = std::shared_ptr<const AVFrame>(std::move(made));
    return result;
}

std::vector<VideoFrame> Deinterlacer::split(const VideoFrame& frame) {
    const VideoFrame before = std::exchange(m_before, frame);
    if (!isInterlaced(frame)) return {frame};
    const AVFrame* known = follows(frame, before) ? before.picture.get() : nullptr;
    const int firstLines = frame.picture->top_field_first != 0 ? 0 : 1;
    std::vector<VideoFrame> fields{field(frame, known, firstLines),
                                   field(frame, known, 1 - firstLines)};
    fields[0].duration = frame.duration / 2;
    fields[1].pts += fields[0].duration;
    fields[1].duration -= fields[0].duration;
    return fields;
}

VideoFrame Deinterlacer::first(const VideoFrame& frame) {
    if (!isInterlaced(frame)) return frame;
    return field(frame, nullptr, frame.picture->top_field_first != 0 ? 0 : 1);
}

}  // namespace quiravent::desktop
