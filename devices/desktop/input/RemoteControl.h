#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>

#include "input/KeyMask.h"
#include "porting/pl_input.h"
#include "support/EventThread.h"

namespace quiravent::desktop {

/// The remote control: whoever has keys (a window's keyboard, the control channel) says when they
/// go down and up, and the application is told of it by one thread, in that order, as a remote
/// tells it: a press, further presses while the key is held, one release.
///
/// Of several keys that are held the one that went down last repeats. What comes for a key that is
/// down already, or up already, is no event, so a keyboard's own repetition does no harm. A key
/// that isn't wanted, or that nobody is registered for when it goes down, is told of neither then
/// nor when it comes up. Thread-safe.
class RemoteControl {
  public:
    static constexpr std::chrono::milliseconds kRepeatDelay{500};
    static constexpr std::chrono::milliseconds kRepeatInterval{100};

    /// Called on the thread that tells the events when the one asked for has been told.
    using Done = std::function<void()>;

    void setPressCallback(pl_input_key_callback callback) { m_onPress = callback; }
    void setReleaseCallback(pl_input_key_callback callback) { m_onRelease = callback; }
    KeyMask& mask() { return m_mask; }

    void keyDown(int32_t code, Done done = {});
    void keyUp(int32_t code, Done done = {});
    /// Both, with that time in between.
    void press(int32_t code, std::chrono::milliseconds hold, Done done = {});

    /// Nothing is told from then on.
    void stop() { m_thread.stop(); }

  private:
    // What follows is run by the thread.
    void goDown(int32_t code, int64_t time);
    void goUp(int32_t code);
    void repeatLater(int32_t code, uint64_t press, int64_t time);
    void repeat(int32_t code, uint64_t press, int64_t due);

    std::atomic<pl_input_key_callback> m_onPress{nullptr};
    std::atomic<pl_input_key_callback> m_onRelease{nullptr};
    KeyMask m_mask;

    struct Held {
        uint64_t press;  ///< its number among all presses
        bool told;
    };
    std::map<int32_t, Held> m_held;
    uint64_t m_presses = 0;
    EventThread m_thread{"remote control"};
};

}  // namespace quiravent::desktop
