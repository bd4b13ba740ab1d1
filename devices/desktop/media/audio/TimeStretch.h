#pragma once

#include <cstddef>
#include <vector>

namespace quiravent::desktop {

/// Plays sound faster or slower at its own pitch: pieces of it are put together anew, overlapping
/// where they are most alike (synchronised overlap-add).
class TimeStretch {
  public:
    /// speed: 0.25 to 4; 1 changes nothing.
    explicit TimeStretch(double speed) : m_speed(speed) {}

    /// Takes interleaved frames (see AudioFormat.h) and gives those that are ready.
    std::vector<float> process(const std::vector<float>& samples);

  private:
    size_t available() const;
    const float* at(size_t frame) const;
    size_t bestOffset() const;
    double likeness(size_t offset) const;
    void emitPiece(std::vector<float>& out);

    double m_speed;
    std::vector<float> m_input;
    std::vector<float> m_tail;  ///< with which the last piece went on
    double m_excess = 0;        ///< fraction of a frame by which the input lags behind
};

}  // namespace quiravent::desktop
