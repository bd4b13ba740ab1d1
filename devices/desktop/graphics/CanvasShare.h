#pragma once

#include <cstddef>
#include <cstdint>

#include "graphics/RowTeam.h"
#include "graphics/ScaleFilters.h"
#include "graphics/ScaledImageCache.h"
#include "graphics/ShapeCoverage.h"

namespace quiravent::desktop {

/// What all canvases of one drawing thread have in common: what makes them fast.
struct CanvasShare {
    /// scaledBytes: for pictures that are kept as they were scaled; threads: see RowTeam.
    CanvasShare(size_t scaledBytes, uint32_t threads)
        : team(threads), scaled(scaledBytes, filters, team) {}

    RowTeam team;
    ScaleFilters filters;
    ScaledImageCache scaled;
    ShapeCoverage shapes;
};

}  // namespace quiravent::desktop
