#include "Recorder.h"

#include <gtest/gtest.h>

#include <thread>

#include "porting/pl_functions.h"

using namespace quiravent::recorder;

namespace {

Behaviour answering(int32_t status, Record outputs = {}) {
    Behaviour behaviour;
    behaviour.status = status;
    behaviour.outputs = std::move(outputs);
    return behaviour;
}

class RecorderTest : public testing::Test {
  protected:
    RecorderTest() {
        m_recorder.resetAnswers();
        m_recorder.clear();
    }

    Call lastCall() const { return m_recorder.callsFrom(0).back(); }

    Recorder& m_recorder = Recorder::instance();
};

TEST_F(RecorderTest, LogsArgumentsAsTheyWere) {
    const s_pl_gfx_rect rect{1, 2, 3, 0xFFFFFFFF};
    const Value written = Record{{"x", 1.0}, {"y", 2.0}, {"w", 3.0}, {"h", 4294967295.0}};
    int32_t speed = -2;
    s_pl_media_timeref times[10];
    s_pl_media_timeref* array = times;
    uint32_t count = 10;
    const Value out = std::string("out");

    pl_gfx_Canvas_FillRect(7, &rect);
    EXPECT_EQ(lastCall().args, (List{7.0, written}));
    EXPECT_STREQ(lastCall().fn, "pl_gfx_Canvas_FillRect");
    pl_gfx_Canvas_Flush(7, nullptr);
    EXPECT_EQ(lastCall().args, (List{7.0, nullptr}));
    pl_gfx_Canvas_SetColor(7, {1, 2, 3, 4});
    EXPECT_EQ(lastCall().args, (List{7.0, Record{{"r", 1.0}, {"g", 2.0}, {"b", 3.0}, {"a", 4.0}}}));
    pl_media_UrlPlayer_SetPlaybackSpeed(7, &speed);
    EXPECT_EQ(lastCall().args, (List{7.0, -2.0}));
    pl_media_UrlPlayer_GetBufferedTimes(7, &array, &count);
    EXPECT_EQ(lastCall().args, (List{7.0, out, 10.0}));
    pl_dtv_Action_selectTransportStream("a", nullptr, [](e_pl_dtv_error) {});
    EXPECT_EQ(lastCall().args, (List{std::string("a"), nullptr, std::string("function")}));
    pl_platform_ToggleLiveDTV(true);
    EXPECT_EQ(lastCall().args, List{true});
    pl_persistent_SetValue(1, "key", std::string("a\0b", 3));
    EXPECT_EQ(lastCall().args, (List{1.0, std::string("key"), std::string("a\0b", 3)}));
}

TEST_F(RecorderTest, NumbersCallsOnAndTellsThreadsApart) {
    pl_platform_Exit();
    const uint64_t first = lastCall().seq;
    std::thread([] {
        pthread_setname_np(pthread_self(), "messageIPC");
        pl_platform_Restart();
    }).join();
    std::thread([] { pl_platform_Restart(); }).join();
    const auto calls = m_recorder.callsFrom(first);
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[2].seq, first + 2);
    EXPECT_EQ(calls[0].thread, "script");
    EXPECT_EQ(calls[1].thread, "messageIPC");
    EXPECT_EQ(calls[2].thread, "pool");
    m_recorder.clear();
    pl_platform_Exit();
    EXPECT_EQ(lastCall().seq, first + 3);
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
