#include "captions/LineCaptions.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "captions/safeArea.h"
#include "support/Log.h"

namespace quiravent::desktop {

namespace {

constexpr double kUnitsAcross = 384;  // of the decoder's places
constexpr double kUnitsDown = 288;
constexpr Color kWhite{255, 255, 255, 255};
constexpr Color kBlack{0, 0, 0, 255};

AvCodecContext openDecoder() {
    const AVCodec* const codec = ffmpeg().avcodec_find_decoder(AV_CODEC_ID_EIA_608);
    AvCodecContext context(codec == nullptr ? nullptr : ffmpeg().avcodec_alloc_context3(codec));
    if (!context) return nullptr;
    context->pkt_timebase = kMicroseconds;
    AVDictionary* options = nullptr;
    ffmpeg().av_dict_set(&options, "real_time", "1", 0);
    ffmpeg().av_dict_set(&options, "real_time_latency_msec", "0", 0);
    ffmpeg().av_dict_set(&options, "data_field", "first", 0);
    const int opened = ffmpeg().avcodec_open2(context.get(), codec, &options);
    ffmpeg().av_dict_free(&options);
    if (opened < 0) return nullptr;
    return context;
}

/// Reads the rows of a screen from the decoder's event: texts in Advanced SubStation's markup, each
/// with its place, separated by "\N".
class EventReader {
  public:
    explicit EventReader(std::string_view event) : m_rest(event) {}

    std::vector<PlacedLine> read() {
        constexpr int kFieldsBeforeText = 8;
        for (int field = 0; field < kFieldsBeforeText; ++field)
            m_rest.remove_prefix(std::min(m_rest.find(',') + 1, m_rest.size()));
        while (!m_rest.empty()) readOne();
        endLine();
        return std::move(m_lines);
    }

  private:
    void readOne() {
        const size_t end = m_rest.front() == '{' ? m_rest.find('}') : std::string_view::npos;
        if (end != std::string_view::npos) {
            readTag(std::string(m_rest.substr(1, end - 1)));
            m_rest.remove_prefix(end + 1);
        } else if (m_rest.substr(0, 2) == "\\N") {
            endLine();
            m_rest.remove_prefix(2);
        } else {
            appendCharacter(m_rest.substr(0, 2) == "\\h" ? ' ' : m_rest.front());
            m_rest.remove_prefix(m_rest.substr(0, 2) == "\\h" ? 2 : 1);
        }
    }

    void readTag(const std::string& tag) {
        char* rest = nullptr;
        if (tag.rfind("\\pos(", 0) == 0) {
            m_line.x = std::strtod(tag.c_str() + 5, &rest) / kUnitsAcross;
            if (*rest == ',')
                m_line.bottom = std::strtod(rest + 1, nullptr) / kUnitsDown + kRowHeight;
        } else if (tag.rfind("\\c&H", 0) == 0) {
            const auto bgr = std::strtoul(tag.c_str() + 4, nullptr, 16);
            m_color = {static_cast<uint8_t>(bgr), static_cast<uint8_t>(bgr >> 8),
                       static_cast<uint8_t>(bgr >> 16), 255};
            m_newPiece = true;
        }
    }

    void appendCharacter(char character) {
        if (m_newPiece || m_line.pieces.empty()) m_line.pieces.push_back({"", m_color, kBlack});
        m_newPiece = false;
        m_line.pieces.back().text += character;
    }

    void endLine() {
        if (!m_line.pieces.empty()) m_lines.push_back(std::move(m_line));
        m_line = {PlacedLine::Anchor::left, 0, 1, {}};
    }

    std::string_view m_rest;
    PlacedLine m_line{PlacedLine::Anchor::left, 0, 1, {}};
    Color m_color = kWhite;
    bool m_newPiece = false;
    std::vector<PlacedLine> m_lines;
};

}  // namespace

LineCaptions::LineCaptions(unsigned channel) : m_channel(channel), m_decoder(openDecoder()) {
    if (!m_decoder) log::warning("captions of CEA-608 can't be decoded: libavcodec has no decoder");
}

void LineCaptions::accept(const std::vector<CaptionPair>& pairs, int64_t pts) {
    if (!m_decoder) return;
    for (const CaptionPair& pair : pairs) {
        const auto picked = m_channel.pick(pair);
        if (!picked) continue;
        const AvPacket packet = makePacket();
        if (ffmpeg().av_new_packet(packet.get(), 3) < 0) return;
        packet->data[0] = 0xFC;
        std::copy(picked->bytes.begin(), picked->bytes.end(), packet->data + 1);
        packet->pts = pts;
        AVSubtitle subtitle{};
        int complete = 0;
        if (ffmpeg().avcodec_decode_subtitle2(m_decoder.get(), &subtitle, &complete, packet.get()) <
            0)
            continue;
        if (complete == 0) continue;
        const AVSubtitleRect* const last = subtitle.rects[subtitle.num_rects - 1];
        m_cue.placedLines = EventReader(last->ass == nullptr ? "" : last->ass).read();
        m_cue.begin = pts;
        m_cue.end = INT64_MAX;
        ffmpeg().avsubtitle_free(&subtitle);
    }
}

}  // namespace quiravent::desktop
