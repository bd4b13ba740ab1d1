#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "common/Watched.h"
#include "media/VideoOutput.h"

namespace quiravent::test {

/// Remembers what is seen of all that is shown. Thread-safe.
template <class Seen>
class RecordingOutput : public desktop::VideoOutput {
  public:
    /// What is seen of a picture; nothing: it isn't remembered.
    using See = std::optional<Seen> (*)(const desktop::VideoPicture& picture);

    explicit RecordingOutput(See see) : m_see(see) {}

    void show(const desktop::VideoPicture& picture) override {
        m_shown.change([&](Shown& shown) {
            shown.current = picture.surface;
            if (const auto seen = m_see(picture)) shown.seen.push_back(*seen);
        });
    }
    void hide() override {
        m_shown.change([](Shown& shown) { shown.current = nullptr; });
    }
    void forget() {
        m_shown.change([](Shown& shown) { shown.seen.clear(); });
    }

    std::vector<Seen> seen() const { return m_shown.get().seen; }
    /// Null while nothing is shown.
    std::shared_ptr<const desktop::Surface> current() const { return m_shown.get().current; }

    /// Waits until what has been seen since the last forget() is so; false when it isn't within ten
    /// seconds.
    template <class Condition>
    bool waitUntil(Condition isSo) const {
        return m_shown.waitUntil([&](const Shown& shown) { return isSo(shown.seen); });
    }
    bool waitForCount(size_t count) const {
        return waitUntil([=](const auto& seen) { return seen.size() >= count; });
    }
    bool waitUntilHidden() const {
        return m_shown.waitUntil([](const Shown& shown) { return shown.current == nullptr; });
    }

  private:
    struct Shown {
        std::vector<Seen> seen;
        std::shared_ptr<const desktop::Surface> current;
    };
    const See m_see;
    Watched<Shown> m_shown;
};

}  // namespace quiravent::test
