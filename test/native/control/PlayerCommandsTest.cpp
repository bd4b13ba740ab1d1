// What the channel tells of players, and does to them.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "control/Station.h"

namespace quiravent::desktop {
namespace {

using nlohmann::json;

const std::string kFilm = TEST_MEDIA "/film.mp4";

class Players : public testing::Test {
  protected:
    explicit Players(const std::string& faults = "") : m_station(faults) {}

    /// The answer to a request with these members.
    json ask(const json& members) { return json::parse(m_client.ask(members.dump())); }

    json firstPlayer() { return ask({{"command", "players"}}).at("players").at(0); }

    json waitFor(const std::string& state, int position = 0) {
        return ask({{"command", "waitPlayer"},
                    {"state", state},
                    {"position", position},
                    {"timeout", 15000}});
    }

    uint32_t newPlayer() { return service().createUrlPlayer(kFilm, {16, 9, 320, 180}); }
    PlayerService& service() { return m_station.players(); }

    e_pl_status start(uint32_t handle) {
        return service().withUrlPlayer(handle, [](Player& player) { return player.start(); });
    }
    e_pl_status resume(uint32_t handle) {
        return service().withUrlPlayer(handle, [](Player& player) { return player.resume(); });
    }

  private:
    Station m_station;
    Client m_client = m_station.client();
};

TEST_F(Players, AreToldWithAllThatATestAsksFor) {
    EXPECT_EQ(ask({{"command", "players"}}), json::parse(R"({"ok":true,"players":[]})"));
    const uint32_t handle = newPlayer();
    EXPECT_EQ(firstPlayer(), json::parse(R"({"player":1,"kind":"url","url":")" + kFilm + R"(",
        "state":"idle","time":{"begin":0,"now":0,"end":0},"picture":null,"speed":1.0,"volume":100,
        "bounds":{"x":16,"y":9,"w":320,"h":180},"buffered":[],
        "tracks":{"video":[],"audio":[],"subtitle":[]}})"));
    service().withUrlPlayer(handle, [](Player& player) {
        player.setVolume(40);
        return player.fetch();
    });
    EXPECT_EQ(waitFor("fetched").at("ok"), true);
    start(handle);
    service().withUrlPlayer(handle,
                            [](Player& player) { return player.selectTrack(TrackKind::audio, 2); });
    const json playing = waitFor("playing", 400).at("player");
    EXPECT_GE(playing.at("picture"), 400);
    EXPECT_EQ(playing.at("time").at("end"), 6000);
    EXPECT_EQ(playing.at("volume"), 40);
    EXPECT_EQ(playing.at("buffered"), json::parse(R"([{"begin":0,"end":6000}])"));
    EXPECT_EQ(playing.at("tracks"), json::parse(R"({
        "video":[{"id":0,"language":"und","selected":true}],
        "audio":[{"id":1,"language":"eng","selected":false},
                 {"id":2,"language":"fra","selected":true}],
        "subtitle":[{"id":3,"language":"deu","selected":false}]})"));
    service().unloadUrlPlayer(handle);
    EXPECT_EQ(ask({{"command", "players"}}).at("players").size(), 0U);
}

TEST_F(Players, TheSecondOneIsWaitedForByItsNumber) {
    newPlayer();
    const uint32_t second = newPlayer();
    start(second);
    const json answer = ask({{"command", "waitPlayer"}, {"player", 2}, {"state", "playing"}});
    EXPECT_EQ(answer.at("player").at("player"), 2);
    const json late =
        ask({{"command", "waitPlayer"}, {"player", 1}, {"state", "playing"}, {"timeout", 1}});
    const std::string error = late.at("error");
    EXPECT_EQ(
        error.rfind("player 1 isn't playing at 0 ms or later after 1 ms; player 1 is idle", 0), 0U)
        << error;
}

TEST_F(Players, WhatFailsIsToldWithItsReason) {
    const uint32_t handle = service().createUrlPlayer("/nowhere.mp4", {0, 0, 0, 0});
    start(handle);
    const json failed = waitFor("failed").at("player");
    EXPECT_EQ(failed.at("error"), 2);
    EXPECT_EQ(failed.at("reason"), "not found");
}

TEST_F(Players, AreSuspendedAndAborted) {
    const uint32_t handle = newPlayer();
    start(handle);
    EXPECT_EQ(waitFor("playing").at("ok"), true);
    const json suspend{{"command", "haltPlayer"}, {"player", 1}, {"how", "suspend"}};
    EXPECT_EQ(ask(suspend).at("ok"), true);
    EXPECT_EQ(firstPlayer().at("state"), "suspended");
    EXPECT_EQ(ask(suspend).at("ok"), false) << "it doesn't play";
    EXPECT_EQ(resume(handle), e_pl_status_ok);
    EXPECT_EQ(waitFor("playing").at("ok"), true);
    EXPECT_EQ(ask({{"command", "haltPlayer"}, {"player", 1}, {"how", "abort"}}).at("ok"), true);
    EXPECT_EQ(firstPlayer().at("state"), "aborted");
    EXPECT_EQ(resume(handle), e_pl_status_wrong_state);
}

TEST_F(Players, NoneOfThemPlaysWhileTheOutputIsTaken) {
    const uint32_t first = newPlayer();
    const uint32_t second = newPlayer();
    start(first);
    EXPECT_EQ(waitFor("playing").at("ok"), true);
    auto claim = service().takeOutput();
    auto other = service().takeOutput();
    EXPECT_EQ(firstPlayer().at("state"), "suspended");
    claim.reset();
    EXPECT_EQ(start(second), e_pl_status_ok);
    EXPECT_EQ(resume(first), e_pl_status_unavailable);
    const json players = ask({{"command", "players"}}).at("players");
    EXPECT_EQ(players.at(0).at("state"), "suspended");
    EXPECT_EQ(players.at(1).at("state"), "suspended");
    other.reset();
    EXPECT_EQ(firstPlayer().at("state"), "suspended") << "until the application resumes it";
    EXPECT_EQ(resume(first), e_pl_status_ok);
    EXPECT_EQ(waitFor("playing").at("player").at("player"), 1);
}

class FaultyPlayers : public Players {
  protected:
    FaultyPlayers() : Players("stalled 0-1000 off; slow 2-10.5 50000") {}
};

TEST_F(FaultyPlayers, FaultsAreListedAndSwitched) {
    const std::string slow =
        R"({"fault":2,"kind":"slow","from":2.0,"to":10.5,"bytesPerSecond":50000,"on":true})";
    const auto expected = [&](const std::string& isStalled) {
        return json::parse(
            R"({"ok":true,"faults":[{"fault":1,"kind":"stalled","from":0.0,"to":1000.0,"on":)" +
            isStalled + "}," + slow + "]}");
    };
    EXPECT_EQ(ask({{"command", "faults"}}), expected("false"));
    EXPECT_EQ(ask({{"command", "faults"}, {"fault", 1}, {"on", true}}), expected("true"));
    start(newPlayer());
    EXPECT_EQ(waitFor("buffering").at("ok"), true);
    EXPECT_EQ(ask({{"command", "faults"}, {"fault", 1}, {"on", false}}), expected("false"));
    EXPECT_EQ(waitFor("playing").at("ok"), true);
    EXPECT_EQ(ask({{"command", "faults"}, {"fault", 3}, {"on", true}}).at("error"),
              "there is no fault 3; media.faults has 2, counted from 1");
}

}  // namespace
}  // namespace quiravent::desktop
