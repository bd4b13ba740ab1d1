#pragma once

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "common/TemporaryFolder.h"
#include "control/ControlServer.h"
#include "display/headless/HeadlessDisplay.h"

namespace quiravent::desktop {

/// A client of the control channel.
class Client {
  public:
    explicit Client(const std::string& path)
        : m_socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        const auto* const general = reinterpret_cast<const sockaddr*>(&address);
        if (::connect(m_socket.number(), general, sizeof address) != 0) {
            throw std::runtime_error("can't connect to " + path);
        }
    }

    /// False when the other side has closed.
    bool send(const std::string& bytes) const {
        size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t count =
                ::send(m_socket.number(), bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
            if (count <= 0) return false;
            done += static_cast<size_t>(count);
        }
        return true;
    }

    /// Says that nothing follows.
    void finish() const { ::shutdown(m_socket.number(), SHUT_WR); }

    /// The next line without its end; empty when the other side has closed.
    std::string line() {
        size_t length = 0;
        while ((length = m_input.find('\n')) == std::string::npos) {
            char bytes[4096];
            const ssize_t count = ::recv(m_socket.number(), bytes, sizeof bytes, 0);
            if (count <= 0) return {};
            m_input.append(bytes, static_cast<size_t>(count));
        }
        std::string text = m_input.substr(0, length);
        m_input.erase(0, length + 1);
        return text;
    }

    std::string ask(const std::string& request) {
        send(request + '\n');
        return line();
    }

  private:
    FileDescriptor m_socket;
    std::string m_input;
};

/// A device with a screen that is looked at by nobody, and its control channel.
class Station {
  public:
    explicit Station(const std::string& faults = "", const std::string& signalFaults = "")
        : m_configuration(withFaults(faults, signalFaults)) {}

    Client client() const { return Client(socketPath()); }
    std::string operator/(const std::string& name) const { return m_folder / name; }
    std::string socketPath() const { return m_folder / "control"; }

    /// Shows a frame.
    void flush() {
        constexpr Box kAll{0, 0, Screen::kWidth, Screen::kHeight};
        m_screen.present(
            *m_pool.create(Screen::kWidth, Screen::kHeight, SurfacePool::Fill::transparent), kAll);
    }

    RemoteControl& remote() { return m_remote; }
    PlayerService& players() { return m_players; }
    Tuner& tuner() { return m_tuner; }
    ControlServer& server() { return m_server; }

  private:
    static Configuration withFaults(const std::string& faults, const std::string& signalFaults) {
        Configuration configuration;
        configuration.media.faults = faults;
        configuration.television.faults = signalFaults;
        return configuration;
    }

    TemporaryFolder m_folder;
    const Configuration m_configuration;
    SurfacePool m_pool{size_t{4} * Screen::kWidth * Screen::kHeight * 2};
    EventThread m_events{"events"};
    RemoteControl m_remote;
    RuntimeState m_state{m_events};
    Screen m_screen{std::make_unique<HeadlessDisplay>(), CapturePattern("")};
    Tuner m_tuner{m_configuration.television};
    PlayerService m_players{m_configuration, m_screen};
    LivePlayers m_livePlayers{m_players, m_screen, m_tuner.multiplex()};
    ControlServer m_server{
        m_folder / "control",
        {m_remote, m_state, m_screen, m_players, m_livePlayers, m_tuner, [] {}, m_folder / "pipe"}};
    const bool m_listening = [this] {
        m_screen.setFrameListener(m_server.waker());
        return true;
    }();
};

/// Requests of a client to a station, and their answers.
class ChannelTest : public testing::Test {
  protected:
    using json = nlohmann::json;

    json ask(const std::string& command, json members = json::object()) {
        members["command"] = command;
        return json::parse(m_client.ask(members.dump()));
    }

    Station m_station;
    Client m_client = m_station.client();
};

}  // namespace quiravent::desktop
