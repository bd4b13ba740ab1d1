// The porting layer that the module is linked to: it opens the device, libquiravent_desktop.so
// beside it, and hands every call on.
//
// The device is a library of its own since script runtimes export their copies of OpenSSL, zlib
// and others, and a device that is loaded plainly would run with those instead of with the ones it
// was built for. Deep binding prevents that, and it has to be asked for when a library is opened.

#include <dlfcn.h>

#include <string>
#include <utility>

#include "porting/pl_events.h"
#include "porting/pl_functions.h"
#include "support/Log.h"
#include "support/Refusal.h"

namespace {

using quiravent::desktop::Refusal;
namespace log = quiravent::desktop::log;

// Sanitizers watch a process only when they take the place of its memory functions, which deep
// binding forbids.
#ifdef QUIRAVENT_PLAIN_BINDING
constexpr int kBinding = 0;
#else
constexpr int kBinding = RTLD_DEEPBIND;
#endif

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

void* openDevice(const std::string& path) {
    void* const device = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | kBinding);
    if (device == nullptr) {
        log::error("the device can't be opened: ", dlerror(),
                   "; build it, or install what it needs (ldd ", path, " tells what is missing)");
    }
    return device;
}

/// Whether the device has all functions.
bool isComplete(void* device, const std::string& path) {
    constexpr const char* kNames[] = {
#define PL_FUNCTION(result, name, parameters, arguments) #name,
#include "porting/pl_functions.def"
        kEnableDtvEvents,
    };
    for (const char* name : kNames) {
        if (dlsym(device, name) != nullptr) continue;
        log::error("the device lacks the function ", name, "; build ", path, " anew");
        return false;
    }
    return true;
}

template <class Function>
void direct(Function& function, void* device, const char* name) {
    function = reinterpret_cast<Function>(dlsym(device, name));
}

/// Opens the device, which then stays for the life of the process, and directs all functions to it.
bool connect() {
    const std::string path = ownFolder() + kDeviceName;
    void* const device = openDevice(path);
    if (device == nullptr || !isComplete(device, path)) return false;
#define PL_FUNCTION(result, name, parameters, arguments) direct(s_##name, device, #name);
#include "porting/pl_functions.def"
    direct(s_enableDtvEvents, device, kEnableDtvEvents);
    return true;
}

[[maybe_unused]] const bool s_connected = connect();

}  // namespace

#define PL_FUNCTION(result, name, parameters, arguments) \
    result name parameters { return Forward{s_##name} arguments; }
#include "porting/pl_functions.def"

// NOLINTEND(bugprone-macro-parentheses)

void pl_EnableDTVEvents() { s_enableDtvEvents(); }
