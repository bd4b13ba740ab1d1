// The library that the module is linked to, as the loader finds it: opened by path.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "common/ChildProcess.h"
#include "common/TemporaryFolder.h"
#include "common/callWith.h"
#include "porting/pl_functions.h"

namespace {

const std::filesystem::path kLibrary = QUIRAVENT_PORTING_LAYER;
constexpr const char* kEnableEvents = "_ZN16PlatformServices15EnableDTVEventsEv";

void* open(const std::filesystem::path& library) {
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    EXPECT_NE(handle, nullptr) << dlerror();
    return handle;
}

template <class Function>
Function* function(void* library, const char* name) {
    auto* const symbol = reinterpret_cast<Function*>(dlsym(library, name));
    EXPECT_NE(symbol, nullptr) << name;
    return symbol;
}

#define PL_CALL(library, name) function<decltype(name)>(library, #name)

void expectRefusal(int32_t status, const char* name) {
    EXPECT_EQ(status, e_pl_status_unavailable) << name;
}
void expectRefusal(e_pl_ad_media_error status, const char* name) {
    EXPECT_EQ(status, e_pl_ad_media_error_not_supported) << name;
}

/// Calls all functions; without a device each of them refuses.
void expectRefusals(void* library) {
#define PL_FUNCTION(result, name, parameters, arguments) \
    expectRefusal(callWith(1, PL_CALL(library, name)), #name);
#include "porting/pl_functions.def"
    function<void()>(library, kEnableEvents)();
}

TEST(PortingLayer, WithoutADeviceSaysSoOnceAndRefusesEverything) {
    const TemporaryFolder folder;
    const std::string copy = folder / "libquiravent_porting_layer.so";
    std::filesystem::copy(kLibrary, copy);
    const auto outcome = runInChild({}, [&] {
        void* const library = open(copy);
        expectRefusals(library);
        // Outputs are set to zero.
        uint8_t on = 7;
        PL_CALL(library, pl_platform_GetLiveDTVStatus)(&on);
        EXPECT_EQ(on, 0);
        s_pl_platform_properties properties{7, nullptr, nullptr};
        PL_CALL(library, pl_platform_InitProperties)(&properties);
        EXPECT_EQ(properties.count, 0U);
    });
    EXPECT_EQ(outcome.status, 0);
    const std::string device = folder / "libquiravent_desktop.so";
    EXPECT_EQ(outcome.errors,
              "quiravent: error: the device can't be opened: " + device +
                  ": cannot open shared object file: No such file or directory; build it, or "
                  "install what it needs (ldd " +
                  device + " tells what is missing)\n");
}

TEST(PortingLayer, DeviceOfAnotherVersionIsNotUsedInPart) {
    const TemporaryFolder folder;
    std::filesystem::copy(kLibrary, folder / "libquiravent_porting_layer.so");
    std::filesystem::copy(QUIRAVENT_OTHER_LIBRARY, folder / "libquiravent_desktop.so");
    const auto outcome =
        runInChild({}, [&] { expectRefusals(open(folder / "libquiravent_porting_layer.so")); });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors,
              "quiravent: error: the device lacks the function pl_gfx_CreateCanvas; build " +
                  (folder / "libquiravent_desktop.so") + " anew\n");
}

}  // namespace
