#include "support/SharedLibrary.h"

#include <dlfcn.h>

#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

// Sanitizers watch a process only when they take the place of its memory functions, which deep
// binding forbids.
#ifdef QUIRAVENT_PLAIN_BINDING
constexpr int kBinding = 0;
#else
constexpr int kBinding = RTLD_DEEPBIND;
#endif

}  // namespace

SharedLibrary::SharedLibrary(const std::string& name)
    : m_name(name),
      m_handle(dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE | kBinding)) {
    if (m_handle == nullptr) throw DeviceError(e_pl_status_unavailable, dlerror());
}

SharedLibrary SharedLibrary::loaded(const std::string& name) {
    return {name, dlopen(name.c_str(), RTLD_NOW | RTLD_NOLOAD)};
}

void* SharedLibrary::symbol(const char* name) const {
    return isOpen() ? dlsym(m_handle, name) : nullptr;
}

void* SharedLibrary::requiredSymbol(const char* name) const {
    void* const found = symbol(name);
    if (found == nullptr)
        throw DeviceError(e_pl_status_unavailable, joined(m_name, " has no ", name));
    return found;
}

}  // namespace quiravent::desktop
