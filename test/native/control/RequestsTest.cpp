// What the channel does with lines, whatever they hold.

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "common/pairsIn.h"
#include "control/Station.h"

namespace quiravent::desktop {
namespace {

constexpr size_t kMaxLine = LineBuffer::kMaxLine;

std::string nested(size_t depth) {
    return R"({"command":"frame","id":)" + std::string(depth, '[') + std::string(depth, ']') + '}';
}

TEST(Requests, AreAnsweredWhateverTheyHoldAndTheChannelLivesOn) {
    // Each with the beginning of its answer; here what a file of texts can't hold.
    auto cases = test::pairsIn(TEST_DATA "/requests.txt");
    const std::string noJson = R"({"ok":false,"error":"the request is no JSON on one line: parse )";
    const std::string tooDeep =
        R"({"ok":false,"error":"the request is nested too deeply; allowed: 32 levels"})";
    const std::string tooLong =
        R"({"ok":false,"error":"the line is too long; allowed: 65536 bytes"})";
    cases.emplace_back("", noJson);
    cases.emplace_back("{\"command\":\"fr\xff\"}", noJson);
    cases.emplace_back(std::string("{\"command\":\0}", 13), noJson);
    cases.emplace_back(nested(32), R"({"id":[[)");
    cases.emplace_back(nested(33), tooDeep);
    cases.emplace_back(nested(30000), tooDeep);
    cases.emplace_back(R"({"command":"frame"})" + std::string(kMaxLine - 19, ' '), R"({"ok":true)");
    cases.emplace_back(std::string(kMaxLine + 1, ' '), tooLong);
    cases.emplace_back(std::string(kMaxLine * 5, '{'), tooLong);
    Station station("stalled 0-1000 off; slow 2-10.5 50000",
                    "lost 1000-2000 off; errors 5-8 1e-5; seed 3");
    Client client = station.client();
    for (const auto& [line, expected] : cases) {
        const std::string answer = client.ask(line);
        EXPECT_EQ(answer.substr(0, expected.size()), expected) << line.substr(0, 80);
        EXPECT_EQ(client.ask(R"({"command":"frame"})"), R"({"ok":true,"frame":0})");
    }
}

TEST(Requests, AreAnsweredInOrderHoweverTheyArrive) {
    Station station;
    Client client = station.client();
    std::string requests;
    for (int id = 0; id < 200; ++id) {
        const char* const waiting = R"(,"command":"press","key":13,"hold":1})";
        const char* const request = id % 20 == 0 ? waiting : R"(,"command":"frame"})";
        requests += R"({"id":)" + std::to_string(id) + request + '\n';
    }
    const size_t cut = requests.size() / 2 + 5;
    client.send(requests.substr(0, cut));
    EXPECT_EQ(client.line(), R"({"id":0,"ok":true,"code":13})");
    client.send(requests.substr(cut));
    for (int id = 1; id < 200; ++id)
        EXPECT_EQ(client.line().find(R"({"id":)" + std::to_string(id) + R"(,"ok":true)"), 0U) << id;
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
    station.flush();
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
