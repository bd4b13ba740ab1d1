#include "display/Screen.h"

#include <algorithm>
#include <new>
#include <utility>

#include "display/png.h"
#include "support/DeviceError.h"
#include "support/Log.h"
#include "support/writeFile.h"

namespace quiravent::desktop {

namespace {

constexpr uint32_t kBlack = 0xff000000;
constexpr Box kWholeScreen{0, 0, Screen::kWidth, Screen::kHeight};

/// Room for the front buffer and for pictures that are composed at the same time.
constexpr size_t kPoolBytes = size_t{8} * Screen::kWidth * Screen::kHeight * sizeof(uint32_t);

std::shared_ptr<Surface> newPicture(SurfacePool& pool, SurfacePool::Fill fill) {
    auto picture = pool.create(Screen::kWidth, Screen::kHeight, fill);
    if (!picture) throw std::bad_alloc();
    return picture;
}

}  // namespace

Screen::Screen(std::unique_ptr<DisplayDriver> driver, CapturePattern capture)
    : m_capture(std::move(capture)),
      m_pool(kPoolBytes),
      m_graphics(newPicture(m_pool, SurfacePool::Fill::transparent)),
      m_planes{&m_graphics},
      m_driver(std::move(driver)) {}

void Screen::present(const Surface& target, const Box& part) {
    const Box changed = intersection(part, kWholeScreen);
    if (changed.empty()) return;
    uint64_t frame = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_graphics.update(target, changed);
        frame = m_frameCount + 1;
    }
    show(frame, changed);
    if (m_capture.isPerFrame()) capture(frame);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_frameCount = frame;
    }
    m_onFrame();
}

void Screen::show(uint64_t frame, const Box& changed) {
    const std::lock_guard<std::mutex> lock(m_showing);
    m_driver->show(*this, frame, changed);
}

void Screen::addPlane(const Plane& plane) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_planes.insert(m_planes.end() - 1, &plane);
}

void Screen::addBottomPlane(const Plane& plane) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_planes.insert(m_planes.begin(), &plane);
}

void Screen::removePlane(const Plane& plane) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_planes.erase(std::remove(m_planes.begin(), m_planes.end(), &plane), m_planes.end());
}

void Screen::refresh(const Box& part) {
    const Box changed = intersection(part, kWholeScreen);
    if (!changed.empty()) show(frameCount(), changed);
}

uint64_t Screen::frameCount() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_frameCount;
}

std::shared_ptr<Surface> Screen::compose() const {
    auto picture = newPicture(m_pool, SurfacePool::Fill::uninitialised);
    compose(*picture, kWholeScreen);
    picture->setOpaque(true);
    return picture;
}

void Screen::compose(Surface& picture, const Box& part) const {
    for (auto y = static_cast<uint32_t>(part.top); y < part.bottom; ++y) {
        std::fill_n(picture.row(y) + part.left, part.width(), kBlack);
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    for (const Plane* plane : m_planes) plane->drawOnto(picture, part);
    picture.touch();
}

void Screen::finish() {
    m_driver->finish();
    if (!m_capture.isEmpty() && !m_capture.isPerFrame()) capture(frameCount());
}

/// A capture that fails is told, but the frame is on the screen all the same.
void Screen::capture(uint64_t frame) const {
    const std::string file = m_capture.fileFor(frame);
    try {
        writeFile(file, encodePng(*compose()));
    } catch (const std::exception& error) {
        log::warning("the screen can't be written to ", file, ": ", error.what());
    }
}

}  // namespace quiravent::desktop
