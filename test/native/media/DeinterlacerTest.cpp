#include "media/Deinterlacer.h"

#include <gtest/gtest.h>

#include "media/TestPlayer.h"

namespace quiravent::test {
namespace {

using desktop::Deinterlacer;
using desktop::VideoFrame;

constexpr int kWidth = 40;
constexpr int kHeight = 8;

/// A frame whose even lines have one brightness and whose odd ones another.
VideoFrame frameOf(int number, uint8_t even, uint8_t odd,
                   AVPixelFormat format = AV_PIX_FMT_YUV420P) {
    desktop::AvFrame picture = desktop::makeFrame();
    picture->format = format;
    picture->width = kWidth;
    picture->height = kHeight;
    picture->interlaced_frame = 1;
    picture->top_field_first = 1;
    EXPECT_EQ(av_frame_get_buffer(picture.get(), 0), 0);
    for (int plane = 0; plane < 3 && picture->buf[plane] != nullptr; ++plane)
        for (size_t at = 0; at < picture->buf[plane]->size; ++at)
            picture->buf[plane]->data[at] =
                at / static_cast<size_t>(picture->linesize[plane]) % 2 == 0 ? even : odd;
    VideoFrame frame;
    frame.duration = 40000;
    frame.pts = number * frame.duration;
    frame.picture = std::move(picture);
    return frame;
}

std::vector<int> linesOf(const VideoFrame& frame) {
    std::vector<int> lines;
    lines.reserve(kHeight);
    for (int y = 0; y < kHeight; ++y)
        lines.push_back(frame.picture->data[0][y * frame.picture->linesize[0] + kWidth - 1]);
    return lines;
}

std::vector<int> alternating(int even, int odd) {
    return {even, odd, even, odd, even, odd, even, odd};
}

TEST(Deinterlacer, WeavesWhatStandsAndInterpolatesWhatMoves) {
    Deinterlacer deinterlacer;
    // Nothing is known before the first frame: all might have moved.
    auto fields = deinterlacer.split(frameOf(0, 50, 150));
    ASSERT_EQ(fields.size(), 2U);
    EXPECT_EQ(linesOf(fields[0]), alternating(50, 50));
    EXPECT_EQ(linesOf(fields[1]), alternating(150, 150));
    EXPECT_EQ(fields[0].pts, 0);
    EXPECT_EQ(fields[0].duration, 20000);
    EXPECT_EQ(fields[1].pts, 20000);
    EXPECT_EQ(fields[1].end(), 40000);
    fields = deinterlacer.split(frameOf(1, 51, 149));  // noise
    EXPECT_EQ(linesOf(fields[0]), alternating(51, 149));
    EXPECT_EQ(linesOf(fields[1]), alternating(51, 149));
    fields = deinterlacer.split(frameOf(2, 91, 149));  // by 40: towards the neighbours by as much
    EXPECT_EQ(linesOf(fields[0]), alternating(91, 109));
    EXPECT_EQ(linesOf(fields[1]), alternating(131, 149));
    // Where frames are left out nothing is known either.
    EXPECT_EQ(linesOf(deinterlacer.split(frameOf(4, 91, 149))[0]), alternating(91, 91));
    deinterlacer.skip(frameOf(5, 91, 149));
    EXPECT_EQ(linesOf(deinterlacer.split(frameOf(6, 91, 149))[0]), alternating(91, 149));
    EXPECT_EQ(linesOf(deinterlacer.first(frameOf(7, 91, 149))), alternating(91, 91));
}

TEST(Deinterlacer, LeavesOtherPicturesAlone) {
    Deinterlacer deinterlacer;
    for (const AVPixelFormat format :
         {AV_PIX_FMT_NV12, AV_PIX_FMT_YUV420P10LE, AV_PIX_FMT_RGB24, AV_PIX_FMT_GBRP}) {
        const VideoFrame frame = frameOf(0, 10, 20, format);
        const auto fields = deinterlacer.split(frame);
        ASSERT_EQ(fields.size(), 1U);
        EXPECT_EQ(fields[0].picture, frame.picture);
    }
}

// The film's fields carry numbers of their own: of each two, the second is one more than the first,
// and the next one two more.
TEST(Interlaced, IsShownFieldByField) {
    TestPlayer player(mediaFile("interlaced.ts"));
    ASSERT_TRUE(player.playAndPause());
    for (const int field : {20, 21, 90, 91, 92, 148}) {
        ASSERT_TRUE(player.seekTo(int64_t{field} * 20000 + 5000, field * 3 / 2))
            << field << ": " << player.output().seen().back().number;
    }
    double speed = -1;
    ASSERT_EQ(player->setSpeed(speed), e_pl_status_ok);
    ASSERT_EQ(player->seek(1000000), e_pl_status_ok);
    ASSERT_EQ(player->resume(), e_pl_status_ok);
    EXPECT_EQ(player.waitFor(e_pl_media_event_playback_completed), 0);
}

}  // namespace
}  // namespace quiravent::test
