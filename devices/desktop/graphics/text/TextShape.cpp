#include "graphics/text/TextShape.h"

#include <algorithm>
#include <array>

#include "graphics/Surface.h"

namespace quiravent::desktop {

namespace {

constexpr int64_t kMostPixels = 1 << 18;
constexpr size_t kMostLayers = 4;

Box boxOf(const std::vector<CoverageMask>& masks) {
    if (masks.empty()) return {0, 0, CoverageBlock::kPixels, 0};
    Box box{masks[0].x, masks[0].y, masks[0].x, masks[0].y};
    for (const CoverageMask& mask : masks) {
        box.left = std::min(box.left, int64_t{mask.x});
        box.top = std::min(box.top, int64_t{mask.y});
        box.right = std::max(box.right, int64_t{mask.x} + mask.width);
        box.bottom = std::max(box.bottom, int64_t{mask.y} + mask.height);
    }
    box.right = std::max(box.right, box.left + CoverageBlock::kPixels);
    return box;
}

/// The first layer holds each pixel's first coverage, the second its second, and so on.
class Layers {
  public:
    explicit Layers(const Box& box)
        : m_left(box.left),
          m_top(box.top),
          m_width(static_cast<size_t>(box.width())),
          m_size(m_width * static_cast<size_t>(box.height())) {}

    /// False if there is no layer left for a pixel.
    bool add(const CoverageMask& mask) {
        for (uint32_t y = 0; y < mask.height; ++y) {
            const uint8_t* row = mask.coverage + y * mask.stride;
            const size_t at = static_cast<size_t>(mask.y - m_top + y) * m_width +
                              static_cast<size_t>(mask.x - m_left);
            for (size_t x = 0; x < mask.width; ++x) {
                if (row[x] != 0 && !addPixel(at + x, row[x])) return false;
            }
        }
        return true;
    }

    void addTo(CoverageShape& shape) const {
        for (const std::vector<uint8_t>& layer : m_layers) {
            for (size_t at = 0; at < layer.size(); at += m_width) {
                shape.addBytes(static_cast<uint32_t>(at / m_width), layer.data() + at);
            }
        }
    }

  private:
    bool addPixel(size_t at, uint8_t coverage) {
        for (std::vector<uint8_t>& layer : m_layers) {
            if (layer.empty()) layer.resize(m_size);
            if (layer[at] != 0) continue;
            layer[at] = coverage;
            return true;
        }
        return false;
    }

    int64_t m_left;
    int64_t m_top;
    size_t m_width;
    size_t m_size;
    std::array<std::vector<uint8_t>, kMostLayers> m_layers;
};

}  // namespace

std::shared_ptr<const TextShape> textShapeOf(const std::vector<CoverageMask>& masks) {
    const Box box = boxOf(masks);
    if (std::max(box.width(), box.height()) > SurfacePool::kMaxSide ||
        box.width() * box.height() > kMostPixels)
        return nullptr;
    Layers layers(box);
    for (const CoverageMask& mask : masks)
        if (!layers.add(mask)) return nullptr;
    CoverageShape coverage;
    coverage.start(static_cast<uint32_t>(box.width()));
    layers.addTo(coverage);
    return std::make_shared<const TextShape>(TextShape{box, coverage});
}

}  // namespace quiravent::desktop
