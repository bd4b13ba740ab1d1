// What each command does.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "common/PngFile.h"
#include "control/Station.h"
#include "input/Keys.h"

namespace quiravent::desktop {
namespace {

std::mutex s_mutex;
std::string s_told;

void note(char sign, pl_input_keycode code) {
    const std::lock_guard<std::mutex> lock(s_mutex);
    s_told += sign + std::to_string(code);
}

std::string told() {
    const std::lock_guard<std::mutex> lock(s_mutex);
    return s_told;
}

void listenToKeys(RemoteControl& remote) {
    s_told.clear();
    remote.setPressCallback([](pl_input_keycode code) { note('+', code); });
    remote.setReleaseCallback([](pl_input_keycode code) { note('-', code); });
}

TEST(Commands, PressIsAnsweredWhenItsReleaseHasBeenTold) {
    Station station;
    listenToKeys(station.remote());
    Client client = station.client();
    const struct {
        const char* key;
        const char* code;
        const char* events;
    } cases[] = {
        {R"("ArrowLeft")", "37", "+37-37"},
        {R"("vk_red","hold":0)", "403", "+403-403"},
        {R"("KEY_OK")", "13", "+13-13"},
        {R"("5","hold":1)", "53", "+53-53"},
        {"5", "5", "+5-5"},
        {R"("Enter","hold":650)", "13", "+13+13+13-13"},
    };
    for (const auto& each : cases) {
        s_told.clear();
        EXPECT_EQ(client.ask(std::string(R"({"command":"press","key":)") + each.key + '}'),
                  std::string(R"({"ok":true,"code":)") + each.code + '}');
        EXPECT_EQ(told(), each.events);
    }
}

TEST(Commands, KeysGoDownAndUpAndDontStayDownBehindAClient) {
    Station station;
    listenToKeys(station.remote());
    Client other = station.client();
    {
        Client client = station.client();
        EXPECT_EQ(client.ask(R"({"command":"keyDown","key":"Info"})"), R"({"ok":true,"code":457})");
        EXPECT_EQ(told(), "+457");
        EXPECT_EQ(other.ask(R"({"command":"keyUp","key":457})"), R"({"ok":true,"code":457})");
        EXPECT_EQ(told(), "+457-457");
        client.ask(R"({"command":"keyDown","key":"Guide"})");
    }
    while (told().find("-458") == std::string::npos) {
        EXPECT_EQ(other.ask(R"({"command":"frame"})"), R"({"ok":true,"frame":0})");
    }
}

TEST(Commands, StateIsToldAndSet) {
    Station station;
    Client client = station.client();
    EXPECT_EQ(client.ask(R"({"command":"state"})"), R"({"ok":true,"state":"running"})");
    EXPECT_EQ(client.ask(R"({"command":"state","state":"overlay"})"),
              R"({"ok":true,"state":"overlay"})");
    EXPECT_EQ(station.state().get(), e_pl_platform_runtime_state_overlay);
}

TEST(Commands, WaitFlushIsAnsweredByTheFirstFrameAfter) {
    Station station;
    Client client = station.client();
    station.flush(0);
    station.flush(0);
    EXPECT_EQ(client.ask(R"({"command":"waitFlush","after":0})"), R"({"ok":true,"frame":1})");
    EXPECT_EQ(client.ask(R"({"command":"frame"})"), R"({"ok":true,"frame":2})");
    client.send("{\"command\":\"waitFlush\",\"after\":4,\"timeout\":600000}\n");
    for (int count = 0; count < 3; ++count) station.flush(0);
    EXPECT_EQ(client.line(), R"({"ok":true,"frame":5})");
}

TEST(Commands, CaptureWritesTheScreenAsItIs) {
    Station station;
    station.flush(0xff336699);
    const std::string file = station / "screen.png";
    EXPECT_EQ(station.client().ask(R"({"command":"capture","file":")" + file + "\"}"),
              R"({"ok":true,"file":")" + file + R"(","frame":1,"width":1280,"height":720})");
    const PngFile picture(file);
    EXPECT_EQ(picture.width(), 1280U);
    EXPECT_EQ(picture.height(), 720U);
    EXPECT_EQ(picture.rgba(640, 360), 0x336699ffU);
}

TEST(Commands, MessagesDontMeetInThePipe) {
    Station station;
    const std::string pipe = station / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const FileDescriptor reader(open(pipe.c_str(), O_RDWR | O_CLOEXEC));
    Client client = station.client();
    Client other = station.client();
    client.send(R"({"command":"message","name":"volume","value":"low"})"
                "\n");
    other.send(R"({"command":"message","name":"volume","value":"low"})"
               "\n");
    for (int count = 0; count < 2; ++count) {
        char bytes[100];
        const ssize_t length = read(reader.number(), bytes, sizeof bytes);
        EXPECT_EQ(std::string(bytes, static_cast<size_t>(length)), "volume\nlow\n");
    }
    EXPECT_EQ(client.line(), R"({"ok":true})");
    EXPECT_EQ(other.line(), R"({"ok":true})");
}

TEST(Commands, KeysAndInfoTellWhatThereIs) {
    Station station;
    Client client = station.client();
    const auto keys = nlohmann::json::parse(client.ask(R"({"command":"keys"})")).at("keys");
    EXPECT_EQ(keys.size(), remoteKeys().size());
    EXPECT_EQ(keys.at(1).dump(),
              R"({"aliases":["VK_LEFT","KEY_LEFT"],"code":37,"name":"ArrowLeft"})");
    EXPECT_EQ(client.ask(R"({"command":"info"})"),
              R"({"ok":true,"name":"quiravent","version":")" QUIRAVENT_VERSION R"(","pid":)" +
                  std::to_string(getpid()) + R"(,"display":"headless","width":1280,"height":720})");
}

TEST(Commands, QuitIsAnsweredBeforeTheProcessIsAskedToEnd) {
    Station station;
    Client client = station.client();
    auto end = station.processEnd();
    client.send(R"({"command":"waitFlush","timeout":1})"
                "\n"
                R"({"id":"q","command":"quit"})"
                "\n");
    client.line();
    EXPECT_EQ(client.line(), R"({"id":"q","ok":true})");
    end.wait();
}

}  // namespace
}  // namespace quiravent::desktop
