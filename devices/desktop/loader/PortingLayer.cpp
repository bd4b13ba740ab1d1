// The porting layer that the module is linked to: it opens the device, libquiravent_desktop.so
// beside it, and hands every call on.
//
// The device is a library of its own since script runtimes export their copies of OpenSSL, zlib
// and others, and a device that is loaded plainly would run with those instead of with the ones it
// was built for. Deep binding prevents that, and it has to be asked for when a library is opened.

#include <dlfcn.h>

#include <optional>
#include <string>
#include <utility>

#include "porting/pl_events.h"
#include "porting/pl_functions.h"
#include "support/DeviceError.h"
#include "support/Log.h"
#include "support/Refusal.h"
#include "support/SharedLibrary.h"

namespace {

using quiravent::desktop::DeviceError;
using quiravent::desktop::Refusal;
using quiravent::desktop::SharedLibrary;
namespace log = quiravent::desktop::log;

constexpr const char* kDeviceName = "libquiravent_desktop.so";
constexpr const char* kEnableDtvEvents = "_ZN16PlatformServices15EnableDTVEventsEv";

// The list gives parameters and arguments in parentheses of their own.
// NOLINTBEGIN(bugprone-macro-parentheses)

// Where each function goes: to a refusal until the device is there.
#define PL_FUNCTION(result, name, parameters, arguments) \
    result refuse_##name parameters {                    \
        constexpr Refusal<result> refusal;               \
        return refusal arguments;                        \
    }                                                    \
    result(*s_##name) parameters = &refuse_##name;
#include "porting/pl_functions.def"

void (*s_enableDtvEvents)() = [] {};

/// Calls a function with its arguments as they came: texts by value are moved, all else is a jump.
template <class Result, class... Parameters>
class Forward {
  public:
    explicit Forward(Result (*target)(Parameters...)) : m_target(target) {}

    template <class... Arguments>
    Result operator()(Arguments&... arguments) const {
        return m_target(std::forward<Parameters>(arguments)...);
    }

  private:
    Result (*m_target)(Parameters...);
};

std::string ownFolder() {
    Dl_info info{};
    static const char inThisLibrary = 0;
    if (dladdr(&inThisLibrary, &info) == 0 || info.dli_fname == nullptr) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

/// Empty when the device can't be opened, which is told.
std::optional<SharedLibrary> openDevice(const std::string& path) {
    try {
        return SharedLibrary(path);
    } catch (const DeviceError& error) {
        log::error("the device can't be opened: ", error.what(),
                   "; build it, or install what it needs (ldd ", path, " tells what is missing)");
        return std::nullopt;
    }
}

/// Whether the device has all functions.
bool isComplete(const SharedLibrary& device, const std::string& path) {
    constexpr const char* kNames[] = {
#define PL_FUNCTION(result, name, parameters, arguments) #name,
#include "porting/pl_functions.def"
        kEnableDtvEvents,
    };
    for (const char* name : kNames) {
        if (device.function<void()>(name) != nullptr) continue;
        log::error("the device lacks the function ", name, "; build ", path, " anew");
        return false;
    }
    return true;
}

template <class Function>
void direct(Function*& function, const SharedLibrary& device, const char* name) {
    function = device.function<Function>(name);
}

/// Opens the device, which then stays for the life of the process, and directs all functions to it.
bool connect() {
    const std::string path = ownFolder() + kDeviceName;
    const auto device = openDevice(path);
    if (!device || !isComplete(*device, path)) return false;
#define PL_FUNCTION(result, name, parameters, arguments) direct(s_##name, *device, #name);
#include "porting/pl_functions.def"
    direct(s_enableDtvEvents, *device, kEnableDtvEvents);
    return true;
}

[[maybe_unused]] const bool s_connected = connect();

}  // namespace

#define PL_FUNCTION(result, name, parameters, arguments) \
    result name parameters { return Forward{s_##name} arguments; }
#include "porting/pl_functions.def"

// NOLINTEND(bugprone-macro-parentheses)

void pl_EnableDTVEvents() { s_enableDtvEvents(); }
