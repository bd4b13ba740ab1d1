// What the recorder does besides writing down arguments, on which all tests of scripts rely.

#include "common/RecorderTest.h"

#include <thread>

#include "porting/pl_functions.h"

using namespace quiravent::recorder;

namespace {

TEST_F(RecorderTest, NumbersCallsOnAndTellsThreadsApart) {
    pl_platform_Exit();
    const uint64_t first = calls().back().seq;
    std::thread([] {
        pthread_setname_np(pthread_self(), "messageIPC");
        pl_platform_Restart();
    }).join();
    std::thread([] { pl_platform_Restart(); }).join();
    const auto heard = m_recorder.callsFrom(first);
    ASSERT_EQ(heard.size(), 3U);
    EXPECT_EQ(heard[2].seq, first + 2);
    EXPECT_EQ(heard[0].thread, "script");
    EXPECT_EQ(heard[1].thread, "messageIPC");
    EXPECT_EQ(heard[2].thread, "pool");
    m_recorder.clear();
    pl_platform_Exit();
    EXPECT_EQ(calls().back().seq, first + 3);
}

TEST_F(RecorderTest, AnswersAsPreparedOnceAndThenForGood) {
    m_recorder.answerAlways("pl_gfx_CreateCanvas", answering(5));
    m_recorder.answerOnce("pl_gfx_CreateCanvas", answering(3, {{"handle", 77.0}}));
    m_recorder.answerOnce("pl_gfx_CreateCanvas", answering(0, {{"handle", nullptr}}));
    uint32_t handle = 1;
    EXPECT_EQ(pl_gfx_CreateCanvas(1, 1, &handle), 3);
    EXPECT_EQ(handle, 77U) << "a prepared output is written whatever the status";
    EXPECT_EQ(pl_gfx_CreateCanvas(1, 1, &handle), 0);
    EXPECT_EQ(handle, 77U) << "null leaves the output unwritten";
    EXPECT_EQ(pl_gfx_CreateCanvas(1, 1, &handle), 5);
    EXPECT_EQ(pl_gfx_CreateCanvas(1, 1, &handle), 5);
    EXPECT_EQ(handle, 77U) << "a failing call writes nothing of its own";
    m_recorder.resetAnswers();
    EXPECT_EQ(pl_gfx_CreateCanvas(6, 4, &handle), 0);
    uint32_t w = 0;
    uint32_t h = 0;
    EXPECT_EQ(pl_gfx_Canvas_GetSize(handle, &w, &h), 0);
    EXPECT_EQ(w, 6U);
    EXPECT_EQ(h, 4U);
}

TEST_F(RecorderTest, WritesNoMoreRecordsThanTheArrayHolds) {
    const List ranges(5, Record{{"begin", 1.0}, {"end", 2.0}});
    m_recorder.answerAlways("pl_media_UrlPlayer_GetBufferedTimes",
                            answering(0, {{"times", ranges}, {"count", 12.0}}));
    s_pl_media_timeref times[4] = {};
    s_pl_media_timeref* array = times;
    uint32_t count = 3;
    pl_media_UrlPlayer_GetBufferedTimes(1, &array, &count);
    EXPECT_EQ(count, 12U);
    EXPECT_EQ(times[2].end, 2U);
    EXPECT_EQ(times[3].end, 0U);
    EXPECT_EQ(array, times);
}

}  // namespace
