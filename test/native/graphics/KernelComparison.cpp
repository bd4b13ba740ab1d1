#include "KernelComparison.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "TestPixels.h"
#include "graphics/ScaleFilter.h"

namespace quiravent::desktop::test {

namespace {

constexpr size_t kMargin = 24;  // on either side; what may be read past the end, too
constexpr size_t kWidest = 70;
constexpr size_t kSourceWidth = 400;

struct Arguments {
    size_t width;
    size_t shift;  // of the row from an aligned address, in pixels
    uint32_t color;
    uint32_t opacity;
    std::vector<uint32_t> source;
    std::vector<uint32_t> destination;
    std::vector<uint8_t> mask;
    std::vector<CoverageBlock> blocks;

    Arguments(RandomPixels& random, size_t rowWidth)
        : width(rowWidth), shift(random.below(8)), color(random.next()) {
        static constexpr uint32_t kOpacities[] = {255, 128, 0};
        opacity = random.below(2) == 0 ? kOpacities[random.below(3)] : random.below(256);
        for (size_t i = 0; i < 2 * kSourceWidth; ++i) source.push_back(random.next());
        if (random.below(3) == 0) {
            for (uint32_t& pixel : source) pixel |= 0xFF000000;
        }
        for (size_t i = 0; i < 2 * (kWidest + 2 * kMargin); ++i) {
            destination.push_back(random.next());
            const uint32_t kind = random.below(3);
            mask.push_back(static_cast<uint8_t>(kind == 2 ? random.below(256) : kind * 255));
        }
        while (width >= CoverageBlock::kPixels && blocks.size() < 6) {
            const auto x = random.below(static_cast<uint32_t>(width - CoverageBlock::kPixels + 1));
            CoverageBlock block{
                static_cast<uint16_t>(x), static_cast<uint16_t>(random.below(2)), {}};
            std::copy_n(mask.begin() + random.below(kWidest), CoverageBlock::kPixels,
                        block.coverage);
            blocks.push_back(block);
        }
    }

    const uint32_t* from() const { return source.data() + shift; }
    PixelBlock block(uint32_t* row) const { return {row, kWidest + kMargin, width, 2}; }
};

using Operation = std::function<void(const Kernels& kernels, uint32_t* row)>;

class Comparison {
  public:
    Comparison(const Kernels& tested, const Kernels& reference)
        : m_tested(tested), m_reference(reference) {}

    std::string difference;

    void compare(const std::string& name, const Arguments& arguments, const Operation& operation) {
        if (!difference.empty()) return;
        std::vector<uint32_t> wanted = arguments.destination;
        std::vector<uint32_t> found = arguments.destination;
        operation(m_reference, wanted.data() + kMargin + arguments.shift);
        operation(m_tested, found.data() + kMargin + arguments.shift);
        for (size_t i = 0; i < wanted.size() && difference.empty(); ++i) {
            if (found[i] == wanted[i]) continue;
            difference = name + ", width " + std::to_string(arguments.width) + ", pixel " +
                         std::to_string(static_cast<long>(i - kMargin - arguments.shift)) + ": " +
                         std::to_string(found[i]) + " instead of " + std::to_string(wanted[i]);
        }
    }

