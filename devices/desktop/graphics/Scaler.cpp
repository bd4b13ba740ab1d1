#include "graphics/Scaler.h"

namespace quiravent::desktop {

namespace {

constexpr size_t kReadSlack = 16;

Extent shifted(const Extent& extent, int64_t by) { return {extent.first + by, extent.last + by}; }

}  // namespace

Scaler::Scaler(const PixelView& source, const Placement& placement, const Box& limits,
               ScaleFilters& filters)
    : m_source(source), m_placement(placement), m_visible{}, m_halving(false) {
    const Box& part = placement.part;
    const Box& destination = placement.destination;
    const Box inside = intersection(part, source.bounds());
    if (inside.empty()) return;
    const ScaleAxis across = placement.horizontal(inside);
    const ScaleAxis down = placement.vertical(inside);
    const Extent columns = shifted(across.covered(), destination.left);
    const Extent rows = shifted(down.covered(), destination.top);
    m_visible = intersection({columns.first, rows.first, columns.last, rows.last}, limits);
    if (m_visible.empty()) return;
    m_halving = inside == part && part.width() == 2 * destination.width() &&
                part.height() == 2 * destination.height();
    if (m_halving) return;
    m_across = filters.find(across, shifted({m_visible.left, m_visible.right}, -destination.left));
    m_down = filters.find(down, shifted({m_visible.top, m_visible.bottom}, -destination.top));
    m_rows.resize(m_down->taps());
    m_mixed.resize(static_cast<size_t>(m_across->sources().size()) + kReadSlack);
}

/// In nanoseconds: four weighted pixels in each.
uint64_t Scaler::rowTime() const {
    const auto width = static_cast<uint64_t>(m_visible.width());
    if (m_halving) return width;
    const auto sources = static_cast<uint64_t>(m_across->sources().size());
    return (sources * m_down->taps() + width * m_across->taps()) / 4;
}

void Scaler::scaleRow(int64_t y, uint32_t* out) {
    if (m_halving) {
        halveRow(y, out);
    } else {
        filterRow(static_cast<size_t>(y - m_visible.top), out);
    }
}

void Scaler::halveRow(int64_t y, uint32_t* out) const {
    const Box& destination = m_placement.destination;
    const int64_t column = m_placement.part.left + 2 * (m_visible.left - destination.left);
    const int64_t row = m_placement.part.top + 2 * (y - destination.top);
    kernels().halveRows(out, m_source.row(row) + column, m_source.row(row + 1) + column,
                        static_cast<size_t>(m_visible.width()));
}

void Scaler::filterRow(size_t index, uint32_t* out) {
    kernels().filterRow(out, mixedRow(index), m_across->row(),
                        static_cast<size_t>(m_visible.width()));
}

const uint32_t* Scaler::mixedRow(size_t index) {
    const Extent columns = m_across->sources();
    const int64_t first = m_down->first(index);
    const uint32_t taps = m_down->taps();
    if (taps == 1) return m_source.row(first) + columns.first;
    for (uint32_t tap = 0; tap < taps; ++tap) {
        m_rows[tap] = m_source.row(first + tap) + columns.first;
    }
    kernels().mixRows(m_mixed.data(), m_rows.data(), m_down->weights(index), taps, m_down->shift(),
                      static_cast<size_t>(columns.size()));
    return m_mixed.data();
}

}  // namespace quiravent::desktop
