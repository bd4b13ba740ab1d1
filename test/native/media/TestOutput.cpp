#include "media/TestOutput.h"

#include <chrono>

#include "support/Clock.h"

namespace quiravent::test {

namespace {

constexpr int kBits = 12;
constexpr std::chrono::seconds kPatience{10};

uint32_t brightness(uint32_t pixel) { return (pixel >> 8) & 0xFF; }

}  // namespace

int pictureNumber(const desktop::Surface& surface) {
    int number = 0;
    for (int bit = 0; bit < kBits; ++bit) {
        const uint32_t x = surface.width() * (2 * static_cast<uint32_t>(bit) + 1) / (2 * kBits);
        if (brightness(surface.row(surface.height() / 12)[x]) > 128) number |= 1 << bit;
    }
    return number;
}

int whitePixels(const desktop::Surface& surface) {
    int count = 0;
    for (uint32_t y = surface.height() * 3 / 4; y < surface.height(); ++y)
        for (uint32_t x = 0; x < surface.width(); ++x)
            if (brightness(surface.row(y)[x]) > 170) ++count;
    return count;
}

void TestOutput::show(const desktop::VideoPicture& picture) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_current = picture.surface;
    m_seen.push_back({pictureNumber(*picture.surface), desktop::clock::now(), picture.position,
                      picture.surface->width(), picture.surface->height()});
    m_changed.notify_all();
}

void TestOutput::hide() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_current = nullptr;
    m_changed.notify_all();
}

std::vector<SeenPicture> TestOutput::seen() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_seen;
}

std::shared_ptr<const desktop::Surface> TestOutput::current() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_current;
}

void TestOutput::forget() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_seen.clear();
}

bool TestOutput::waitForNumber(int number) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, kPatience,
                              [&] { return !m_seen.empty() && m_seen.back().number == number; });
}

bool TestOutput::waitForCount(size_t count) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, kPatience, [&] { return m_seen.size() >= count; });
}

}  // namespace quiravent::test
