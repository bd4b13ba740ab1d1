#pragma once

#include <functional>

namespace quiravent::desktop {

/// Where a display driver tells what the people before it do. Called from the driver's thread,
/// one at a time, possibly before the driver's creation has returned; never once it has been
/// finished or destroyed. By default nobody listens.
struct DisplayInput {
    /// A key of the keyboard went down or up. name: as SDL names it ("Left", "Return", "A",
    /// "Keypad 1"). Answers whether the key stands for a key of the remote control; those that do
    /// come up once for each time they went down, and the keyboard's own repetition is left out.
    std::function<bool(const char* name, bool isDown)> key = [](const char*, bool) {
        return false;
    };

    /// The Exit key of the remote control went down or up: the window is asked to close.
    std::function<void(bool isDown)> exitKey = [](bool) {};

    /// The process is to end, whether the application wants to or not.
    std::function<void()> terminate = [] {};
};

}  // namespace quiravent::desktop
