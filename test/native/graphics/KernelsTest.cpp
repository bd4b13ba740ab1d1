#include "graphics/Kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <sstream>
#include <string>

#include "KernelComparison.h"
#include "TestPixels.h"
#include "graphics/KernelSets.h"

namespace quiravent::desktop::test {
namespace {

using Pixel = std::array<double, 4>;  // blue, green, red, alpha from 0 to 1

Pixel unpack(uint32_t pixel) {
    Pixel out{};
    for (int i = 0; i < 4; ++i) out[i] = channel(pixel, i) / 255.0;
    return out;
}

uint32_t pack(const Pixel& pixel) {
    uint32_t out = 0;
    for (int i = 0; i < 4; ++i) {
        out |= static_cast<uint32_t>(std::floor(pixel[i] * 255 + 0.5 + 1e-9)) << (8 * i);
    }
    return out;
}

Pixel combine(const Pixel& a, double fa, const Pixel& b, double fb) {
    Pixel out{};
    for (int i = 0; i < 4; ++i) out[i] = std::min(1.0, a[i] * fa + b[i] * fb);
    return out;
}

/// The operators as they are written in the textbook, sa and da being the alphas.
struct Operator {
    const char* name;
    std::function<double(double sa, double da)> source;
    std::function<double(double sa, double da)> destination;
};

double one(double, double) { return 1; }
double none(double, double) { return 0; }
double inSource(double sa, double) { return sa; }
double outsideSource(double sa, double) { return 1 - sa; }
double inDestination(double, double da) { return da; }
double outsideDestination(double, double da) { return 1 - da; }

const Operator kOperators[] = {
    {"unnamed", one, outsideSource},
    {"SRC_OVER", one, outsideSource},
    {"SRC_ATOP", inDestination, outsideSource},
    {"SRC_IN", inDestination, none},
    {"SRC_OUT", outsideDestination, none},
    {"DST_OVER", outsideDestination, one},
    {"DST_ATOP", outsideDestination, inSource},
    {"DST_IN", none, inSource},
    {"DST_OUT", none, outsideSource},
    {"ADD", one, one},
    {"XOR", outsideDestination, outsideSource},
    {"SRC", one, none},
};

/// The definition; with `step` rounding after each step as the kernels promise to, or with
/// `unrounded` to measure what that costs.
uint32_t combined(const Operator& op, uint32_t source, uint32_t destination, uint32_t opacity,
                  uint32_t coverage, Pixel (*step)(const Pixel&)) {
    const Pixel faded = step(combine(unpack(source), opacity / 255.0, Pixel{}, 0));
    const Pixel under = unpack(destination);
    const double take = op.source(faded[3], under[3]);
    const double keep = op.destination(faded[3], under[3]);
    const Pixel result = step(combine(faded, take, under, keep));
    return pack(combine(result, coverage / 255.0, under, 1 - coverage / 255.0));
}

Pixel unrounded(const Pixel& pixel) { return pixel; }
Pixel rounded(const Pixel& pixel) { return unpack(pack(pixel)); }

constexpr size_t kCount = 4001;

struct Rows {
    std::vector<uint32_t> source = std::vector<uint32_t>(kCount);
    std::vector<uint32_t> destination = std::vector<uint32_t>(kCount);
    std::vector<uint8_t> mask = std::vector<uint8_t>(kCount);

    Rows() {
        RandomPixels random;
        for (size_t i = 0; i < kCount; ++i) {
            source[i] = random.next();
            destination[i] = random.next();
            mask[i] = static_cast<uint8_t>(i % 3 == 0 ? random.below(2) * 255 : random.below(256));
        }
    }
};

class EveryMode : public testing::TestWithParam<uint32_t> {
  protected:
    const Operator& op() const { return kOperators[GetParam()]; }
    const ModeKernels& mode() const { return kernels().modes[GetParam()]; }
    Rows m_rows;
    std::vector<uint32_t> m_out = m_rows.destination;

