#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <unordered_map>

#include "graphics/Geometry.h"
#include "graphics/Scaler.h"
#include "graphics/Surface.h"

namespace quiravent::desktop {

/// Keeps pictures as they were scaled, so that one that is drawn in the same size again and again
/// costs no more than its copy. A picture is kept from its second use on, so that an animation
/// through many sizes drives nothing out; one that was drawn upon since is scaled anew. What was
/// used longest ago goes first when the bytes exceed the budget, which is beside that of the
/// application's own pictures: what this keeps is nothing that an application can run out of.
///
/// Not thread-safe.
class ScaledImageCache {
  public:
    /// Scales with these filters, by this team, which have to outlive it.
    ScaledImageCache(size_t budgetBytes, ScaleFilters& filters, RowTeam& team);

    struct Picture {
        std::shared_ptr<const Surface> surface;
        int64_t left;  ///< where its corner lies from that of the destination
        int64_t top;
    };

    /// The source scaled as the placement says, or null if it isn't to be kept: the caller scales
    /// then. `limits`: what is visible; a picture of which little is seen isn't worth its bytes.
    /// Valid until the next call.
    const Picture* find(const Surface& source, const Placement& placement, const Box& limits);

    size_t byteSize() const { return m_byteSize; }

  private:
    struct Key {
        uint64_t id;
        Box part;
        int64_t width;
        int64_t height;

        bool operator==(const Key& other) const {
            return id == other.id && part == other.part && width == other.width &&
                   height == other.height;
        }
    };
    struct Hash {
        size_t operator()(const Key& key) const;
    };
    struct Entry {
        Key key{};
        uint64_t generation = 0;
        Picture picture;
    };
    using Entries = std::list<Entry>;

    bool isWorthwhile(const Placement& placement, const Box& limits) const;
    bool isRepeated(const Key& key, uint64_t generation);
    const Picture* add(const Key& key, const Surface& source, const Placement& placement);
    void remove(Entries::iterator entry);

    const size_t m_budget;
    ScaleFilters& m_filters;
    RowTeam& m_team;
    size_t m_byteSize = 0;
    SurfacePool m_pool;
    Entries m_entries;  // the one used last is first
    std::unordered_map<Key, Entries::iterator, Hash> m_index;
    /// What was drawn lately, as hashes in sets by their lowest bits, the latest first.
    std::array<std::array<uint64_t, 4>, 256> m_seen{};
};

}  // namespace quiravent::desktop
