#include "lineup/streams/PictureFormat.h"

#include <libyuv.h>

#include <algorithm>
#include <new>

namespace quiravent::desktop::lineup {

AvFrame makePicture(uint32_t width, uint32_t height) {
    AvFrame picture = makeFrame();
    picture->format = AV_PIX_FMT_YUV420P;
    picture->width = static_cast<int>(width);
    picture->height = static_cast<int>(height);
    if (av_frame_get_buffer(picture.get(), 0) < 0) throw std::bad_alloc();
    return picture;
}

AvFrame toPicture(const Surface& surface) {
    AvFrame picture = makePicture(surface.width(), surface.height());
    libyuv::ARGBToI420(reinterpret_cast<const uint8_t*>(surface.row(0)),
                       static_cast<int>(surface.stride() * 4), picture->data[0],
                       picture->linesize[0], picture->data[1], picture->linesize[1],
                       picture->data[2], picture->linesize[2], picture->width, picture->height);
    return picture;
}

AvFrame copyOf(const AVFrame& picture) {
    AvFrame copy =
        makePicture(static_cast<uint32_t>(picture.width), static_cast<uint32_t>(picture.height));
    if (av_frame_copy(copy.get(), &picture) < 0) throw std::bad_alloc();
    return copy;
}

void fillRect(AVFrame& picture, int left, int top, int width, int height, const YuvColour& colour) {
    const auto even = [](int value, int most) { return std::clamp(value & ~1, 0, most); };
    const int right = even(left + width, picture.width);
    const int bottom = even(top + height, picture.height);
    left = even(left, right);
    top = even(top, bottom);
    const auto fill = [&](int plane, int shift, uint8_t value) {
        for (int y = top >> shift; y < bottom >> shift; ++y) {
            uint8_t* const row = picture.data[plane] + ptrdiff_t{y} * picture.linesize[plane];
            std::fill_n(row + (left >> shift), (right - left) >> shift, value);
        }
    };
    fill(0, 0, colour.y);
    fill(1, 1, colour.u);
    fill(2, 1, colour.v);
}

}  // namespace quiravent::desktop::lineup
