#pragma once

#include <cstdint>
#include <optional>

namespace quiravent::desktop {

/// The percentages that are told while a medium is fetched: each once, at most ten a second, but
/// for the last one.
class FetchProgress {
  public:
    /// The percentage to tell now, if any. have, need: of whatever is counted.
    std::optional<uint8_t> observe(int64_t have, int64_t need, int64_t now);

  private:
    static constexpr int64_t kInterval = 100000;

    int m_told = -1;
    int64_t m_toldAt = 0;
};

}  // namespace quiravent::desktop
