#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>

#include "captions/CaptionWindow.h"

namespace quiravent::desktop {

/// The captions of one service of CEA-708. For one thread.
class WindowCaptions {
  public:
    /// Takes the bytes of the service's blocks, as they come with the picture of that time. A
    /// command may lie across blocks.
    void accept(const uint8_t* bytes, size_t count, int64_t pts);
    /// Time has gone on, which ends a delay that the service asked for.
    void advance(int64_t pts);
    /// Forgets all, after bytes were lost.
    void reset();

    /// What is to be seen since the last picture.
    const SubtitleCue& cue() const { return m_cue; }

  private:
    bool isDelayed(int64_t pts) const { return pts < m_delayedUntil; }
    void interpret(int64_t pts);
    void cutDelay();
    size_t lengthOf(size_t at) const;
    void execute(int64_t pts);
    void control(uint8_t code);
    void extended(uint8_t code);
    void command(uint8_t code, int64_t pts);
    void onWindows(uint8_t code, uint8_t mask);
    void define(CaptionWindow& window);
    void setPenColor();
    void setWindowAttributes();
    CaptionWindow& current() { return m_windows[m_current]; }
    void show(int64_t pts);

    std::array<CaptionWindow, 8> m_windows;
    size_t m_current = 0;
    std::deque<uint8_t> m_bytes;  ///< not yet interpreted
    int64_t m_delayedUntil = INT64_MIN;
    SubtitleCue m_cue{};
};

}  // namespace quiravent::desktop
