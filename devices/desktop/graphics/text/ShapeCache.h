#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "graphics/text/TextShaper.h"

namespace quiravent::desktop {

/// The shaped texts that were used last, within a budget of bytes. Not thread-safe.
class ShapeCache {
  public:
    explicit ShapeCache(size_t budgetBytes) : m_budget(budgetBytes) {}

    /// Null when the text isn't there.
    std::shared_ptr<const ShapedText> find(std::string_view text);

    /// Takes a text that isn't there yet, and lets go of those used longest ago.
    void add(std::string_view text, std::shared_ptr<const ShapedText> shaped);

    size_t byteSize() const { return m_byteSize; }

  private:
    struct Entry {
        std::string text;
        std::shared_ptr<const ShapedText> shaped;
    };
    static size_t byteSizeOf(const Entry& entry);

    const size_t m_budget;
    size_t m_byteSize = 0;
    std::list<Entry> m_entries;  ///< the one used last is first
    std::unordered_map<std::string_view, std::list<Entry>::iterator> m_index;
};

}  // namespace quiravent::desktop
