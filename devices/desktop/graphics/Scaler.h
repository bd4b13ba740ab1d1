#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "graphics/Geometry.h"
#include "graphics/Kernels.h"
#include "graphics/Pixmap.h"
#include "graphics/RowTeam.h"
#include "graphics/ScaleFilters.h"

namespace quiravent::desktop {

/// What is drawn where: `part` of a source, in the source's coordinates and possibly reaching
/// beyond it, over `destination`. Neither may be empty.
struct Placement {
    Box part;
    Box destination;

    bool sameSize() const {
        return part.width() == destination.width() && part.height() == destination.height();
    }
    ScaleAxis horizontal(const Box& inside) const {
        return {{part.left, part.right}, {inside.left, inside.right}, destination.width()};
    }
    ScaleAxis vertical(const Box& inside) const {
        return {{part.top, part.bottom}, {inside.top, inside.bottom}, destination.height()};
    }
};

/// Scales a picture row by row, computing only what is asked for. Rows and columns are filtered
/// one after the other, each rounded to 8 bits; exact halves are the rounded mean of 2 by 2
/// pixels. Opaque pixels stay opaque, no colour exceeds its alpha, a constant area stays constant,
/// and no pixel outside of the part is read. A part that reaches beyond the source draws only
/// those destination pixels whose centres lie over the source. A copy has working memory of its
/// own, for another thread.
class Scaler {
  public:
    /// The source must outlive the scaler; nothing outside of `limits` is computed.
    Scaler(const PixelView& source, const Placement& placement, const Box& limits,
           ScaleFilters& filters);

    /// The destination pixels that there are; may be empty.
    const Box& visible() const { return m_visible; }

    /// Computes the row `y` of visible() into visible().width() pixels at `out`.
    void scaleRow(int64_t y, uint32_t* out);

    /// Calls visit(scaler, worker, y) for all rows of visible(), shared by the team: each of its
    /// workers with a scaler of its own. The visitor must not throw.
    template <class Visitor>
    void shareRows(RowTeam& team, const Visitor& visit) {
        Scaler helper(*this);
        team.share(static_cast<size_t>(m_visible.height()), rowTime(),
                   [&](size_t worker, size_t first, size_t last) {
                       Scaler& own = worker == 0 ? *this : helper;
                       for (size_t i = first; i < last; ++i) {
                           visit(own, worker, m_visible.top + static_cast<int64_t>(i));
                       }
                   });
    }

  private:
    uint64_t rowTime() const;
    void halveRow(int64_t y, uint32_t* out) const;
    void filterRow(size_t index, uint32_t* out);
    const uint32_t* mixedRow(size_t index);

    PixelView m_source;
    Placement m_placement;
    Box m_visible;
    bool m_halving;
    std::shared_ptr<const ScaleFilter> m_across;
    std::shared_ptr<const ScaleFilter> m_down;
    std::vector<const uint32_t*> m_rows;
    std::vector<uint32_t> m_mixed;
};

}  // namespace quiravent::desktop
