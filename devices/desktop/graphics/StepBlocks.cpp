#include "graphics/StepBlocks.h"

#include <algorithm>
#include <array>

namespace quiravent::desktop {

namespace {

constexpr size_t kBlock = CoverageBlock::kPixels;
constexpr int32_t kAcross = 4;  // pixels of a step

using Square = std::array<uint64_t, kBlock>;

/// Exchanges the bytes whose place and whose word differ in one bit, that of `distance`.
template <size_t distance>
void exchange(Square& words, uint64_t kept) {
    constexpr size_t kShift = 8 * distance;
    for (size_t from = 0; from < kBlock; from += 2 * distance) {
        for (size_t i = from; i < from + distance; ++i) {
            const uint64_t changed = (words[i] >> kShift ^ words[i + distance]) & kept;
            words[i] ^= changed << kShift;
            words[i + distance] ^= changed;
        }
    }
}

/// Byte j of word i becomes byte i of word j.
void transpose(Square& words) {
    exchange<4>(words, 0x00000000FFFFFFFF);
    exchange<2>(words, 0x0000FFFF0000FFFF);
    exchange<1>(words, 0x00FF00FF00FF00FF);
}

/// As many of up to 8 steps from `step` on as a square of 8 rows has room for.
size_t stepsOfSquare(const ThinLine::Steps& steps, size_t step) {
    size_t count = std::min(kBlock, steps.first.size() - step);
    const auto rise = [&] { return std::abs(steps.first[step + count - 1] - steps.first[step]); };
    while (rise() > static_cast<int32_t>(kBlock) - kAcross) --count;
    return count;
}

/// The steps go down the columns, blocks along the rows.
void addColumns(const ThinLine::Steps& steps, uint32_t left, CoverageShape& shape) {
    for (size_t step = 0; step < steps.first.size();) {
        const size_t count = stepsOfSquare(steps, step);
        const int32_t top = std::min(steps.first[step], steps.first[step + count - 1]);
        Square square{};
        for (size_t i = 0; i < count; ++i) {
            const uint64_t pixels = steps.coverage[step + i];
            square[i] = pixels << (8 * (steps.first[step + i] - top));
        }
        transpose(square);
        const auto x = left + static_cast<uint32_t>(step);
        for (uint32_t row = 0; row < kBlock; ++row) {
            if (square[row] != 0) shape.addPixels(x, static_cast<uint32_t>(top) + row, square[row]);
        }
        step += count;
    }
}

void addRows(const ThinLine::Steps& steps, uint32_t top, CoverageShape& shape) {
    for (size_t step = 0; step < steps.first.size(); ++step) {
        shape.addPixels(static_cast<uint32_t>(steps.first[step]), top + static_cast<uint32_t>(step),
                        steps.coverage[step]);
    }
}

}  // namespace

void addSteps(const ThinLine::Steps& steps, bool steep, const Box& limits, CoverageShape& shape) {
    if (steep) {
        addRows(steps, static_cast<uint32_t>(steps.begin - limits.top), shape);
    } else {
        addColumns(steps, static_cast<uint32_t>(steps.begin - limits.left), shape);
    }
}

}  // namespace quiravent::desktop
