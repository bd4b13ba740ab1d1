// What the channel does with lines, whatever they hold.

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "control/Station.h"
#include "input/Keys.h"

namespace quiravent::desktop {
namespace {

constexpr size_t kMaxLine = LineBuffer::kMaxLine;
const std::string kKeyRule = R"(the name of a remote key, as \"ArrowLeft\", \"VK_LEFT\" or )"
                             R"(\"KEY_LEFT\" (docs/keys.md has all), or a key's code"})";

std::string nested(size_t depth) {
    return R"({"command":"frame","id":)" + std::string(depth, '[') + std::string(depth, ']') + '}';
}

TEST(Requests, MalformedOnesAreAnsweredAndTheChannelLivesOn) {
    const struct {
        std::string line;
        std::string answer;  ///< its beginning
    } cases[] = {
        {"", R"({"ok":false,"error":"the request is no JSON on one line: parse error)"},
        {"frame", R"({"ok":false,"error":"the request is no JSON on one line: parse error)"},
        {R"({"command":"frame"} {})", R"({"ok":false,"error":"the request is no JSON)"},
        {"{\"command\":\"fr\xff\"}", R"({"ok":false,"error":"the request is no JSON)"},
        {std::string("{\"command\":\0}", 13), R"({"ok":false,"error":"the request is no JSON)"},
        {R"({"id":1e999,"command":"frame"})", R"({"ok":false,"error":"the request is no JSON)"},
        {"[1]", R"({"ok":false,"error":"the request is [1]; allowed: an object with a command"})"},
        {"{}", R"({"ok":false,"error":"command is missing; allowed: press, keyDown, keyUp, )"},
        {R"({"id":7,"command":"frames"})",
         R"({"id":7,"ok":false,"error":"command is \"frames\"; allowed: press, keyDown, )"},
        {R"({"id":[{}],"command":5})", R"({"id":[{}],"ok":false,"error":"command is 5; allowed: )"},
        {R"({"id":null,"command":"frame","after":1})",
         R"({"id":null,"ok":false,"error":"unknown parameter \"after\" of frame; allowed: none"})"},
        {R"({"command":"press"})", R"({"ok":false,"error":"key is missing; allowed: )" + kKeyRule},
        {R"({"command":"press","key":"Entr"})",
         R"({"ok":false,"error":"key is \"Entr\"; allowed: )" + kKeyRule},
        {R"({"command":"keyDown","key":null})",
         R"({"ok":false,"error":"key is null; allowed: )" + kKeyRule},
        {R"({"command":"press","key":13,"hold":-1})",
         R"({"ok":false,"error":"hold is -1; allowed: a whole number from 0 to 60000"})"},
        {R"({"command":"press","key":13,"hold":60001})",
         R"({"ok":false,"error":"hold is 60001; allowed: a whole number from 0 to 60000"})"},
        {R"({"command":"press","key":13,"holt":5})",
         R"({"ok":false,"error":"unknown parameter \"holt\" of press; allowed: key, hold"})"},
        {R"({"command":"state","state":"Running"})",
         R"({"ok":false,"error":"state is \"Running\"; allowed: paused, running, low_profile, )"},
        {R"({"command":"capture","file":""})",
         R"({"ok":false,"error":"file is \"\"; allowed: a text that isn't empty and has no NUL"})"},
        {R"({"command":"capture","file":"/no/such/folder/screen.png"})",
         R"({"ok":false,"error":"the screen can't be written to /no/such/folder/screen.png: )"},
        {R"({"command":"waitFlush","timeout":1.5})",
         R"({"ok":false,"error":"timeout is 1.5; allowed: a whole number from 0 to 600000"})"},
        {R"({"command":"waitFlush","timeout":1})",
         R"({"ok":false,"error":"no frame after 0 was shown within 1 ms"})"},
        {R"({"command":"message","name":"n","value":"a\nb"})",
         R"({"ok":false,"error":"value is of several lines or holds NUL; allowed: )"},
        {R"({"command":"message","name":"n","value":"v"})", R"({"ok":false,"error":"the pipe )"},
        {R"({"command":"waitPlayer","state":"plays"})",
         R"({"ok":false,"error":"state is \"plays\"; allowed: idle, fetching, fetched, )"},
        {R"({"command":"waitPlayer","state":"playing","position":1000,"timeout":1})",
         R"({"ok":false,"error":"no player playing at 1000 ms or later after 1 ms; there is none"})"},
        {R"({"command":"haltPlayer","player":1,"how":"stop"})",
         R"({"ok":false,"error":"how is \"stop\"; allowed: suspend, abort"})"},
        {R"({"command":"haltPlayer","player":7,"how":"abort"})",
         R"({"ok":false,"error":"player 7 can't be halted so: there is none"})"},
        {R"({"command":"faults","fault":1})",
         R"({"ok":false,"error":"on is missing; allowed: true, false"})"},
        {R"({"command":"faults","fault":1,"on":"yes"})",
         R"({"ok":false,"error":"on is \"yes\"; allowed: true, false"})"},
        {R"({"command":"faults","fault":0,"on":true})",
         R"({"ok":false,"error":"there is no fault 0; media.faults has 0, counted from 1"})"},
        {nested(32), R"({"id":[[)"},
        {nested(33), R"({"ok":false,"error":"the request is nested too deeply; allowed: 32 )"},
        {nested(30000), R"({"ok":false,"error":"the request is nested too deeply; allowed: 32 )"},
        {std::string(kMaxLine + 1, ' '),
         R"({"ok":false,"error":"the line is too long; allowed: 65536 bytes"})"},
        {std::string(kMaxLine * 5, '{'),
         R"({"ok":false,"error":"the line is too long; allowed: 65536 bytes"})"},
    };
    Station station;
    Client client = station.client();
    for (const auto& each : cases) {
        const std::string answer = client.ask(each.line);
        EXPECT_EQ(answer.substr(0, each.answer.size()), each.answer) << each.line.substr(0, 80);
        EXPECT_EQ(client.ask(R"({"command":"frame"})"), R"({"ok":true,"frame":0})");
    }
}

