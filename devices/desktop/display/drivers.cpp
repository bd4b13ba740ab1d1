#include "display/drivers.h"

#include "display/headless/HeadlessDisplay.h"
#include "display/window/WindowDisplay.h"
#include "support/DeviceError.h"
#include "support/Log.h"
#include "support/Text.h"

namespace quiravent::desktop {

namespace {

struct DriverEntry {
    const char* name;
    /// Whether it should work here.
    bool (*isOffered)();
    /// Throws DeviceError where the driver doesn't work.
    std::unique_ptr<DisplayDriver> (*create)(const DisplayInput& input);
};

const DriverEntry kDrivers[] = {
    {WindowDisplay::kName, WindowDisplay::isOffered,
     [](const DisplayInput& input) -> std::unique_ptr<DisplayDriver> {
         return std::make_unique<WindowDisplay>(input);
     }},
    {HeadlessDisplay::kName, [] { return true; },
     [](const DisplayInput&) -> std::unique_ptr<DisplayDriver> {
         return std::make_unique<HeadlessDisplay>();
     }},
};

std::unique_ptr<DisplayDriver> createFirstThatWorks(const DisplayInput& input) {
    for (const DriverEntry& driver : kDrivers) {
        if (!driver.isOffered()) continue;
        try {
            return driver.create(input);
        } catch (const DeviceError& error) {
            log::warning("the screen can't be shown by the driver \"", driver.name,
                         "\", another one is taken: ", error.what());
        }
    }
    throw DeviceError(e_pl_status_unavailable, "no display driver works here");
}

}  // namespace

std::vector<std::string> displayDriverNames() {
    std::vector<std::string> names;
    for (const DriverEntry& driver : kDrivers) names.emplace_back(driver.name);
    return names;
}

std::unique_ptr<DisplayDriver> createDisplayDriver(const std::string& name,
                                                   const DisplayInput& input) {
    if (name == kAutomaticDriver) return createFirstThatWorks(input);
    for (const DriverEntry& driver : kDrivers) {
        if (name != driver.name) continue;
        try {
            return driver.create(input);
        } catch (const DeviceError& error) {
            throw DeviceError(error.status(), joined("the screen can't be shown by the driver \"",
                                                     name, "\": ", error.what()));
        }
    }
    throw DeviceError(e_pl_status_unavailable, joined("there is no display driver \"", name, '"'));
}

}  // namespace quiravent::desktop
