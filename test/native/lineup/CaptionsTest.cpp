#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <tuple>

#include "captions/VideoCaptions.h"
#include "captions/captionText.h"
#include "lineup/TestLineup.h"
#include "media/Av.h"
#include "media/SubtitleTrack.h"
#include "support/Text.h"

namespace quiravent::desktop::lineup {
namespace {

using test::Bytes;

/// A text, the picture with which it comes, and that with which it goes.
using Seen = std::tuple<std::string, long, long>;

/// The caption data of each picture of the service's video.
std::vector<Bytes> captionDataOf(const std::string& json, const char* file) {
    std::vector<Bytes> all;
    test::decode(
        test::contentOf(test::multiplexOf(json), 500), file, TrackKind::video,
        [&all](const AVFrame& picture) {
            const AVFrameSideData* const data =
                av_frame_get_side_data(&picture, AV_FRAME_DATA_A53_CC);
            all.push_back(data == nullptr ? Bytes() : Bytes(data->data, data->data + data->size));
        });
    return all;
}

std::string plain(const std::string& ass) {
    const size_t start = ass.rfind(",,");
    std::string text = start == std::string::npos ? ass : ass.substr(start + 2);
    text = std::regex_replace(text, std::regex(R"(\{[^}]*\}|\\h)"), "");
    return std::regex_replace(text, std::regex(R"(\\N)"), "|");
}

/// What the FFmpeg libraries' decoder of CEA-608 shows, by numbers of pictures.
std::vector<Seen> read608(const std::vector<Bytes>& data, double pictureRate) {
    const AvCodecContext context(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_EIA_608)));
    context->pkt_timebase = {1, 1000};
    EXPECT_EQ(avcodec_open2(context.get(), nullptr, nullptr), 0);
    std::vector<Seen> seen;
    const auto pictureAt = [&](double ms) { return std::lround(ms * pictureRate / 1000); };
    for (size_t i = 0; i < data.size(); ++i) {
        if (data[i].empty()) continue;
        const AvPacket packet = makePacket();
        EXPECT_EQ(av_new_packet(packet.get(), static_cast<int>(data[i].size())), 0);
        std::copy(data[i].begin(), data[i].end(), packet->data);
        packet->pts = std::lround(static_cast<double>(i) * 1000 / pictureRate);
        AVSubtitle subtitle{};
        int hasSome = 0;
        EXPECT_GE(avcodec_decode_subtitle2(context.get(), &subtitle, &hasSome, packet.get()), 0);
        if (hasSome == 0) continue;
        const auto start = static_cast<double>(subtitle.pts) / kMillisecond;
        seen.push_back({subtitle.num_rects > 0 ? plain(subtitle.rects[0]->ass) : "",
                        pictureAt(start), pictureAt(start + subtitle.end_display_time)});
        avsubtitle_free(&subtitle);
    }
    return seen;
}

/// What the device shows of caption number 1: of CEA-708 where there is any.
std::vector<Seen> readAsDevice(const std::vector<Bytes>& data) {
    VideoCaptions captions(1);
    std::vector<Seen> seen;
    std::string shown;
    for (size_t i = 0; i < data.size(); ++i) {
        captions.accept(captionPairs(data[i].data(), data[i].size()),
                        static_cast<int64_t>(i) * kMillisecond);
        std::string text;
        for (const std::string& line : captionText(captions.cue())) {
            text += (text.empty() ? "" : "|") + line;
        }
        if (text == shown) continue;
        if (!shown.empty()) std::get<2>(seen.back()) = static_cast<long>(i);
        if (!text.empty()) seen.push_back({text, static_cast<long>(i), -1});
        shown = text;
    }
    return seen;
}

TEST(Captions, AreSeenByBothStandardsFromTheDescribedPictureOn) {
    struct Case {
        const char* codec = "";
        const char* file = "";
        const char* rateText = "";
        double rate = 0;
        const char* standards = "";
        bool has608 = true;
    };
    for (const Case& one :
         {Case{"h264", "video.h264", "25", 25}, Case{"mpeg2", "video.m2v", "29.97", 30000 / 1001.0},
          Case{"h264", "video.h264", "50", 50},
          Case{"h264", "video.h264", "25", 25, R"("cea708":false,)"},
          Case{"h264", "video.h264", "25", 25, R"("cea608":false,)", false}}) {
        SCOPED_TRACE(joined(one.rateText, ' ', one.standards));
        const auto data = captionDataOf(
            joined(R"({"duration":6,"services":[{"name":"A","audio":[],"video":{"width":160,)",
                   R"("height":96,"pid":500,"codec":")", one.codec, R"(","frameRate":)",
                   one.rateText, R"(},"captions":{)", one.standards, R"("texts":[
                    {"from":2,"to":3,"text":"Olá, são ações\nÀ NOITE"},
                    {"from":3,"to":4,"text":"õõ ♪"},{"from":5,"to":5.5,"text":"fim"}]}}]})"),
            one.file);
        const auto textsAt = [](const std::function<long(double)>& at) {
            return std::vector<Seen>{{"Olá, são ações|À NOITE", at(2), at(3)},
                                     {"õõ ♪", at(3), at(4)},
                                     {"fim", at(5), at(5.5)}};
        };
        const auto at = [&one](double seconds) { return std::lround(seconds * one.rate); };
        // CEA-608 has no more than 30 places in a second.
        const long grid = one.rate > 30 ? 2 : 1;
        const auto at608 = [&](double seconds) { return (at(seconds) + grid - 1) / grid * grid; };
        EXPECT_EQ(read608(data, one.rate), one.has608 ? textsAt(at608) : std::vector<Seen>());
        EXPECT_EQ(readAsDevice(data), textsAt(at));
    }
}

TEST(Subtitles, AreShownAndTakenAway) {
    const Bytes bytes = test::multiplexOf(
        R"({"duration":3,"services":[{"name":"A","video":{"width":320,"height":180},
            "subtitles":{"texts":[{"from":0.5,"to":1,"text":"Olá"},{"from":2,"to":3,"text":"Fim"}]
            }}]})");
    std::unique_ptr<SubtitleTrack> subtitles;
    std::vector<int64_t> times;
    test::readTrack(bytes, "a.ts", TrackKind::subtitle,
                    [&](const Track& track, const Packet* packet) {
                        if (!subtitles) subtitles = std::make_unique<SubtitleTrack>(track);
                        if (packet == nullptr) return;
                        subtitles->decode(*packet);
                        times.push_back(packet->pts);
                    });
    ASSERT_EQ(times.size(), 4U);
    EXPECT_EQ(times[1] - times[0], kSecond / 2);
    const SubtitleCue* const cue = subtitles->at(times[0] + 1000);
    ASSERT_NE(cue, nullptr);
    ASSERT_EQ(cue->bitmaps.size(), 1U);
    EXPECT_EQ(cue->areaWidth, 320U);
    EXPECT_GT(cue->bitmaps[0].y, 120U) << "at the bottom";
    const SubtitleCue* const after = subtitles->at(times[1] + 1000);
    EXPECT_TRUE(after == nullptr || after->bitmaps.empty());
}

}  // namespace
}  // namespace quiravent::desktop::lineup