TEST(Requests, LongestLineIsARequest) {
    const std::string request = R"({"command":"frame"})";
    Station station;
    EXPECT_EQ(station.client().ask(request + std::string(kMaxLine - request.size(), ' ')),
              R"({"ok":true,"frame":0})");
}

TEST(Requests, AreAnsweredInOrderHoweverTheyArrive) {
    Station station;
    Client client = station.client();
    std::string requests;
    for (int id = 0; id < 200; ++id) {
        const bool waits = id % 20 == 0;
        requests +=
            R"({"id":)" + std::to_string(id) +
            (waits ? R"(,"command":"press","key":13,"hold":1})" : R"(,"command":"frame"})") + '\n';
    }
    const size_t cut = requests.size() / 2 + 5;
    client.send(requests.substr(0, cut));
    EXPECT_EQ(client.line(), R"({"id":0,"ok":true,"code":13})");
    client.send(requests.substr(cut));
    for (int id = 1; id < 200; ++id) {
        EXPECT_EQ(client.line().substr(0, 10),
                  (R"({"id":)" + std::to_string(id) + ",\"ok").substr(0, 10));
    }
}

TEST(Requests, LastLineNeedsNoEndAndIsAnsweredAfterIt) {
    Station station;
    Client client = station.client();
    client.send("{\"command\":\"frame\"}\n{\"command\":\"press\",\"key\":13,\"hold\":20}");
    client.finish();
    EXPECT_EQ(client.line(), R"({"ok":true,"frame":0})");
    EXPECT_EQ(client.line(), R"({"ok":true,"code":13})");
    EXPECT_EQ(client.line(), "") << "the connection is closed";
}

TEST(Requests, ClientThatWaitsHoldsUpNobody) {
    Station station;
    Client waiting = station.client();
    waiting.send("{\"command\":\"waitFlush\"}\n");
    // More than the server lets in at a time: the others come in turn.
    for (int count = 0; count < 100; ++count) {
        EXPECT_EQ(station.client().ask(R"({"command":"frame"})"), R"({"ok":true,"frame":0})");
    }
    // Read by the server when it answered the others, or before.
    station.flush(0);
    EXPECT_EQ(waiting.line(), R"({"ok":true,"frame":1})");
}

TEST(Requests, ClientThatTakesNoAnswersIsNotReadForEver) {
    Station station;
    const Client client = station.client();
    std::thread sender([&] {
        // Ends when the server, which stops to read, is gone.
        while (client.send("{\"command\":\"keys\"}\n")) {
        }
    });
    for (int count = 0; count < 50; ++count) {
        EXPECT_EQ(station.client().ask(R"({"command":"frame"})"), R"({"ok":true,"frame":0})");
    }
    station.server().stop();
    sender.join();
}

}  // namespace
}  // namespace quiravent::desktop
