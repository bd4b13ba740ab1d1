#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "lineup/streams/FrameMark.h"
#include "media/VideoOutput.h"

namespace quiravent::test {

using Mark = desktop::lineup::FrameMark;

inline std::optional<Mark> markOf(const desktop::Surface& surface) {
    return desktop::lineup::readMark(
        surface.width(), surface.height(),
        [&](uint32_t x, uint32_t y) { return static_cast<int>(surface.row(y)[x] >> 8 & 0xFF); });
}

/// Remembers the marks of all pictures that are shown. Thread-safe.
class MarkedOutput : public desktop::VideoOutput {
  public:
    void show(const desktop::VideoPicture& picture) override {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_current = picture.surface;
        if (const auto mark = markOf(*picture.surface)) m_marks.push_back(*mark);
        m_changed.notify_all();
    }
    void hide() override {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_current = nullptr;
        m_changed.notify_all();
    }

    /// Waits until what has been shown is so; false when it isn't within ten seconds.
    bool waitUntil(const std::function<bool(const std::vector<Mark>& marks)>& isSo) {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, kPatience, [&] { return isSo(m_marks); });
    }
    bool waitForPictures(size_t count) {
        return waitUntil([=](const auto& marks) { return marks.size() >= count; });
    }
    bool waitUntilHidden() {
        std::unique_lock<std::mutex> lock(m_mutex);
        return m_changed.wait_for(lock, kPatience, [&] { return m_current == nullptr; });
    }
    void forget() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_marks.clear();
    }
    std::vector<Mark> marks() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_marks;
    }
    std::shared_ptr<const desktop::Surface> current() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_current;
    }

  private:
    static constexpr std::chrono::seconds kPatience{10};
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Mark> m_marks;
    std::shared_ptr<const desktop::Surface> m_current;
};

}  // namespace quiravent::test
