#include "Device.h"

#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <string>

#include "config/readConfiguration.h"
#include "display/drivers.h"
#include "support/Log.h"

namespace quiravent::desktop {

namespace {

const char* processEnvironment(const char* name) { return std::getenv(name); }

std::function<std::string()> storageFolder(const std::string& configured) {
    if (!configured.empty()) return [configured] { return configured; };
    return [] { return defaultStorageFolder(processEnvironment); };
}

}  // namespace

Device::Device(const Configuration& configuration)
    : m_screen(createDisplayDriver(configuration.screen.driver),
               CapturePattern(configuration.screen.capture)),
      m_drawing(configuration, m_screen),
      m_persistence(storageFolder(configuration.storage.folder), configuration.storage.durability) {
}

Device* Device::running() noexcept {
    static Device* const device = start();
    return device;
}

Device* Device::start() noexcept {
    try {
        const Configuration configuration = readConfiguration(processEnvironment);
        log::setLevel(configuration.log.level);
        static Device* const device = std::make_unique<Device>(configuration).release();
        static const pid_t process = ::getpid();
        std::atexit([] {
            // A child that was forked and not replaced has no part in what its parent began.
            if (::getpid() == process) device->finish();
        });
        return device;
    } catch (const std::exception& error) {
        log::error(error.what());
        return nullptr;
    }
}

void Device::finish() noexcept {
    try {
        m_screen.finish();
        m_persistence.close();
    } catch (const std::exception& error) {
        log::error("the device's end: ", error.what());
    }
}

}  // namespace quiravent::desktop
