#include "Device.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "config/readConfiguration.h"
#include "display/drivers.h"
#include "graphics/text/TextShaper.h"
#include "input/KeyMap.h"
#include "input/Keys.h"
#include "platform/EndSignals.h"
#include "support/DeviceError.h"
#include "support/Log.h"

namespace quiravent::desktop {

namespace {

/// Status by which the launcher is asked to start the application again.
constexpr int kRestartStatus = 83;

const char* processEnvironment(const char* name) { return std::getenv(name); }

std::function<std::string()> storageFolder(const std::string& configured) {
    if (!configured.empty()) return [configured] { return configured; };
    return [] { return defaultStorageFolder(processEnvironment); };
}

bool isUnderLauncher() {
    const char* const mark = processEnvironment("QUIRAVENT_LAUNCHER");
    return mark != nullptr && std::string(mark) == "1";
}

/// Does one thing of those that are due at the end; what goes wrong with it is told, and the others
/// are done all the same.
template <class Body>
void attempt(Body body) noexcept {
    try {
        body();
    } catch (const std::exception& error) {
        log::error("the device's end: ", error.what());
    }
}

/// What a display tells of its viewer, as keys of the remote control.
DisplayInput inputFor(RemoteControl& remote, KeyMap keys, std::function<void()> terminate) {
    const auto tell = [&remote](int32_t code, bool isDown) {
        if (isDown) {
            remote.keyDown(code);
        } else {
            remote.keyUp(code);
        }
    };
    DisplayInput input;
    input.key = [tell, keys = std::move(keys)](const char* name, bool isDown) {
        const auto code = keys.codeOf(name);
        if (code) tell(*code, isDown);
        return code.has_value();
    };
    input.exitKey = [tell](bool isDown) { tell(static_cast<int32_t>(RemoteKey::kExit), isDown); };
    input.terminate = std::move(terminate);
    return input;
}

}  // namespace

Device::Device(const Configuration& configuration)
    : m_platform(configuration.platform.properties),
      m_screen(createDisplayDriver(configuration.screen.driver,
                                   inputFor(m_remote, KeyMap(configuration.input.keyMap),
                                            [this] { stopApplication(); })),
               CapturePattern(configuration.screen.capture)),
      m_drawing(configuration, m_screen),
      m_tuner(configuration.television),
      m_players(configuration, m_screen),
      m_liveTelevision(configuration.television, m_players, m_screen, m_tuner,
                       m_platform.runtimeState()),
      m_persistence(storageFolder(configuration.storage.folder), configuration.storage.durability) {
    m_platform.runtimeState().setListener(
        [this](e_pl_platform_runtime_state state) { m_outputPolicy.setRuntimeState(state); });
    m_isComplete = true;
    if (!configuration.control.path.empty()) startControl(configuration.control.path);
}

void Device::switchLiveTelevision(bool on) {
    m_liveTelevision.switchTo(on);
    m_outputPolicy.setLiveTelevision(on);
}

void Device::stopApplication() {
    if (m_isComplete) m_players.abortAll();
    ::kill(::getpid(), SIGTERM);
}

void Device::startControl(const std::string& path) {
    try {
        m_control = std::make_unique<ControlServer>(
            path, ControlTarget{m_remote, m_platform.runtimeState(), m_screen, m_players,
                                m_livePlayers, m_tuner, [this] { stopApplication(); }});
        m_screen.setFrameListener(m_control->waker());
    } catch (const DeviceError& error) {
        // The application is what the device is for, and runs without.
        log::error(error.what());
    }
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
        // A thread may be drawing while the process exits: what it shapes texts with is to go after
        // the device.
        TextShaper::prepare();
        std::atexit([] {
            // A child that was forked and not replaced has no part in what its parent began.
            if (::getpid() == process) device->finish();
        });
        finishOnEndSignals([] { device->finish(); });
        return device;
    } catch (const std::exception& error) {
        log::error(error.what());
        return nullptr;
    }
}

void Device::leave() noexcept {
    finish();
    m_standardStreams.restore();
    ::_exit(EXIT_SUCCESS);
}

void Device::restart() noexcept {
    finish();
    m_standardStreams.restore();
    if (isUnderLauncher()) ::_exit(kRestartStatus);
    attempt([&] { m_processStart.repeat(); });
    ::_exit(EXIT_FAILURE);
}

void Device::finish() noexcept {
    std::call_once(m_finished, [&] { finishInTurn(); });
}

void Device::finishInTurn() noexcept {
    attempt([&] {
        if (m_control) m_control->stop();
    });
    attempt([&] { m_remote.stop(); });
    attempt([&] { m_platform.stop(); });
    attempt([&] { m_screen.finish(); });
    attempt([&] { m_drawing.finish(); });
    attempt([&] { m_liveTelevision.finish(); });
    attempt([&] { m_livePlayers.finish(); });
    attempt([&] { m_players.finish(); });
    attempt([&] { m_tuner.stop(); });
    attempt([&] { m_persistence.close(); });
}

}  // namespace quiravent::desktop
