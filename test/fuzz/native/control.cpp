// Requests of the control channel, over a connection as the server has it.

#include <sys/socket.h>

#include <algorithm>
#include <memory>

#include "Input.h"
#include "config/Configuration.h"
#include "control/Connection.h"
#include "control/Request.h"
#include "display/headless/HeadlessDisplay.h"
#include "support/Clock.h"

namespace quiravent::desktop {
namespace {

/// A device with nobody around; a new one for each input, so that each is a story of its own.
struct Station {
    EventThread events{"events"};
    RemoteControl remote;
    RuntimeState state{events};
    Screen screen{std::make_unique<HeadlessDisplay>(), CapturePattern("")};
    Configuration configuration;
    Tuner tuner{configuration.television};
    PlayerService players{configuration, screen};
    LivePlayers livePlayers{players, screen, tuner.multiplex()};
    ControlTarget target{remote,      state, screen, players,
                         livePlayers, tuner, [] {},  "/nonexistent/pipe"};
    std::shared_ptr<const WakeSignal> wake = std::make_shared<WakeSignal>();
};

/// Whether a line asks for a picture, which would be written wherever the line says.
bool writesFiles(const std::string& line) {
    try {
        const OrderedJson request = Request::parse(line);
        return request.value("command", OrderedJson()) == "capture";
    } catch (const std::exception&) {
        return false;
    }
}

/// What is sent: at most a socket's worth, without lines that write files.
std::string harmless(const std::string& bytes) {
    constexpr size_t kMost = 100000;
    std::string result;
    for (size_t start = 0; start < bytes.size() && result.size() < kMost;) {
        const size_t end = std::min(bytes.find('\n', start), bytes.size());
        const std::string line = bytes.substr(start, end - start);
        if (!writesFiles(line)) result += line + '\n';
        start = end + 1;
    }
    return result.substr(0, kMost);
}

/// Serves what has been sent until nothing more comes of it by itself.
void serve(Connection& connection, int client) {
    char answers[65536];
    for (int round = 0; round < 50 && !connection.isOver(); ++round) {
        connection.serve(POLLIN, clock::now());
        (void)::recv(client, answers, sizeof answers, MSG_DONTWAIT);
    }
}

}  // namespace
}  // namespace quiravent::desktop

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quiravent::desktop;
    Station station;
    int sockets[2] = {-1, -1};
    quiravent::fuzz::expect(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) == 0);
    const FileDescriptor client(sockets[0]);
    Connection connection(FileDescriptor(sockets[1]), station.target, station.wake);
    const std::string bytes = harmless(quiravent::fuzz::textOf(data, size));
    (void)::send(client.number(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    ::shutdown(client.number(), SHUT_WR);
    serve(connection, client.number());
    return 0;
}
