#include "media/SubtitleTrack.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "graphics/PixelMath.h"

namespace quiravent::desktop {

namespace {

/// More cues than are ever on the screen; older ones are forgotten.
constexpr size_t kMaxCues = 64;
constexpr size_t kMaxLines = 12;
/// Fields before the text of an event.
constexpr int kEventFields = 8;
constexpr uint32_t kWithoutEnd = UINT32_MAX;

uint32_t premultiplied(uint32_t color) {
    const uint32_t alpha = color >> 24;
    return (scalePixel(color, alpha) & 0x00FFFFFF) | (alpha << 24);
}

void trimmedInto(std::vector<std::string>& lines, std::string& line) {
    const size_t begin = line.find_first_not_of(" \t\r");
    if (begin != std::string::npos && lines.size() < kMaxLines)
        lines.push_back(line.substr(begin, line.find_last_not_of(" \t\r") - begin + 1));
    line.clear();
}

}  // namespace

std::vector<std::string> subtitleLines(const std::string& event) {
    size_t at = 0;
    for (int field = 0; field < kEventFields; ++field) {
        const size_t comma = event.find(',', at);
        if (comma == std::string::npos) return {};
        at = comma + 1;
    }
    std::vector<std::string> lines;
    std::string line;
    const std::string_view text(event);
    while (at < text.size()) {
        const std::string_view two = text.substr(at, 2);
        const size_t end = text[at] == '{' ? text.find('}', at) : std::string_view::npos;
        if (end != std::string_view::npos) {
            at = end + 1;
        } else if (two == "\\N" || two == "\\n") {
            trimmedInto(lines, line);
            at += 2;
        } else if (two == "\\h") {
            line += ' ';
            at += 2;
        } else if (text[at] == '\n') {
            trimmedInto(lines, line);
            ++at;
        } else {
            line += text[at++];
        }
    }
    trimmedInto(lines, line);
    return lines;
}

SubtitleTrack::SubtitleTrack(const Track& track) {
    const AVCodec* codec = ffmpeg().avcodec_find_decoder(track.codec->codec_id);
    if (codec == nullptr) return;
    AvCodecContext context(ffmpeg().avcodec_alloc_context3(codec));
    if (!context || ffmpeg().avcodec_parameters_to_context(context.get(), track.codec.get()) < 0)
        return;
    context->pkt_timebase = kMicroseconds;
    if (ffmpeg().avcodec_open2(context.get(), codec, nullptr) >= 0) m_context = std::move(context);
}

void SubtitleTrack::decode(const Packet& packet) {
    if (!m_context) return;
    const AvPacket data(ffmpeg().av_packet_clone(packet.data.get()));
    if (!data) return;
    AVSubtitle subtitle{};
    int complete = 0;
    if (ffmpeg().avcodec_decode_subtitle2(m_context.get(), &subtitle, &complete, data.get()) < 0)
        return;
    if (complete == 0) return;
    add(subtitle, packet);
    ffmpeg().avsubtitle_free(&subtitle);
}

void SubtitleTrack::add(const AVSubtitle& subtitle, const Packet& packet) {
    SubtitleCue cue{};
    cue.begin = packet.pts + int64_t{subtitle.start_display_time} * kMillisecond;
    const bool isPicture = subtitle.format == 0;
    const bool hasEnd = subtitle.end_display_time != 0 && subtitle.end_display_time != kWithoutEnd;
    if (hasEnd)
        cue.end = packet.pts + int64_t{subtitle.end_display_time} * kMillisecond;
    else
        cue.end = !isPicture && packet.duration > 0 ? packet.end() : INT64_MAX;
    // A picture is seen until the next one, at the latest.
    if (isPicture && !m_cues.empty()) m_cues.back().end = std::min(m_cues.back().end, cue.begin);
    cue.areaWidth = static_cast<uint32_t>(std::max(m_context->width, 0));
    cue.areaHeight = static_cast<uint32_t>(std::max(m_context->height, 0));
    for (unsigned index = 0; index < subtitle.num_rects; ++index)
        addRect(*subtitle.rects[index], cue);
    if (cue.lines.empty() && cue.bitmaps.empty()) return;
    m_cues.push_back(std::move(cue));
    if (m_cues.size() > kMaxCues) m_cues.erase(m_cues.begin());
}

void SubtitleTrack::addRect(const AVSubtitleRect& rect, SubtitleCue& cue) {
    if (rect.type == SUBTITLE_BITMAP) {
        if (rect.w <= 0 || rect.h <= 0 || rect.data[0] == nullptr || rect.data[1] == nullptr)
            return;
        SubtitleBitmap bitmap{static_cast<uint32_t>(std::max(rect.x, 0)),
                              static_cast<uint32_t>(std::max(rect.y, 0)),
                              static_cast<uint32_t>(rect.w),
                              static_cast<uint32_t>(rect.h),
                              {}};
        const auto* palette = reinterpret_cast<const uint32_t*>(rect.data[1]);
        for (int y = 0; y < rect.h; ++y)
            for (int x = 0; x < rect.w; ++x)
                bitmap.pixels.push_back(
                    premultiplied(palette[rect.data[0][y * rect.linesize[0] + x]]));
        cue.bitmaps.push_back(std::move(bitmap));
    } else if (rect.ass != nullptr) {
        for (std::string& line : subtitleLines(rect.ass)) cue.lines.push_back(std::move(line));
    }
}

const SubtitleCue* SubtitleTrack::at(int64_t position) const {
    for (auto cue = m_cues.rbegin(); cue != m_cues.rend(); ++cue)
        if (cue->begin <= position && position < cue->end) return &*cue;
    return nullptr;
}

}  // namespace quiravent::desktop
