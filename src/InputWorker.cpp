#include "InputWorker.h"

#include <memory>
#include <utility>

#include "porting/pl_platform.h"
#include "support/HardEnd.h"
#include "support/Kept.h"

std::atomic<InputWorker*> g_input_worker{nullptr};
InputWorkerSlot g_input_worker_slot;

namespace {

constexpr pl_input_keycode kLowProfileKey = pl_input_keycode_home;
constexpr uint32_t kAllKeys = 0x03FFFFF9;

void DispatchKey(const char* name, pl_input_keycode code) {
    const std::shared_ptr<InputWorker> worker = g_input_worker_slot.Get();
    if (!worker) quiravent::EndByNullRead();
    worker->onKeyEvent(name, code);
}

void onKeyPress(pl_input_keycode code) {
    // The script never sees a press of this key, but it sees its release: deliberate.
    if (code == kLowProfileKey) {
        (void)pl_platform_SetRuntimeState(e_pl_platform_runtime_state_low_profile);
        return;
    }
    DispatchKey("keypress", code);
}

void onKeyRelease(pl_input_keycode code) { DispatchKey("keyrelease", code); }

}  // namespace

void InputWorker::onKeyEvent(std::string name, pl_input_keycode code) {
    AddReport({std::move(name), std::to_string(static_cast<int32_t>(code))});
}

void InputWorker::dispatchCustomEvent(std::string name, std::string data) {
    AddReport({std::move(name), std::move(data)});
}

QUIRAVENT_KEPT void InputWorker::attachAllKeys() { (void)pl_input_UpdateKeyMask(kAllKeys, 0, 1); }

void InputWorker::Attach() {
    (void)pl_input_SetCallback_KeyPress(onKeyPress);
    (void)pl_input_SetCallback_KeyRelease(onKeyRelease);
}

quiravent::Message InputWorker::MessageOf(std::pair<std::string, std::string> report) {
    return {std::move(report.first), std::move(report.second)};
}
