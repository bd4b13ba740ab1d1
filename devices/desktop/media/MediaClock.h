#pragma once

#include <cstdint>
#include <mutex>

namespace quiravent::desktop {

/// The position in a medium as time goes by. Times are those of clock::now(), positions those of
/// the medium, both in microseconds. Thread-safe.
class MediaClock {
  public:
    /// Stands still at a position.
    void setPosition(int64_t position);
    void start(int64_t now);
    void stop(int64_t now);
    /// How many microseconds of the medium pass in one; negative backwards, never 0.
    void setSpeed(double speed, int64_t now);

    bool isRunning() const;
    double speed() const;
    int64_t positionAt(int64_t time) const;
    /// When the position is (or was) reached while running; INT64_MAX while standing still.
    int64_t timeOf(int64_t position) const;

  private:
    int64_t positionLocked(int64_t time) const;

    mutable std::mutex m_mutex;
    bool m_running = false;
    int64_t m_position = 0;  ///< at m_time, or for as long as the clock stands still
    int64_t m_time = 0;
    double m_speed = 1;
};

}  // namespace quiravent::desktop
