#include "media/MediaClock.h"

#include <cmath>

namespace quiravent::desktop {

void MediaClock::setPosition(int64_t position) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_running = false;
    m_position = position;
}

void MediaClock::start(int64_t now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_running) return;
    m_running = true;
    m_time = now;
}

void MediaClock::stop(int64_t now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_position = positionLocked(now);
    m_running = false;
}

void MediaClock::setSpeed(double speed, int64_t now) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_position = positionLocked(now);
    m_time = now;
    m_speed = speed;
}

bool MediaClock::isRunning() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_running;
}

double MediaClock::speed() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_speed;
}

int64_t MediaClock::positionLocked(int64_t time) const {
    if (!m_running) return m_position;
    return m_position + std::llround(static_cast<double>(time - m_time) * m_speed);
}

int64_t MediaClock::positionAt(int64_t time) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return positionLocked(time);
}

int64_t MediaClock::timeOf(int64_t position) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_running) return INT64_MAX;
    return m_time +
           static_cast<int64_t>(std::ceil(static_cast<double>(position - m_position) / m_speed));
}

}  // namespace quiravent::desktop
