#pragma once

#include <cstddef>
#include <functional>
#include <list>
#include <unordered_map>
#include <utility>

namespace quiravent::desktop {

/// Values by their keys, within a budget of bytes: what was used longest ago goes first, and only
/// what was used last may exceed it. Keys may be looked up by a view of them. Not thread-safe.
template <class Key, class Value, class View = Key, class Hash = std::hash<View>>
class RecentlyUsed {
  public:
    explicit RecentlyUsed(size_t budgetBytes) : m_budget(budgetBytes) {}

    /// Null when the key isn't there; otherwise valid until something is added or resized.
    Value* find(const View& key) {
        if (!m_entries.empty() && m_entries.front().key == key) return &m_entries.front().value;
        const auto found = m_index.find(key);
        if (found == m_index.end()) return nullptr;
        m_entries.splice(m_entries.begin(), m_entries, found->second);
        return &found->second->value;
    }

    /// Takes the value of a key that isn't there yet, with all the bytes that it stands for.
    Value& add(Key key, Value value, size_t byteSize) {
        m_entries.push_front({std::move(key), std::move(value), byteSize + kOverhead});
        m_index.emplace(m_entries.front().key, m_entries.begin());
        m_byteSize += m_entries.front().byteSize;
        holdToBudget();
        return m_entries.front().value;
    }

    /// The value found or added last stands for that many bytes now.
    void resizeLast(size_t byteSize) {
        m_byteSize -= m_entries.front().byteSize;
        m_entries.front().byteSize = byteSize + kOverhead;
        m_byteSize += m_entries.front().byteSize;
        holdToBudget();
    }

    size_t byteSize() const { return m_byteSize; }

  private:
    struct Entry {
        Key key;
        Value value;
        size_t byteSize;
    };

    /// Of an entry: nodes of the list and of the index.
    static constexpr size_t kOverhead = sizeof(Entry) + 100;

    void holdToBudget() {
        while (m_byteSize > m_budget && m_entries.size() > 1) {
            m_byteSize -= m_entries.back().byteSize;
            m_index.erase(m_entries.back().key);
            m_entries.pop_back();
        }
    }

    const size_t m_budget;
    size_t m_byteSize = 0;
    std::list<Entry> m_entries;  ///< the one used last is first
    std::unordered_map<View, typename std::list<Entry>::iterator, Hash> m_index;
};

}  // namespace quiravent::desktop
