#include <node_api.h>
#include <time.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "empty_layer.h"

// Threads that report as a device's do: to the module, through its callback for keys, or, with the
// same two texts, to a thread-safe function of the runtime's stable interface, Node-API.

namespace {

using Report = std::pair<std::string, std::string>;

napi_threadsafe_function s_function = nullptr;
std::vector<std::thread> s_threads;

/// Script thread: makes the two texts, and calls the listener with them.
void deliver(napi_env env, napi_value listener, void*, void* data) {
    const auto* const report = static_cast<Report*>(data);
    napi_value texts[2]{};
    napi_value receiver = nullptr;
    napi_create_string_utf8(env, report->first.data(), report->first.size(), &texts[0]);
    napi_create_string_utf8(env, report->second.data(), report->second.size(), &texts[1]);
    delete report;
    napi_get_global(env, &receiver);
    napi_call_function(env, receiver, listener, 2, texts, nullptr);
}

void tellFunction(int32_t code) {
    auto* const report = new Report("keyrelease", std::to_string(code));
    napi_call_threadsafe_function(s_function, report, napi_tsfn_nonblocking);
}

void tellModule(int32_t code) { bench_keyCallback()(static_cast<pl_input_keycode>(code)); }

/// Milliseconds of the clock that process.hrtime() reads.
double now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// A remote control has so many.
constexpr int32_t kKeys = 60;

/// The module's worker may leave the last of a burst until the next report, which is this key: told
/// by the last thread, once the worker has had the time to wait again.
constexpr int32_t kNudge = -1;
constexpr timespec kUntilWaiting{0, 50000};

std::atomic<int> s_reporting{0};

void report(void (*tell)(int32_t), int32_t count) {
    for (int32_t index = 0; index < count; ++index) tell(index % kKeys);
    if (--s_reporting != 0 || tell != tellModule) return;
    clock_nanosleep(CLOCK_MONOTONIC, 0, &kUntilWaiting, nullptr);
    tell(kNudge);
}

/// One report after each pause; times: where the moment of each goes.
void reportPaced(void (*tell)(int32_t), int32_t count, double* times, long nanoseconds) {
    for (int32_t code = 0; code < count; ++code) {
        const timespec pause{0, nanoseconds};
        clock_nanosleep(CLOCK_MONOTONIC, 0, &pause, nullptr);
        times[code] = now();
        tell(code);
    }
}

struct Call {
    static constexpr size_t kMost = 4;

    Call(napi_env environment, napi_callback_info info) : env(environment) {
        size_t count = kMost;
        napi_get_cb_info(env, info, &count, arguments, nullptr, nullptr);
    }
    int32_t number(size_t index) const {
        int32_t value = 0;
        napi_get_value_int32(env, arguments[index], &value);
        return value;
    }
    /// Which of the two is told, by the first argument.
    auto target() const {
        bool isModule = false;
        napi_get_value_bool(env, arguments[0], &isModule);
        return isModule ? &tellModule : &tellFunction;
    }

    napi_env env;
    napi_value arguments[kMost]{};
};

/// listen(listener): makes the thread-safe function.
napi_value Listen(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    napi_value name = nullptr;
    napi_create_string_utf8(env, "bench", NAPI_AUTO_LENGTH, &name);
    napi_create_threadsafe_function(env, call.arguments[0], nullptr, name, 0, 1, nullptr, nullptr,
                                    nullptr, deliver, &s_function);
    return nullptr;
}

/// isOpen(): whether the module has registered its callback.
napi_value IsOpen(napi_env env, napi_callback_info) {
    napi_value result = nullptr;
    napi_get_boolean(env, bench_keyCallback() != nullptr, &result);
    return result;
}

/// report(toModule, threads, count): has each of the threads report so often, as fast as it can.
napi_value ReportMany(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    s_reporting = call.number(1);
    for (int32_t index = 0; index < call.number(1); ++index)
        s_threads.emplace_back(report, call.target(), call.number(2));
    return nullptr;
}

/// reportPaced(toModule, times, microseconds): reports once for each of the times, a Float64Array
/// that must live until join(), with pauses.
napi_value ReportPaced(napi_env env, napi_callback_info info) {
    const Call call(env, info);
    size_t count = 0;
    void* times = nullptr;
    napi_get_typedarray_info(env, call.arguments[1], nullptr, &count, &times, nullptr, nullptr);
    s_threads.emplace_back(reportPaced, call.target(), static_cast<int32_t>(count),
                           static_cast<double*>(times), call.number(2) * 1000L);
    return nullptr;
}

/// nudge(): tells the module of key kNudge, from this thread.
napi_value Nudge(napi_env, napi_callback_info) {
    tellModule(kNudge);
    return nullptr;
}

/// join(): waits for the threads.
napi_value Join(napi_env, napi_callback_info) {
    for (std::thread& thread : s_threads) thread.join();
    s_threads.clear();
    return nullptr;
}

napi_value Init(napi_env env, napi_value exports) {
    constexpr std::pair<const char*, napi_callback> kFunctions[] = {
        {"listen", Listen},           {"isOpen", IsOpen}, {"report", ReportMany},
        {"reportPaced", ReportPaced}, {"nudge", Nudge},   {"join", Join}};
    for (const auto& [name, function] : kFunctions) {
        napi_value made = nullptr;
        napi_create_function(env, name, NAPI_AUTO_LENGTH, function, nullptr, &made);
        napi_set_named_property(env, exports, name, made);
    }
    return exports;
}

}  // namespace

NAPI_MODULE(device_threads, Init)
