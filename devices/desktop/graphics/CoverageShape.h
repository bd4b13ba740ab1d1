#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "graphics/Kernels.h"
#include "graphics/Rasterizer.h"

namespace quiravent::desktop {

/// What a shape covers of the pixels around it, in a form that is quickly painted: pixels without
/// coverage are mostly left out. Where blocks share a pixel, it is painted by each of them in turn.
class CoverageShape {
  public:
    /// A run of pixels that are covered whole.
    struct SolidRun {
        uint16_t x;
        uint16_t y;
        uint32_t length;
    };

    /// Empties the shape, which lies in columns 0 to width (at most SurfacePool::kMaxSide) from now
    /// on. Rows are at most as many.
    void start(uint32_t width);

    /// The coverage of up to 8 pixels from x on, the first one's in the lowest byte. What would lie
    /// at `width` or beyond has none.
    void addPixels(uint32_t x, uint32_t y, uint64_t coverage);

    /// A row's bytes of coverage, as many as the shape is wide, from which blocks are made at the
    /// first pixel that has any.
    void addBytes(uint32_t y, const uint8_t* coverage);

    /// A row's spans, ascending and without overlap; their x counts from `left`.
    void addSpans(uint32_t left, uint32_t y, const std::vector<CoverageSpan>& spans);

    /// Unless the shape is narrower than a block, no block reaches beyond its width.
    uint32_t width() const { return m_width; }
    const std::vector<CoverageBlock>& blocks() const { return m_blocks; }
    const std::vector<SolidRun>& runs() const { return m_runs; }
    size_t byteSize() const {
        return m_blocks.capacity() * sizeof(CoverageBlock) + m_runs.capacity() * sizeof(SolidRun);
    }

  private:
    uint32_t m_width = 0;
    std::vector<CoverageBlock> m_blocks;
    std::vector<SolidRun> m_runs;
};

}  // namespace quiravent::desktop
