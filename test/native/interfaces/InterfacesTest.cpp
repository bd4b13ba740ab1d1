#include "common/RecorderTest.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/errorOf.h"
#include "interfaces/Canvas.h"
#include "interfaces/DemuxFilter.h"
#include "interfaces/Font.h"
#include "interfaces/MediaPlayer.h"

using namespace quiravent::recorder;

namespace {

class InterfacesTest : public RecorderTest {
  protected:
    std::vector<double> handlesPassedTo(const std::string& function) const {
        std::vector<double> handles;
        for (const Call& call : calls()) {
            if (call.fn == function) handles.push_back(call.args.front().number());
        }
        return handles;
    }
};

TEST_F(InterfacesTest, FailedConstructorsSayWhy) {
    const auto offscreen = e_GraphicServices_CanvasType_Offscreen;
    const auto target = e_GraphicServices_CanvasType_Target;
    const struct {
        std::function<void()> construct;
        const char* refusing;  ///< a function of the device; null: none is called
        int32_t status;
        const char* reason;
    } cases[] = {
        {[&] { Canvas(0, 5, offscreen, 0); }, nullptr, 0,
         "Canvas Canvas.cpp:87 :: Invalid dimensions (width=0, height=5)"},
        {[&] { Canvas(65536, 65536, offscreen, 9); }, nullptr, 0,
         "Canvas Canvas.cpp:87 :: Invalid dimensions (width=65536, height=65536)"},
        {[&] { Canvas(7, 8, offscreen, 0); }, "pl_gfx_CreateCanvas", -3,
         "Canvas Canvas.cpp:104 :: pl_gfx_GetTargetCanvas(width=7,height=8,type=2) failed! "
         "(err=-3)"},
        {[&] { Canvas(1280, 720, target, 0); }, "pl_gfx_GetTargetCanvas", 12,
         "Canvas Canvas.cpp:104 :: pl_gfx_GetTargetCanvas(width=1280,height=720,type=0) failed! "
         "(err=12)"},
        {[] { Font("a/b.ttf", 300); }, "pl_gfx_LoadFont", 5,
         "Font Font.cpp:18 :: pl_gfx_LoadFont(path='a/b.ttf') failed! (err=5)"},
    };
    for (const auto& each : cases) {
        m_recorder.clear();
        if (each.refusing != nullptr) m_recorder.answerOnce(each.refusing, answering(each.status));
        EXPECT_EQ(quiravent::test::errorOf(each.construct), each.reason);
        EXPECT_EQ(calls().empty(), each.refusing == nullptr);
    }
    EXPECT_EQ(Canvas::s_target, nullptr);
}

TEST_F(InterfacesTest, CleanUpEndsEveryCanvasAndTheTarget) {
    auto* target = new Canvas(1280, 720, e_GraphicServices_CanvasType_Target, 0);
    auto* released = new Canvas(4, 4, e_GraphicServices_CanvasType_Adopted, 101);
    auto* live = new Canvas(4, 4, e_GraphicServices_CanvasType_Adopted, 102);
    EXPECT_EQ(Canvas::s_target, target);
    released->Release();

    Canvas::CleanUp();

    // The addresses may still be asked; nothing behind them is looked at. The analyzer doesn't see
    // that the clean-up has deleted them.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    EXPECT_TRUE(target->IsInvalid() && released->IsInvalid() && live->IsInvalid());
    EXPECT_FALSE(target->IsTarget());
    EXPECT_EQ(Canvas::s_target, nullptr);
    EXPECT_EQ(handlesPassedTo("pl_gfx_ReleaseCanvas").size(), 3U);
}

TEST_F(InterfacesTest, CleanUpEndsEveryFontAndUnbindsAllCanvases) {
    auto* first = new Font("first.ttf", 20);
    auto* second = new Font("second.ttf", 30);
    Canvas canvas(10, 10, e_GraphicServices_CanvasType_Offscreen, 0);
    canvas.SetFont(second);

    Font::CleanUp();

    EXPECT_TRUE(first->IsInvalid() && second->IsInvalid());
    EXPECT_EQ(handlesPassedTo("pl_gfx_ReleaseFont").size(), 2U);
    EXPECT_EQ(canvas.DrawText("text", 0, 0), 0);
    canvas.SetFont(first);
    EXPECT_TRUE(handlesPassedTo("pl_gfx_Canvas_DrawText").empty());
    EXPECT_EQ(handlesPassedTo("pl_gfx_Canvas_SetFont").size(), 1U);
}

TEST_F(InterfacesTest, ThumbnailsAreAdoptedOrNull) {
    Canvas* thumbnail = nullptr;
    MediaPlayer(0).GetThumbnail(1, 2, 3, &thumbnail);
    EXPECT_EQ(thumbnail, nullptr);
    EXPECT_TRUE(calls().empty());

    MediaPlayer player(7);
    player.GetThumbnail(1000, 160, 90, &thumbnail);
    const std::unique_ptr<Canvas> owned(thumbnail);
    ASSERT_NE(thumbnail, nullptr);
    EXPECT_FALSE(thumbnail->IsInvalid());

    // No canvas of that size; the device refuses; it succeeds without a canvas.
    const std::pair<unsigned, Behaviour> obstacles[] = {
        {0, answering(0)}, {90, answering(1)}, {90, answering(0, {{"canvas", 0.0}})}};
    for (const auto& [height, behaviour] : obstacles) {
        m_recorder.answerOnce("pl_media_UrlPlayer_GetThumbnail", behaviour);
        Canvas* none = owned.get();
        player.GetThumbnail(1000, 160, height, &none);
        EXPECT_EQ(none, nullptr);
    }
}

TEST_F(InterfacesTest, ADemuxFilterIsClosedOnceWhereItHasAHandle) {
    {
        DemuxFilter open(33);
        open.filter_name = "a name that is long enough to be kept on the heap";
        const DemuxFilter without(0);
    }
    EXPECT_EQ(handlesPassedTo("pl_dtv_Demux_closeFilter"), std::vector<double>{33});
}

}  // namespace
