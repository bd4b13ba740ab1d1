#include "control/commands.h"

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>

#include "control/playerCommands.h"
#include "control/tunerCommands.h"
#include "display/png.h"
#include "input/Keys.h"
#include "support/Clock.h"
#include "support/DeviceError.h"
#include "support/Lasting.h"
#include "support/Text.h"
#include "support/writeFile.h"

namespace quiravent::desktop {

namespace {

constexpr uint64_t kMaxHold = 60000;     // ms
constexpr int64_t kMicroseconds = 1000;  // of a millisecond

/// Work that is done when a function has been called, from any thread.
class Waiting {
  public:
    Waiting(const ControlSession& session, OrderedJson result)
        : m_done(std::make_shared<std::atomic<bool>>(false)),
          m_wakeServer(session.wakeServer),
          m_result(std::move(result)) {}

    std::function<void()> done() const {
        return [flag = m_done, wakeServer = m_wakeServer] {
            *flag = true;
            wakeServer->wake();
        };
    }

    Progress operator()(int64_t) const { return *m_done ? Progress{m_result} : Progress{}; }

  private:
    std::shared_ptr<std::atomic<bool>> m_done;
    std::shared_ptr<const WakeSignal> m_wakeServer;
    OrderedJson m_result;
};

Work press(const Request& request, ControlSession& session) {
    const int32_t code = request.key("key");
    const std::chrono::milliseconds hold(request.number("hold", kMaxHold, 60));
    const Waiting waiting(session, {{"code", code}});
    session.target.remote.press(code, hold, waiting.done());
    return waiting;
}

Work keyDown(const Request& request, ControlSession& session) {
    const int32_t code = request.key("key");
    const Waiting waiting(session, {{"code", code}});
    session.keysDown.insert(code);
    session.target.remote.keyDown(code, waiting.done());
    return waiting;
}

Work keyUp(const Request& request, ControlSession& session) {
    const int32_t code = request.key("key");
    const Waiting waiting(session, {{"code", code}});
    session.keysDown.erase(code);
    session.target.remote.keyUp(code, waiting.done());
    return waiting;
}

Work state(const Request& request, ControlSession& session) {
    RuntimeState& state = session.target.runtimeState;
    if (request.has("state")) {
        const size_t number = request.choice("state", RuntimeState::names());
        state.set(static_cast<e_pl_platform_runtime_state>(number));
    }
    return finished({{"state", RuntimeState::names().at(state.get())}});
}

Work capture(const Request& request, ControlSession& session) {
    const Screen& screen = session.target.screen;
    const auto file = std::filesystem::absolute(request.text("file")).string();
    const uint64_t frame = screen.frameCount();
    const auto picture = screen.compose();
    try {
        writeFile(file, encodePng(*picture));
    } catch (const DeviceError& error) {
        throw DeviceError(error.status(),
                          joined("the screen can't be written to ", file, ": ", error.what()));
    }
    return finished({{"file", file},
                     {"frame", frame},
                     {"width", picture->width()},
                     {"height", picture->height()}});
}

Work waitFlush(const Request& request, ControlSession& session) {
    const Screen& screen = session.target.screen;
    const uint64_t after = request.number("after", INT64_MAX, screen.frameCount());
    const uint64_t timeout = request.number("timeout", kMaxTimeout, 5000);
    const int64_t deadline = clock::now() + static_cast<int64_t>(timeout) * kMicroseconds;
    return [&screen, after, timeout, deadline](int64_t now) -> Progress {
        // Frames are shown one by one, so the first one after is the next.
        if (screen.frameCount() > after) return {OrderedJson{{"frame", after + 1}}};
        if (now < deadline) return {std::nullopt, deadline};
        throw DeviceError(e_pl_status_unavailable,
                          joined("no frame after ", after, " was shown within ", timeout, " ms"));
    };
}

Work frame(const Request&, ControlSession& session) {
    return finished({{"frame", session.target.screen.frameCount()}});
}

/// Writes a message when the one before has been taken, and waits until it has been, too: messages
/// that meet in the pipe would be one.
Work message(const Request& request, ControlSession& session) {
    constexpr int64_t kInterval = 2 * kMicroseconds;
    constexpr int64_t kPatience = 2000 * kMicroseconds;
    const std::string bytes =
        ServiceSelectorPipe::message(request.text("name"), request.text("value"));
    const auto pipe = std::make_shared<const ServiceSelectorPipe>(session.target.pipe);
    const int64_t deadline = clock::now() + kPatience;
    return [=, isWritten = false](int64_t now) mutable -> Progress {
        if (!isWritten && pipe->isEmpty()) {
            pipe->write(bytes);
            isWritten = true;
        }
        if (isWritten && pipe->isEmpty()) return {OrderedJson::object()};
        if (now < deadline) return {std::nullopt, now + kInterval};
        throw DeviceError(e_pl_status_unavailable, "the application doesn't take its messages");
    };
}

Work keys(const Request&, ControlSession&) {
    auto list = OrderedJson::array();
    for (const RemoteKeyNames& key : remoteKeys()) {
        list.push_back({{"name", key.name}, {"code", key.code}, {"aliases", key.aliases}});
    }
    return finished({{"keys", list}});
}

Work info(const Request&, ControlSession& session) {
    return finished({{"name", "quiravent"},
                     {"version", QUIRAVENT_VERSION},
                     {"pid", ::getpid()},
                     {"display", session.target.screen.driverName()},
                     {"width", Screen::kWidth},
                     {"height", Screen::kHeight}});
}

Work quit(const Request&, ControlSession& session) {
    session.endsProcess = true;
    return finished(OrderedJson::object());
}

struct Command {
    std::string name;
    std::vector<std::string> parameters;
    Work (*start)(const Request&, ControlSession&);
};

const std::vector<Command>& commands() {
    static const Lasting<std::vector<Command>> table({
        {"press", {"key", "hold"}, press},
        {"keyDown", {"key"}, keyDown},
        {"keyUp", {"key"}, keyUp},
        {"state", {"state"}, state},
        {"capture", {"file"}, capture},
        {"waitFlush", {"after", "timeout"}, waitFlush},
        {"frame", {}, frame},
        {"message", {"name", "value"}, message},
        {"players", {}, players},
        {"waitPlayer", {"player", "state", "position", "timeout"}, waitPlayer},
        {"haltPlayer", {"player", "how"}, haltPlayer},
        {"captions", {"text", "timeout"}, captions},
        {"faults", {"fault", "on"}, faults},
        {"tuner", {}, tuner},
        {"waitTuner", {"state", "timeout"}, waitTuner},
        {"signal", {"lost", "errorRate", "delay", "seed", "fault", "on"}, signalTroubles},
        {"keys", {}, keys},
        {"info", {}, info},
        {"quit", {}, quit},
    });
    return *table;
}

std::vector<std::string> commandNames() {
    std::vector<std::string> names;
    for (const Command& command : commands()) names.push_back(command.name);
    return names;
}

}  // namespace

Work startCommand(const Request& request, ControlSession& session) {
    const Command& command = commands().at(request.choice("command", commandNames()));
    request.expectOnly(command.parameters);
    return command.start(request, session);
}

}  // namespace quiravent::desktop
