#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace quiravent::desktop {

/// What a handle stands for. It is part of the handle, so that one of another kind is refused.
enum class HandleKind : uint32_t {
    canvas = 1,
    font = 2,
    store = 3,
    urlPlayer = 4,
    adPlayer = 5,
    livePlayer = 6
};

/// Objects known to the outside by 32-bit handles. From the top, a handle is 4 bits of kind (never
/// 0, hence no handle is 0), 8 bits of generation and 20 bits of slot. A slot waits in a queue of
/// at least kWaitingSlots before it is used again, so a handle comes back after some 260,000
/// others have been released at the earliest.
///
/// Thread-safe. Objects are shared: one that is in use survives its removal from the table.
template <class Object, HandleKind kind>
class HandleTable {
  public:
    static constexpr uint32_t kMaxObjects = 1U << 20;

    /// The new handle, or 0 when the table is full.
    uint32_t insert(std::shared_ptr<Object> object) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const uint32_t index = takeSlot();
        if (index == kMaxObjects) return 0;
        m_slots[index].object = std::move(object);
        return m_slots[index].handle;
    }

    /// Null when no object has that handle.
    std::shared_ptr<Object> find(uint32_t handle) const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const uint32_t index = handle & kIndexMask;
        if (index >= m_slots.size() || m_slots[index].handle != handle) return nullptr;
        return m_slots[index].object;
    }

    /// Takes an object out; null when no object has that handle.
    std::shared_ptr<Object> remove(uint32_t handle) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const uint32_t index = handle & kIndexMask;
        if (index >= m_slots.size() || m_slots[index].handle != handle) return nullptr;
        if (!m_slots[index].object) return nullptr;
        m_waiting.push_back(index);
        m_slots[index].handle = nextGeneration(handle);
        return std::move(m_slots[index].object);
    }

  private:
    static constexpr uint32_t kIndexMask = kMaxObjects - 1;
    static constexpr uint32_t kGenerationStep = kMaxObjects;
    static constexpr uint32_t kKindShift = 28;
    static constexpr uint32_t kKindBits = static_cast<uint32_t>(kind) << kKindShift;
    static constexpr size_t kWaitingSlots = 1024;

    /// `handle` is the one that the object has, or that the next one in this slot will have.
    struct Slot {
        uint32_t handle;
        std::shared_ptr<Object> object;
    };

    static uint32_t nextGeneration(uint32_t handle) {
        return kKindBits | ((handle + kGenerationStep) & ((1U << kKindShift) - 1));
    }

    /// Index of an empty slot, or kMaxObjects.
    uint32_t takeSlot() {
        const bool full = m_slots.size() == kMaxObjects;
        if (m_waiting.size() > kWaitingSlots || (full && !m_waiting.empty())) {
            const uint32_t index = m_waiting.front();
            m_waiting.pop_front();
            return index;
        }
        if (full) return kMaxObjects;
        const auto index = static_cast<uint32_t>(m_slots.size());
        m_slots.push_back({kKindBits | index, nullptr});
        return index;
    }

    mutable std::mutex m_mutex;
    std::vector<Slot> m_slots;
    std::deque<uint32_t> m_waiting;
};

}  // namespace quiravent::desktop
