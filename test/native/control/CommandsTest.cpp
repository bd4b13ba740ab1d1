// What commands do over time; what they answer at once is in requests.txt.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "common/Watched.h"
#include "control/Station.h"

namespace quiravent::desktop {
namespace {

test::Watched<std::string> s_told;  ///< "+13" a press of key 13, "-13" its release

TEST(Commands, KeysAreAnsweredWhenTheyHaveBeenToldAndDontStayDownBehindAClient) {
    s_told.change([](std::string& told) { told.clear(); });
    Station station;
    station.remote().setPressCallback([](pl_input_keycode code) {
        s_told.change([=](std::string& told) { told += '+' + std::to_string(code); });
    });
    station.remote().setReleaseCallback([](pl_input_keycode code) {
        s_told.change([=](std::string& told) { told += '-' + std::to_string(code); });
    });
    Client other = station.client();
    {
        Client client = station.client();
        client.ask(R"({"command":"press","key":"Enter","hold":650})");
        EXPECT_EQ(s_told.get(), "+13+13+13-13");
        client.ask(R"({"command":"keyDown","key":"Info"})");
        EXPECT_EQ(s_told.get(), "+13+13+13-13+457");
        other.ask(R"({"command":"keyUp","key":457})");
        EXPECT_EQ(s_told.get(), "+13+13+13-13+457-457");
        client.ask(R"({"command":"keyDown","key":"Guide"})");
    }
    EXPECT_TRUE(s_told.waitUntil(
        [](const std::string& told) { return told == "+13+13+13-13+457-457+458-458"; }));
}

TEST(Commands, WaitFlushIsAnsweredByTheFirstFrameAfter) {
    Station station;
    Client client = station.client();
    station.flush();
    station.flush();
    EXPECT_EQ(client.ask(R"({"command":"waitFlush","after":0})"), R"({"ok":true,"frame":1})");
    EXPECT_EQ(client.ask(R"({"command":"frame"})"), R"({"ok":true,"frame":2})");
    client.send("{\"command\":\"waitFlush\",\"after\":4,\"timeout\":600000}\n");
    for (int count = 0; count < 3; ++count) station.flush();
    EXPECT_EQ(client.line(), R"({"ok":true,"frame":5})");
}

TEST(Commands, MessagesDontMeetInThePipe) {
    Station station;
    const std::string pipe = station / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const FileDescriptor reader(open(pipe.c_str(), O_RDWR | O_CLOEXEC));
    Client clients[] = {station.client(), station.client()};
    for (const Client& client : clients)
        client.send("{\"command\":\"message\",\"name\":\"volume\",\"value\":\"low\"}\n");
    for (int count = 0; count < 2; ++count) {
        char bytes[100];
        const ssize_t length = read(reader.number(), bytes, sizeof bytes);
        EXPECT_EQ(std::string(bytes, static_cast<size_t>(length)), "volume\nlow\n");
    }
    for (Client& client : clients) EXPECT_EQ(client.line(), R"({"ok":true})");
}

}  // namespace
}  // namespace quiravent::desktop
