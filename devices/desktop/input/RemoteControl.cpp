#include "input/RemoteControl.h"

#include <utility>

#include "support/Clock.h"

namespace quiravent::desktop {

namespace {

/// How far the telling may be late before the presses that were missed are left out.
constexpr std::chrono::seconds kPatience{1};

int64_t microseconds(std::chrono::microseconds duration) { return duration.count(); }

void tell(pl_input_key_callback callback, int32_t code) {
    if (callback != nullptr) callback(static_cast<pl_input_keycode>(code));
}

}  // namespace

void RemoteControl::keyDown(int32_t code, Done done) {
    m_thread.post([=, done = std::move(done)](int64_t due) {
        goDown(code, due);
        if (done) done();
    });
}

void RemoteControl::keyUp(int32_t code, Done done) {
    m_thread.post([=, done = std::move(done)](int64_t) {
        goUp(code);
        if (done) done();
    });
}

void RemoteControl::press(int32_t code, std::chrono::milliseconds hold, Done done) {
    const auto release = [=, done = std::move(done)](int64_t) {
        goUp(code);
        if (done) done();
    };
    m_thread.post([=](int64_t due) {
        // Before the repetition, so that of the two at one time the release comes first.
        if (hold.count() > 0) m_thread.postAt(due + microseconds(hold), release);
        goDown(code, due);
        if (hold.count() <= 0) release(due);
    });
}

void RemoteControl::goDown(int32_t code, int64_t time) {
    if (m_held.count(code) != 0) return;
    const pl_input_key_callback callback = m_onPress;
    const bool told = callback != nullptr && m_mask.wants(code);
    m_held[code] = {++m_presses, told};
    if (!told) return;
    tell(callback, code);
    repeatLater(code, m_presses, time + microseconds(kRepeatDelay));
}

void RemoteControl::goUp(int32_t code) {
    const auto key = m_held.find(code);
    if (key == m_held.end()) return;
    const bool told = key->second.told;
    m_held.erase(key);
    if (told) tell(m_onRelease, code);
}

void RemoteControl::repeatLater(int32_t code, uint64_t press, int64_t time) {
    m_thread.postAt(time, [=](int64_t due) { repeat(code, press, due); });
}

void RemoteControl::repeat(int32_t code, uint64_t press, int64_t due) {
    const auto key = m_held.find(code);
    const bool repeats = key != m_held.end() && key->second.press == press && press == m_presses;
    if (!repeats) return;
    tell(m_onPress, code);
    const bool isFarBehind = clock::now() - due > microseconds(kPatience);
    repeatLater(code, press, (isFarBehind ? clock::now() : due) + microseconds(kRepeatInterval));
}

}  // namespace quiravent::desktop
