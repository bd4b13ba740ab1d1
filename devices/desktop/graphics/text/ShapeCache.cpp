#include "ShapeCache.h"

#include <utility>

namespace quiravent::desktop {

namespace {

/// What one entry takes beside the text and its glyphs: nodes of the list and of the index.
constexpr size_t kEntryOverhead = 200;

}  // namespace

std::shared_ptr<const ShapedText> ShapeCache::find(std::string_view text) {
    const auto found = m_index.find(text);
    if (found == m_index.end()) return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, found->second);
    return found->second->shaped;
}

void ShapeCache::add(std::string_view text, std::shared_ptr<const ShapedText> shaped) {
    m_entries.push_front({std::string(text), std::move(shaped)});
    m_index.emplace(m_entries.front().text, m_entries.begin());
    m_byteSize += byteSizeOf(m_entries.front());
    while (m_byteSize > m_budget) {
        m_byteSize -= byteSizeOf(m_entries.back());
        m_index.erase(m_entries.back().text);
        m_entries.pop_back();
    }
}

size_t ShapeCache::byteSizeOf(const Entry& entry) {
    return entry.text.size() + entry.shaped->glyphs.capacity() * sizeof(ShapedGlyph) +
           kEntryOverhead;
}

}  // namespace quiravent::desktop
