#include "graphics/CoverageShape.h"

#include <algorithm>
#include <cstring>

namespace quiravent::desktop {

namespace {

constexpr uint32_t kBlock = CoverageBlock::kPixels;

/// A shorter run costs less as part of blocks.
constexpr uint32_t kLeastRun = 2 * kBlock;

/// One coverage for `count` (at most 8) pixels from the `first` of a block on.
uint64_t repeated(uint32_t coverage, uint32_t first, uint32_t count) {
    const uint64_t all = 0x0101010101010101U * coverage;
    return all >> (8 * (kBlock - count)) << (8 * first);
}

}  // namespace

void CoverageShape::start(uint32_t width) {
    m_width = width;
    m_blocks.clear();
    m_runs.clear();
}

void CoverageShape::addPixels(uint32_t x, uint32_t y, uint64_t coverage) {
    const uint32_t last = m_width < kBlock ? x : m_width - kBlock;
    const uint32_t first = std::min(x, last);
    const uint64_t moved = coverage << (8 * (x - first));
    CoverageBlock block{static_cast<uint16_t>(first), static_cast<uint16_t>(y), {}};
    std::memcpy(block.coverage, &moved, sizeof block.coverage);
    m_blocks.push_back(block);
}

void CoverageShape::addBytes(uint32_t y, const uint8_t* coverage) {
    const uint8_t* const end = coverage + m_width;
    const auto isCovered = [](uint8_t level) { return level != 0; };
    const uint8_t* from = std::find_if(coverage, end, isCovered);
    while (from != end) {
        const auto count = std::min<ptrdiff_t>(kBlock, end - from);
        uint64_t pixels = 0;
        std::memcpy(&pixels, from, static_cast<size_t>(count));
        addPixels(static_cast<uint32_t>(from - coverage), y, pixels);
        from = std::find_if(from + count, end, isCovered);
    }
}

void CoverageShape::addSpans(uint32_t left, uint32_t y, const std::vector<CoverageSpan>& spans) {
    uint32_t first = 0;  // of the block that is being filled
    uint64_t coverage = 0;
    for (const CoverageSpan& span : spans) {
        uint32_t x = left + span.x;
        const uint32_t end = x + span.length;
        if (span.coverage == 255 && span.length >= kLeastRun) {
            m_runs.push_back({static_cast<uint16_t>(x), static_cast<uint16_t>(y), span.length});
            continue;
        }
        while (x < end) {
            if (coverage != 0 && x >= first + kBlock) {
                addPixels(first, y, coverage);
                coverage = 0;
            }
            if (coverage == 0) first = x;
            const uint32_t count = std::min(end, first + kBlock) - x;
            coverage |= repeated(span.coverage, x - first, count);
            x += count;
        }
    }
    if (coverage != 0) addPixels(first, y, coverage);
}

}  // namespace quiravent::desktop
