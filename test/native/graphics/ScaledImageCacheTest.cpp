#include "graphics/ScaledImageCache.h"

#include <gtest/gtest.h>

#include "TestPixels.h"
#include "graphics/Canvas.h"

namespace quiravent::desktop::test {
namespace {

constexpr size_t kBudget = size_t{1} << 20;

class ScaledImages : public testing::Test {
  protected:
    /// Draws as a canvas without a cache does and compares.
    void expectDrawn(const Rect& to, const Rect* part = nullptr) {
        const auto plain = newSurface(64, 48);
        Canvas other(plain);
        other.composeScaled(*m_canvas.surface(), {0, 0, 64, 48});
        other.composeScaled(*m_source, to, part);
        m_canvas.composeScaled(*m_source, to, part);
        EXPECT_EQ(pixelsOf(*m_canvas.surface()), pixelsOf(*plain));
    }

    std::shared_ptr<Surface> m_source = randomSurface(40, 30);
    std::shared_ptr<CanvasShare> m_share = std::make_shared<CanvasShare>(kBudget, 1);
    ScaledImageCache& m_cache = m_share->scaled;
    Canvas m_canvas{randomSurface(64, 48), m_share};
};

TEST_F(ScaledImages, AreKeptFromTheSecondUseOnAndLookTheSame) {
    const Rect part{5, 3, 60, 20};  // reaches beyond the source
    const Rect places[] = {
        {3, 4, 20, 15}, {3, 4, 20, 15}, {40, 30, 20, 15}, {static_cast<uint32_t>(-3), 40, 20, 15}};
    for (const Rect* taken : {static_cast<const Rect*>(nullptr), &part}) {
        const size_t before = m_cache.byteSize();
        expectDrawn(places[0], taken);
        EXPECT_EQ(m_cache.byteSize(), before);
        expectDrawn(places[1], taken);
        const size_t kept = m_cache.byteSize();
        EXPECT_GT(kept, before);
        expectDrawn(places[2], taken);
        expectDrawn(places[3], taken);
        EXPECT_EQ(m_cache.byteSize(), kept);
    }
}

TEST_F(ScaledImages, AreScaledAnewAfterTheSourceWasDrawnUpon) {
    const Rect to{3, 4, 20, 15};
    expectDrawn(to);
    expectDrawn(to);
    Canvas(m_source).fillRect({10, 10, 10, 10});
    expectDrawn(to);
    expectDrawn(to);
    const size_t kept = m_cache.byteSize();
    expectDrawn(to);
    EXPECT_EQ(m_cache.byteSize(), kept);
}

TEST_F(ScaledImages, StayWithinTheBudgetAndLeaveOutWhatIsLargeOrHidden) {
    for (uint32_t width = 100; width < 400; width += 3) {
        const Rect to{0, 0, width, 100};
        for (int time = 0; time < 2; ++time) m_canvas.composeScaled(*m_source, to);
        ASSERT_LE(m_cache.byteSize(), kBudget);
    }
    CanvasShare share(kBudget, 1);
    const Box visible{0, 0, 1000, 1000};
    const Box wide = boxAt(0, 0, int64_t{1} << 31, 1);
    const Box hidden = boxAt(-90, 0, 100, 100);
    const Box large = boxAt(0, 0, 300, 300);
    for (const Box& to : {wide, hidden, large}) {
        for (int time = 0; time < 3; ++time) {
            EXPECT_EQ(share.scaled.find(*m_source, {{0, 0, 40, 30}, to}, visible), nullptr);
        }
    }
}

}  // namespace
}  // namespace quiravent::desktop::test
