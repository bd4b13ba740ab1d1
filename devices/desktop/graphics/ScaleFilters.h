#pragma once

#include <cstddef>
#include <list>
#include <memory>

#include "graphics/ScaleFilter.h"

namespace quiravent::desktop {

/// Keeps the filters that were used last, since working one out takes as long as scaling some rows
/// by it, and pictures of one kind are scaled alike. Not thread-safe; the filters are constant.
class ScaleFilters {
  public:
    /// See ScaleFilter.
    std::shared_ptr<const ScaleFilter> find(const ScaleAxis& axis, const Extent& visible);

  private:
    struct Entry {
        ScaleAxis axis;
        Extent visible;
        std::shared_ptr<const ScaleFilter> filter;
    };

    std::list<Entry> m_entries;  // the one used last is first
};

}  // namespace quiravent::desktop
