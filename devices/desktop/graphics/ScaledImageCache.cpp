#include "graphics/ScaledImageCache.h"

#include <algorithm>
#include <initializer_list>

#include "graphics/Pixmap.h"
#include "support/HashMix.h"

namespace quiravent::desktop {

namespace {

constexpr int64_t kMostHidden = 4;   // times what is seen
constexpr size_t kLargestShare = 4;  // of the budget, for one picture

uint64_t hashOf(std::initializer_list<uint64_t> values) {
    uint64_t hash = 0;
    for (const uint64_t value : values) hash = mixedHash(hash, value);
    return hash;
}

uint64_t bits(int64_t value) { return static_cast<uint64_t>(value); }

int64_t areaOf(const Box& box) { return box.empty() ? 0 : box.width() * box.height(); }

}  // namespace

ScaledImageCache::ScaledImageCache(size_t budgetBytes, ScaleFilters& filters, RowTeam& team)
    : m_budget(budgetBytes), m_filters(filters), m_team(team), m_pool(budgetBytes) {}

size_t ScaledImageCache::Hash::operator()(const Key& key) const {
    return hashOf({key.id, bits(key.part.left), bits(key.part.top), bits(key.part.right),
                   bits(key.part.bottom), bits(key.width), bits(key.height)});
}

bool ScaledImageCache::isWorthwhile(const Placement& placement, const Box& limits) const {
    const Box& whole = placement.destination;
    // Sides are held before they are multiplied, as they may be of 32 bits each.
    if (whole.width() > SurfacePool::kMaxSide || whole.height() > SurfacePool::kMaxSide) {
        return false;
    }
    const auto byteSize = static_cast<size_t>(areaOf(whole)) * sizeof(uint32_t);
    return byteSize <= m_budget / kLargestShare &&
           areaOf(whole) <= kMostHidden * areaOf(intersection(whole, limits));
}

bool ScaledImageCache::isRepeated(const Key& key, uint64_t generation) {
    const uint64_t hash = hashOf({Hash()(key), generation});
    auto& seen = m_seen[hash % m_seen.size()];
    auto place = std::find(seen.begin(), seen.end(), hash);
    const bool repeated = place != seen.end();
    if (!repeated) place = seen.end() - 1;
    std::move_backward(seen.begin(), place, place + 1);
    seen.front() = hash;
    return repeated;
}

const ScaledImageCache::Picture* ScaledImageCache::find(const Surface& source,
                                                        const Placement& placement,
                                                        const Box& limits) {
    const Box& destination = placement.destination;
    const Key key{source.id(), placement.part, destination.width(), destination.height()};
    const auto found = m_index.find(key);
    if (found != m_index.end()) {
        const auto entry = found->second;
        if (entry->generation == source.generation()) {
            m_entries.splice(m_entries.begin(), m_entries, entry);
            return &entry->picture;
        }
        remove(entry);
    }
    if (!isWorthwhile(placement, limits) || !isRepeated(key, source.generation())) return nullptr;
    return add(key, source, placement);
}

const ScaledImageCache::Picture* ScaledImageCache::add(const Key& key, const Surface& source,
                                                       const Placement& placement) {
    const Box whole = boxAt(0, 0, key.width, key.height);
    Scaler scaler(viewOf(source), {placement.part, whole}, whole, m_filters);
    const Box& visible = scaler.visible();
    if (visible.empty()) return nullptr;
    const auto width = static_cast<uint32_t>(visible.width());
    const auto height = static_cast<uint32_t>(visible.height());
    std::shared_ptr<Surface> surface;
    while (!(surface = m_pool.create(width, height, SurfacePool::Fill::uninitialised))) {
        if (m_entries.empty()) return nullptr;
        remove(std::prev(m_entries.end()));
    }
    uint32_t* const pixels = surface->row(0);
    const size_t stride = surface->stride();
    scaler.shareRows(m_team, [&](Scaler& own, size_t, int64_t y) {
        own.scaleRow(y, pixels + static_cast<size_t>(y - visible.top) * stride);
    });
    surface->setOpaque(source.isOpaque());
    m_byteSize += surface->byteSize();
    m_entries.push_front(
        {key, source.generation(), {std::move(surface), visible.left, visible.top}});
    m_index.emplace(key, m_entries.begin());
    return &m_entries.front().picture;
}

void ScaledImageCache::remove(Entries::iterator entry) {
    m_byteSize -= entry->picture.surface->byteSize();
    m_index.erase(entry->key);
    m_entries.erase(entry);
}

}  // namespace quiravent::desktop