  private:
    const Kernels& m_tested;
    const Kernels& m_reference;
};

void compareMode(Comparison& comparison, const Arguments& a, uint32_t mode) {
    const auto compare = [&](const char* name, const auto& operation) {
        comparison.compare("mode " + std::to_string(mode) + " " + name, a,
                           [&](const Kernels& k, uint32_t* row) { operation(k.modes[mode], row); });
    };
    using Mode = const ModeKernels&;
    compare("fill", [&](Mode m, uint32_t* row) { m.fill(a.block(row), a.color); });
    compare("compose",
            [&](Mode m, uint32_t* row) { m.compose(row, a.from(), a.width, a.opacity); });
    compare("fillMask", [&](Mode m, uint32_t* row) {
        m.fillMask(a.block(row), a.mask.data() + a.shift, kWidest, a.color);
    });
    compare("composeMask", [&](Mode m, uint32_t* row) {
        m.composeMask(row, a.from(), a.mask.data(), a.width, a.opacity);
    });
    compare("fillBlocks", [&](Mode m, uint32_t* row) {
        m.fillBlocks(row, kWidest + kMargin, a.blocks.data(), a.blocks.size(), a.color);
    });
}

void comparePlainRows(Comparison& comparison, const Arguments& a) {
    std::vector<uint32_t> opaque = a.source;
    for (uint32_t& pixel : opaque) pixel |= 0xFF000000;
    const std::pair<const char*, Operation> operations[] = {
        {"fill", [&](const auto& k, auto* row) { k.fill(a.block(row), a.color); }},
        {"over", [&](const auto& k, auto* row) { k.over(row, a.from(), a.width, 255); }},
        {"copy", [&](const auto& k, auto* row) { k.copy(row, a.from(), a.width, 255); }},
        {"fade",
         [&](const auto& k, auto* row) { k.fade(row, &opaque[a.shift], a.width, a.opacity); }},
        {"halveRows",
         [&](const auto& k, auto* row) { k.halveRows(row, a.from(), a.from() + 190, a.width); }},
    };
    for (const auto& [name, operation] : operations) comparison.compare(name, a, operation);
}

/// From `size` pixels to the row's width, along the row and across rows.
void compareScaling(Comparison& comparison, const Arguments& a, int64_t size) {
    const auto width = static_cast<int64_t>(a.width);
    const ScaleFilter filter({{0, size}, {0, size}, width}, {0, width});
    const std::string name = "from " + std::to_string(size) + " pixels: ";
    comparison.compare(name + "filterRow", a, [&](const Kernels& k, uint32_t* row) {
        k.filterRow(row, a.from(), filter.row(), a.width);
    });
    std::vector<const uint32_t*> rows;
    for (uint32_t tap = 0; tap < filter.taps(); ++tap) rows.push_back(a.from() + tap * 7 % 300);
    comparison.compare(name + "mixRows", a, [&](const Kernels& k, uint32_t* row) {
        k.mixRows(row, rows.data(), filter.weights(a.width / 2), filter.taps(), filter.shift(),
                  a.width);
    });
}

void compareSampling(Comparison& comparison, const Arguments& a, RandomPixels& random) {
    const auto fixed = [&](int64_t least, uint32_t range) {
        return least * (int64_t{1} << 32) + (static_cast<int64_t>(random.below(range)) << 22) +
               random.below(1U << 22);
    };
    const uint32_t height = 1 + random.below(12);
    const SampleSource<uint32_t> pixels{a.source.data(), 30, 1 + random.below(30), height};
    const SampleSource<uint8_t> mask{a.mask.data(), 15, 1 + random.below(15), height};
    SampleSteps steps{fixed(-3, 36 << 10), fixed(-3, 18 << 10), fixed(-1, 2 << 10),
                      fixed(-1, 2 << 10)};
    if (random.below(4) == 0) steps.stepX = 0;
    if (random.below(4) == 0) steps.stepY = 0;
    comparison.compare("samplePixels", a, [&](const Kernels& k, uint32_t* row) {
        k.samplePixels(row, pixels, steps, a.width);
    });
    comparison.compare("sampleCoverage", a, [&](const Kernels& k, uint32_t* row) {
        k.sampleCoverage(reinterpret_cast<uint8_t*>(row), mask, steps, a.width);
    });
}

}  // namespace

std::string firstDifference(const Kernels& tested, const Kernels& reference) {
    Comparison comparison(tested, reference);
    RandomPixels random;
    for (size_t round = 0; round < 20 && comparison.difference.empty(); ++round) {
        for (size_t width = 1; width <= kWidest; ++width) {
            const Arguments arguments(random, width);
            for (uint32_t mode = 0; mode < kPorterDuffModes; ++mode) {
                compareMode(comparison, arguments, mode);
            }
            comparePlainRows(comparison, arguments);
            compareScaling(comparison, arguments, 1 + random.below(kSourceWidth - kMargin));
            compareSampling(comparison, arguments, random);
        }
    }
    return comparison.difference;
}

}  // namespace quiravent::desktop::test
