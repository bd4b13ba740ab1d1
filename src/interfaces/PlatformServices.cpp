#include "PlatformServices.h"

#include <array>
#include <atomic>
#include <memory>

#include "InputWorker.h"
#include "ServiceSelectorChannel.h"
#include "support/InitOrder.h"

std::map<std::string, std::string> PlatformServices::s_properties
    __attribute__((init_priority(quiravent::kProperties)));

namespace {

// What the platform told, kept as a record; nothing reads it.
[[maybe_unused]] bool gfx_cleanup_from_app = false;
[[maybe_unused]] std::atomic<uint32_t> last_runtime_state{2};

constexpr uint32_t kStates = 6;
constexpr int32_t kCountsAsRunning = 0xFFFF;

void onRuntimeStateChange(e_pl_platform_runtime_state code) {
    last_runtime_state = code;
    const std::shared_ptr<InputWorker> worker = g_input_worker_slot.Get();
    if (!worker) return;
    worker->dispatchCustomEvent("runtimestatechange",
                                PlatformServices::RuntimeState_Code2Str(code));
}

}  // namespace

std::string PlatformServices::RuntimeState_Code2Str(e_pl_platform_runtime_state code) {
    static constexpr std::array<const char*, kStates + 1> texts = {
        "paused", "running", "low_profile", "overlay", "suspended", "advertising", "unknown"};
    return texts[code < kStates ? code : kStates];
}

void PlatformServices::GetRuntimeState(std::string* state) {
    auto code = e_pl_platform_runtime_state_paused;
    const int32_t status = pl_platform_GetRuntimeState(&code);
    if (status == 0) {
        *state = RuntimeState_Code2Str(code);
    } else {
        *state = status == kCountsAsRunning ? "running" : "unknown";
    }
}

bool PlatformServices::SetRuntimeState(const std::string& state) {
    for (uint32_t number = 0; number < kStates; ++number) {
        const auto code = e_pl_platform_runtime_state(number);
        if (state != RuntimeState_Code2Str(code)) continue;
        (void)pl_platform_SetRuntimeState(code);
        return true;
    }
    return false;
}

std::map<std::string, std::string> PlatformServices::InitProperties() {
    if (!s_properties.empty()) return s_properties;
    // Zeros, so that a platform which refuses has no properties.
    s_pl_platform_properties list = {};
    (void)pl_platform_InitProperties(&list);
    for (uint32_t index = 0; index < list.count; ++index) {
        const std::string key = list.keys[index];
        s_properties[key] = list.values[index];
        if (key == "system.gfx_cleanup_from_app") gfx_cleanup_from_app = true;
    }
    (void)pl_platform_SetCallback_RuntimeStateChange(onRuntimeStateChange);
    (void)quiravent::StartServiceSelectorChannel();
    return s_properties;
}

void PlatformServices::Exit() {
    quiravent::StopServiceSelectorChannel();
    (void)pl_platform_Exit();
}

bool PlatformServices::Restart() { return pl_platform_Restart() == 0; }

void PlatformServices::ToggleLiveDTV(bool on) { (void)pl_platform_ToggleLiveDTV(on); }

bool PlatformServices::GetLiveDTVStatus() {
    uint8_t on = 0;
    (void)pl_platform_GetLiveDTVStatus(&on);
    return on != 0;
}

void PlatformServices::SetReferenceDate(uint32_t timestamp) {
    (void)pl_platform_SetReferenceDate(timestamp);
}
