#include <algorithm>

#include "graphics/Canvas.h"
#include "graphics/FetchAhead.h"
#include "graphics/PixelMath.h"

namespace quiravent::desktop {

namespace {

/// Where the existing part of a picture lies in its destination's frame.
Region regionOf(const Placement& placement, const Box& inside, double scaleX, double scaleY) {
    const Box& part = placement.part;
    return {static_cast<double>(inside.left - part.left) / scaleX,
            static_cast<double>(inside.top - part.top) / scaleY,
            static_cast<double>(inside.right - part.left) / scaleX,
            static_cast<double>(inside.bottom - part.top) / scaleY};
}

Pixmap scaledTo(Scaler& scaler, const Box& visible, RowTeam& team) {
    Pixmap scaled(static_cast<uint32_t>(visible.width()), static_cast<uint32_t>(visible.height()));
    scaler.shareRows(team, [&](Scaler& own, size_t, int64_t y) {
        own.scaleRow(y, scaled.row(static_cast<uint32_t>(y - visible.top)));
    });
    return scaled;
}

/// Of a pixel of a turned picture, in nanoseconds.
constexpr uint64_t kSampleTime = 2;

/// Composes what was sampled of a turned picture.
struct RunPainter {
    ComposeRow composeRow;
    ComposeMaskRow composeMaskRow;
    uint32_t opacity;

    /// pixels, line: of the run's first pixel.
    void paint(const Rotation::Run& run, uint32_t* pixels, const uint32_t* line) const {
        paintEdge(run, 0, run.wholeFirst, pixels, line);
        if (run.wholeFirst < run.wholeLast) {
            composeRow(pixels + run.wholeFirst, line + run.wholeFirst,
                       run.wholeLast - run.wholeFirst, opacity);
        }
        paintEdge(run, run.wholeLast, run.length, pixels, line);
    }