    void expectRow(const std::function<uint32_t(size_t)>& wanted) const {
        for (size_t i = 0; i < kCount; ++i) {
            ASSERT_EQ(m_out[i], wanted(i)) << op().name << " at " << i << std::hex << " source "
                                           << m_rows.source[i] << " on " << m_rows.destination[i];
            ASSERT_TRUE(isPremultiplied(m_out[i])) << op().name << " " << std::hex << m_out[i];
        }
    }
};

TEST_P(EveryMode, ComposesAsDefinedWithin1LevelOfTheIdeal) {
    for (const uint32_t opacity : {255U, 128U, 1U, 0U}) {
        const auto wanted = [&](size_t i, uint32_t coverage) {
            const uint32_t s = m_rows.source[i];
            const uint32_t d = m_rows.destination[i];
            const uint32_t ideal = combined(op(), s, d, opacity, coverage, unrounded);
            const bool exact = opacity == 255 && coverage == 255;
            EXPECT_LE(distance(m_out[i], ideal), exact ? 0 : 1);
            return combined(op(), s, d, opacity, coverage, rounded);
        };
        m_out = m_rows.destination;
        mode().compose(m_out.data(), m_rows.source.data(), kCount, opacity);
        expectRow([&](size_t i) { return wanted(i, 255); });

        m_out = m_rows.destination;
        mode().composeMask(m_out.data(), m_rows.source.data(), m_rows.mask.data(), kCount, opacity);
        expectRow([&](size_t i) { return wanted(i, m_rows.mask[i]); });
    }
}

TEST_P(EveryMode, FillsWholeRowsMasksAndBlocks) {
    for (const uint32_t color : {0x80402010U, 0xFF102030U, 0U}) {
        const auto at = [&](size_t i, uint32_t coverage) {
            return combined(op(), color, m_rows.destination[i], 255, coverage, rounded);
        };
        m_out = m_rows.destination;
        mode().fill({m_out.data(), 0, kCount, 1}, color);
        expectRow([&](size_t i) { return at(i, 255); });

        m_out = m_rows.destination;
        mode().fillMask({m_out.data(), 0, kCount, 1}, m_rows.mask.data(), 0, color);
        expectRow([&](size_t i) { return at(i, m_rows.mask[i]); });

        m_out = m_rows.destination;
        const CoverageBlock blocks[] = {{3, 0, {255, 17, 0, 0, 0, 0, 0, 128}}, {90, 0, {1, 2}}};
        mode().fillBlocks(m_out.data(), 0, blocks, 2, color);
        expectRow([&](size_t i) {
            if (i >= 3 && i < 11) return at(i, blocks[0].coverage[i - 3]);
            return at(i, i >= 90 && i < 92 ? blocks[1].coverage[i - 90] : 0);
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Kernels, EveryMode, testing::Range(0U, 12U),
                         [](const auto& info) { return kOperators[info.param].name; });

TEST(Kernels, SpecialRowsAgreeWithTheirMode) {
    Rows rows;
    std::vector<uint32_t> plain = rows.destination;
    std::vector<uint32_t> fast = rows.destination;
    kernels().modes[kSourceOver].compose(plain.data(), rows.source.data(), kCount, 255);
    kernels().over(fast.data(), rows.source.data(), kCount, 255);
    EXPECT_EQ(plain, fast);
    kernels().copy(fast.data(), rows.source.data(), kCount, 9);
    EXPECT_EQ(fast, rows.source);

    for (uint32_t& pixel : rows.source) pixel |= 0xFF000000;
    plain = rows.destination;
    kernels().fade(plain.data(), rows.source.data(), kCount, 77);
    for (size_t i = 0; i < kCount; ++i) {
        const uint32_t d = rows.destination[i];
        const Operator& over = kOperators[kSourceOver];
        ASSERT_EQ(plain[i], combined(over, rows.source[i], d, 77, 255, unrounded));
    }
}

TEST(Kernels, OfEveryVectorUnitCanBeSelectedAndAgreeWithThePortableOnesBitForBit) {
    EXPECT_EQ(&kernels(), &kernelSets().front().kernels);
    EXPECT_STREQ(kernelSets().back().name, "scalar");
    for (const KernelSet& set : kernelSets()) {
        EXPECT_EQ(firstDifference(set.kernels, kScalarKernels), "") << set.name;
        EXPECT_TRUE(selectKernels(set.name));
        EXPECT_FALSE(selectKernels("abacus"));
        EXPECT_EQ(&kernels(), &set.kernels);
    }
    EXPECT_TRUE(selectKernels(kernelSets().front().name));
}

/// What is compiled for a vector unit must not be linked into code for all processors: nothing
/// but the function that gives out the operations may be seen from other sources.
TEST(Kernels, OfAVectorUnitShareNoCodeWithOthers) {
    std::istringstream objects(QUIRAVENT_GRAPHICS_OBJECTS);
    size_t units = 0;
    for (std::string object; objects >> object;) {
        if (object.find("/simd/") == std::string::npos) continue;
        ++units;
        // Code, not data, such as sanitizers share.
        const std::string shared = "nm --defined-only --extern-only " + object + " | grep -v ' V '";
        EXPECT_EQ(std::system((shared + " | wc -l | grep -qx 1").c_str()), 0) << shared;
    }
    EXPECT_EQ(units, kernelSets().size() - 1);
}

}  // namespace
}  // namespace quiravent::desktop::test
