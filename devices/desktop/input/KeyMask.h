#pragma once

#include <atomic>
#include <cstdint>

namespace quiravent::desktop {

/// Which keys the application wants to be told of: at first all, then as it says of keys 0 to 63.
/// Thread-safe.
class KeyMask {
  public:
    /// Bit n of keys stands for key n; the other keys stay as they are.
    void set(uint64_t keys, bool wanted) {
        if (wanted) {
            m_wanted |= keys;
        } else {
            m_wanted &= ~keys;
        }
    }

    bool wants(int32_t code) const {
        return code < 0 || code > 63 || (m_wanted >> static_cast<uint32_t>(code) & 1U) != 0;
    }

  private:
    std::atomic<uint64_t> m_wanted{UINT64_MAX};
};

}  // namespace quiravent::desktop