    void paintEdge(const Rotation::Run& run, size_t first, size_t last, uint32_t* pixels,
                   const uint32_t* line) const {
        if (first == last) return;
        composeMaskRow(pixels + first, line + first, run.coverage + first, last - first, opacity);
    }
};

}  // namespace

ComposeRow Canvas::composeRowFor(bool opaqueSource) const {
    const bool faded = m_opacity != 255;
    if (m_mode == kSourceOver && opaqueSource) return faded ? m_kernels.fade : m_kernels.copy;
    if (m_mode == kSourceOver && !faded) return m_kernels.over;
    if (m_mode == kSource && !faded) return m_kernels.copy;
    return m_kernels.modes[m_mode].compose;
}

void Canvas::compose(const Surface& source, uint32_t x, uint32_t y, const Rect* part) {
    const Box taken = part != nullptr ? toBox(*part) : viewOf(source).bounds();
    place(source,
          {taken, boxAt(signedCoordinate(x), signedCoordinate(y), taken.width(), taken.height())});
}

void Canvas::composeScaled(const Surface& source, const Rect& destination, const Rect* part) {
    const Box taken = part != nullptr ? toBox(*part) : viewOf(source).bounds();
    place(source, {taken, toBox(destination)});
}

void Canvas::place(const Surface& source, const Placement& placement) {
    const Box inside = intersection(placement.part, viewOf(source).bounds());
    if (inside.empty() || placement.destination.empty() || m_bounds.empty()) return;
    if (m_opacity == 0 && transparentIsIgnored()) return;
    if (!m_rotated && placement.sameSize()) {
        blit(source, placement);
        return;
    }
    const auto draw = m_rotated ? &Canvas::drawRotated : &Canvas::drawScaled;
    if (&source != m_surface.get()) {
        if (!m_rotated && drawKept(source, placement)) return;
        (this->*draw)(viewOf(source), placement);
        return;
    }
    const Pixmap before(viewOf(source).part(inside));
    (this->*draw)(before.view(source.isOpaque()),
                  {placement.part.shifted(-inside.left, -inside.top), placement.destination});
}

// On its own surface rows are taken in the order in which none is overwritten before it is read.
void Canvas::blit(const Surface& source, const Placement& placement) {
    const int64_t dx = placement.destination.left - placement.part.left;
    const int64_t dy = placement.destination.top - placement.part.top;
    const PixelView view = viewOf(source);
    const Box inside = intersection(placement.part, view.bounds());
    const Box visible = intersection(inside.shifted(dx, dy), m_bounds);
    if (visible.empty()) return;
    const bool ownSurface = &source == m_surface.get();
    if (!ownSurface) {
        copyRows(view, visible, dx, dy);
        return;
    }
    const bool withinRows = dy == 0;
    const bool bottomUp = dy > 0;
    const ComposeRow composeRow = composeRowFor(view.opaque);
    const auto width = static_cast<size_t>(visible.width());
    if (withinRows) m_line.resize(std::max(m_line.size(), width));
    for (int64_t i = 0; i < visible.height(); ++i) {
        const int64_t y = bottomUp ? visible.bottom - 1 - i : visible.top + i;
        const uint32_t* from = view.row(y - dy) + (visible.left - dx);
        if (withinRows) {
            std::copy(from, from + width, m_line.data());
            from = m_line.data();
        }
        composeRow(pixelsAt(visible.left, y), from, width, m_opacity);
    }
    drew(sourceIsOpaque(view.opaque), visible == m_surfaceBox);
}

/// The source's pixels, (dx, dy) further on; `visible` lies within the bounds.
void Canvas::copyRows(const PixelView& source, const Box& visible, int64_t dx, int64_t dy) {
    const ComposeRow composeRow = composeRowFor(source.opaque);
    const PixelBlock block = blockAt(visible);
    const uint32_t* from = source.row(visible.top - dy) + (visible.left - dx);
    uint32_t* to = block.pixels;
    const size_t fetched = fetchedRows(block.width, block.height);
    for (size_t i = 0; i < block.height; ++i, from += source.stride, to += block.stride) {
        if (i < fetched) {
            fetchAhead(from + kRowsAhead * source.stride, block.width);
            fetchAhead(to + kRowsAhead * block.stride, block.width);
        }
        composeRow(to, from, block.width, m_opacity);
    }
    drew(sourceIsOpaque(source.opaque), visible == m_surfaceBox);
}

bool Canvas::drawKept(const Surface& source, const Placement& placement) {
    const auto* kept = m_share->scaled.find(source, placement, m_bounds);
    if (kept == nullptr) return false;
    const PixelView view = viewOf(*kept->surface);
    const int64_t dx = placement.destination.left + kept->left;
    const int64_t dy = placement.destination.top + kept->top;
    const Box visible = intersection(view.bounds().shifted(dx, dy), m_bounds);
    if (!visible.empty()) copyRows(view, visible, dx, dy);
    return true;
}

void Canvas::drawScaled(const PixelView& source, const Placement& placement) {
    Scaler scaler(source, placement, m_bounds, m_share->filters);
    const Box& visible = scaler.visible();
    if (visible.empty()) return;
    const ComposeRow composeRow = composeRowFor(source.opaque);
    const PixelBlock block = blockAt(visible);
    m_line.resize(std::max(m_line.size(), 2 * block.width));
    scaler.shareRows(m_share->team, [&](Scaler& own, size_t worker, int64_t y) {
        uint32_t* const pixels = block.pixels + static_cast<size_t>(y - visible.top) * block.stride;
        if (composeRow == m_kernels.copy) {
            own.scaleRow(y, pixels);
            return;
        }
        uint32_t* const line = m_line.data() + worker * block.width;
        own.scaleRow(y, line);
        composeRow(pixels, line, block.width, m_opacity);
    });
    drew(sourceIsOpaque(source.opaque), visible == m_surfaceBox);
}

// Reducing needs the scaler's wide filter, so an axis that is reduced is reduced first; enlarging
// is left to the bilinear sampler, however large the destination.
void Canvas::drawRotated(const PixelView& source, const Placement& placement) {
    const Box& part = placement.part;
    const Box& destination = placement.destination;
    const Box reduced = boxAt(0, 0, std::min(part.width(), destination.width()),
                              std::min(part.height(), destination.height()));
    const Placement reduction{part, reduced};
    if (reduction.sameSize()) {
        drawSampled(source, placement);
        return;
    }
    Scaler scaler(source, reduction, reduced, m_share->filters);
    const Box& visible = scaler.visible();
    if (visible.empty()) return;
    const Pixmap scaled = scaledTo(scaler, visible, m_share->team);
    drawSampled(scaled.view(source.opaque),
                {reduced.shifted(-visible.left, -visible.top), destination});
}

void Canvas::drawSampled(const PixelView& source, const Placement& placement) {
    const Box inside = intersection(placement.part, source.bounds());
    const double scaleX = placement.horizontal(inside).ratio();
    const double scaleY = placement.vertical(inside).ratio();
    const Region region = regionOf(placement, inside, scaleX, scaleY);
    const PixelView view = source.part(inside);
    const SampleSource<uint32_t> sampled{view.pixels, view.stride, view.width, view.height};
    const RunPainter painter{composeRowFor(source.opaque), m_kernels.modes[m_mode].composeMask,
                             m_opacity};
    Rotation rotation(placement.destination, m_direction);
    const Rotation::Sampling sampling(rotation, region, scaleX, scaleY);
    const Box bounds = rotation.prepare(region, m_bounds);
    if (bounds.empty()) return;
    Rotation helper(rotation);
    const PixelBlock block = blockAt(bounds);
    m_line.resize(std::max(m_line.size(), 2 * block.width));
    m_share->team.share(
        block.height, kSampleTime * block.width, [&](size_t worker, size_t first, size_t last) {
            const Box band{bounds.left, bounds.top + static_cast<int64_t>(first), bounds.right,
                           bounds.top + static_cast<int64_t>(last)};
            uint32_t* const line = m_line.data() + worker * block.width;
            (worker == 0 ? rotation : helper).cover(region, band, [&](const Rotation::Run& run) {
                m_kernels.samplePixels(line, sampled, sampling.along(run), run.length);
                const auto row = static_cast<size_t>(run.y - bounds.top);
                painter.paint(run, block.pixels + row * block.stride + (run.x - bounds.left), line);
            });
        });
    drew(sourceIsOpaque(source.opaque), false);
}

void Canvas::drawMasks(const CoverageMask* masks, size_t count, const Box& bounds) {
    if (m_invisible || m_bounds.empty()) return;
    Rotation rotation(bounds, m_direction);
    for (const CoverageMask* mask = masks; mask != masks + count; ++mask) {
        if (mask->width == 0 || mask->height == 0) continue;
        if (m_rotated) {
            drawRotatedMask(*mask, bounds, rotation);
        } else {
            drawMask(*mask);
        }
    }
    drew(alphaOf(m_source) == 255, false);
}

void Canvas::drawMask(const CoverageMask& mask) {
    const Box visible = intersection(boxAt(mask.x, mask.y, mask.width, mask.height), m_bounds);
    if (visible.empty()) return;
    const uint8_t* coverage =
        mask.coverage + static_cast<size_t>(visible.top - mask.y) * mask.stride;
    m_kernels.modes[m_mode].fillMask(blockAt(visible), coverage + (visible.left - mask.x),
                                     mask.stride, m_source);
}

void Canvas::drawRotatedMask(const CoverageMask& mask, const Box& bounds, Rotation& rotation) {
    const Box box = boxAt(mask.x - bounds.left, mask.y - bounds.top, mask.width, mask.height);
    const Region region{static_cast<double>(box.left), static_cast<double>(box.top),
                        static_cast<double>(box.right), static_cast<double>(box.bottom)};
    const SampleSource<uint8_t> sampled{mask.coverage, mask.stride, mask.width, mask.height};
    const FillMask fillMask = m_kernels.modes[m_mode].fillMask;
    m_coverage.resize(std::max(m_coverage.size(), static_cast<size_t>(m_bounds.width())));
    const Rotation::Sampling sampling(rotation, region, 1, 1);
    rotation.cover(region, rotation.prepare(region, m_bounds), [&](const Rotation::Run& run) {
        m_kernels.sampleCoverage(m_coverage.data(), sampled, sampling.along(run), run.length);
        const auto fade = [&](size_t first, size_t last) {
            for (size_t i = first; i < last; ++i) {
                m_coverage[i] = static_cast<uint8_t>(divideBy255(m_coverage[i] * run.coverage[i]));
            }
        };
        fade(0, run.wholeFirst);
        fade(run.wholeLast, run.length);
        fillMask({pixelsAt(run.x, run.y), 0, run.length, 1}, m_coverage.data(), 0, m_source);
    });
}

}  // namespace quiravent::desktop
