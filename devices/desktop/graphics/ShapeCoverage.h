#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "graphics/CoverageShape.h"
#include "graphics/Rasterizer.h"
#include "graphics/Shapes.h"
#include "graphics/ThinLine.h"
#include "support/RecentlyUsed.h"

namespace quiravent::desktop {

/// Works out what lines and ellipses cover. Since their coordinates are whole, what one covers
/// doesn't depend on where it is: those that were seen whole are kept, so that a screen that
/// repeats itself, or moves them, works none of them out again. Not thread-safe.
class ShapeCoverage {
  public:
    static constexpr size_t kBudgetBytes = size_t{4} << 20;

    explicit ShapeCoverage(size_t budgetBytes = kBudgetBytes) : m_known(budgetBytes) {}

    /// The line from pixel (x1, y1) to pixel (x2, y2), which differ in both coordinates, as far as
    /// it is visible: `visible` is a part of its bounds that isn't empty and lies on a surface. The
    /// shape begins at the corner of `visible`, and is valid until the next call.
    const CoverageShape& line(int64_t x1, int64_t y1, int64_t x2, int64_t y2, const Box& visible);

    /// The same of an ellipse or a part of it, whose centre and radii are whole.
    const CoverageShape& ellipse(EllipseStyle style, const Ellipse& ellipse, const Arc& arc,
                                 const Box& visible);

  private:
    /// The style, or that it is a line; then its extent, or radii and angles.
    struct Key {
        uint32_t kind;
        std::array<double, 4> measures;

        bool operator==(const Key& other) const {
            return kind == other.kind && measures == other.measures;
        }
    };
    struct Hash {
        size_t operator()(const Key& key) const;
    };

    /// Has cover() fill m_shape, unless the shape is known. Only those seen whole are.
    template <typename Cover>
    const CoverageShape& shapeOf(const Key& key, bool whole, const Box& visible, Cover cover);
    void addEllipse(EllipseStyle style, const Ellipse& ellipse, const Arc& arc);
    void addSpans(const Box& visible);
    void addMirrored(uint32_t radiusX, uint32_t radiusY);

    RecentlyUsed<Key, CoverageShape, Key, Hash> m_known;

    // Working memory, kept from one shape to the next.
    CoverageShape m_shape;
    Rasterizer m_rasterizer;
    ThinLine::Steps m_steps;
    std::vector<CoverageSpan> m_spans;
};

}  // namespace quiravent::desktop
