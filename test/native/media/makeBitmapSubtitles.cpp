// makeBitmapSubtitles CODEC FILE: writes a file with one track of subtitles that are pictures, for
// which FFmpeg's tool has no source: a white bar of 160 by 20 pixels at (80, 150) in a picture of
// 320 by 180, from second 1 to 2 and from 3 to 4.

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "media/Av.h"

namespace {

using namespace quiravent::desktop;

constexpr int kWidth = 160;
constexpr int kHeight = 20;

int checked(int result) {
    if (result < 0) throw std::runtime_error("FFmpeg error " + std::to_string(result));
    return result;
}

struct Bar {
    std::vector<uint8_t> pixels = std::vector<uint8_t>(size_t{kWidth} * kHeight, 1);
    std::array<uint32_t, 4> palette{0, 0xFFFFFFFF, 0xFF000000, 0xFF808080};
    AVSubtitleRect rect{};
    AVSubtitleRect* rects = &rect;

    Bar() {
        rect.type = SUBTITLE_BITMAP;
        rect.x = 80;
        rect.y = 150;
        rect.w = kWidth;
        rect.h = kHeight;
        rect.nb_colors = static_cast<int>(palette.size());
        rect.data[0] = pixels.data();
        rect.data[1] = reinterpret_cast<uint8_t*>(palette.data());
        rect.linesize[0] = kWidth;
    }
};

AvCodecContext openEncoder(const char* name) {
    const AVCodec* codec = avcodec_find_encoder_by_name(name);
    if (codec == nullptr) throw std::runtime_error(std::string("no encoder ") + name);
    AvCodecContext encoder(avcodec_alloc_context3(codec));
    encoder->time_base = kMicroseconds;
    encoder->width = 320;
    encoder->height = 180;
    checked(avcodec_open2(encoder.get(), codec, nullptr));
    return encoder;
}

/// Writes what is shown for so long from a time on: the bar, or nothing.
void write(AVFormatContext& file, AVCodecContext& encoder, Bar* bar, int64_t time) {
    AVSubtitle subtitle{};
    subtitle.pts = time;
    subtitle.end_display_time = 1000;
    subtitle.num_rects = bar == nullptr ? 0 : 1;
    subtitle.rects = bar == nullptr ? nullptr : &bar->rects;
    std::vector<uint8_t> coded(1U << 16);
    const int size = checked(
        avcodec_encode_subtitle(&encoder, coded.data(), static_cast<int>(coded.size()), &subtitle));
    const AvPacket packet = makePacket();
    checked(av_new_packet(packet.get(), size));
    std::copy_n(coded.begin(), size, packet->data);
    packet->pts = packet->dts = time;
    packet->duration = kSecond;
    av_packet_rescale_ts(packet.get(), kMicroseconds, file.streams[0]->time_base);
    checked(av_interleaved_write_frame(&file, packet.get()));
}

void writeFile(const char* codec, const char* path) {
    const AvCodecContext encoder = openEncoder(codec);
    AVFormatContext* format = nullptr;
    checked(avformat_alloc_output_context2(&format, nullptr, nullptr, path));
    AVStream* stream = avformat_new_stream(format, nullptr);
    checked(avcodec_parameters_from_context(stream->codecpar, encoder.get()));
    stream->time_base = kMicroseconds;
    checked(avio_open(&format->pb, path, AVIO_FLAG_WRITE));
    checked(avformat_write_header(format, nullptr));
    Bar bar;
    for (const int64_t second : {1, 3}) {
        write(*format, *encoder, &bar, second * kSecond);
        // DVB's subtitles don't tell their end, but are taken away.
        if (encoder->codec_id == AV_CODEC_ID_DVB_SUBTITLE)
            write(*format, *encoder, nullptr, (second + 1) * kSecond);
    }
    checked(av_write_trailer(format));
    checked(avio_closep(&format->pb));
    avformat_free_context(format);
}

}  // namespace

int main(int count, char** words) {
    if (count != 3) {
        std::cerr << "usage: makeBitmapSubtitles CODEC FILE\n";
        return EXIT_FAILURE;
    }
    try {
        writeFile(words[1], words[2]);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << words[1] << ", " << words[2] << ": " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
