#pragma once

#include <cstdint>
#include <limits>
#include <memory>

#include "media/Ffmpeg.h"
#include "support/Clock.h"

/// Owners for the objects of the FFmpeg libraries. An owner that a make function gives is never
/// null: without memory the function throws std::bad_alloc.
namespace quiravent::desktop {

struct AvDelete {
    void operator()(AVPacket* packet) const { ffmpeg().av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { ffmpeg().av_frame_free(&frame); }
    void operator()(AVCodecContext* context) const { ffmpeg().avcodec_free_context(&context); }
    void operator()(AVCodecParameters* codec) const { ffmpeg().avcodec_parameters_free(&codec); }
    void operator()(AVFormatContext* format) const { ffmpeg().avformat_close_input(&format); }
    void operator()(AVDictionary* options) const { ffmpeg().av_dict_free(&options); }
};

using AvPacket = std::unique_ptr<AVPacket, AvDelete>;
using AvFrame = std::unique_ptr<AVFrame, AvDelete>;
using AvCodecContext = std::unique_ptr<AVCodecContext, AvDelete>;
using AvFormatContext = std::unique_ptr<AVFormatContext, AvDelete>;

AvPacket makePacket();
AvFrame makeFrame();
std::shared_ptr<const AVCodecParameters> copyOf(const AVCodecParameters& codec);

/// Times of media are in microseconds from the beginning of the medium.
constexpr int64_t kNoTime = AV_NOPTS_VALUE;
constexpr AVRational kMicroseconds{1, 1000000};

/// Opens the libraries, and keeps them from writing to standard error; call before any other use of
/// them. Throws DeviceError with the reason where they can't be opened.
void quietAv();

/// Whether a server's certificate was refused on this thread since the last call. The libraries'
/// results tell that as any failure of the network.
bool takeCertificateRefusal();

}  // namespace quiravent::desktop
