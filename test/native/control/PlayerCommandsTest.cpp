// What the channel tells of players, and does to them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "control/Station.h"

namespace quiravent::desktop {
namespace {

const std::string kFilm = TEST_MEDIA "/film.mp4";

class Players : public ChannelTest {
  protected:
    json waitFor(const std::string& state, int position = 0) {
        return ask("waitPlayer", {{"state", state}, {"position", position}, {"timeout", 15000}});
    }
    /// Of all players.
    std::vector<std::string> states() {
        std::vector<std::string> all;
        const json answer = ask("players");
        for (const json& player : answer.at("players")) all.push_back(player.at("state"));
        return all;
    }

    uint32_t newPlayer(const std::string& url = kFilm) {
        return m_players.createUrlPlayer(url, {16, 9, 320, 180});
    }
    e_pl_status start(uint32_t handle) {
        return m_players.withUrlPlayer(handle, [](Player& player) { return player.start(); });
    }
    e_pl_status resume(uint32_t handle) {
        return m_players.withUrlPlayer(handle, [](Player& player) { return player.resume(); });
    }

    using Strings = std::vector<std::string>;
    PlayerService& m_players = m_station.players();
};

TEST_F(Players, AreToldWithAllThatATestAsksFor) {
    EXPECT_EQ(states(), Strings{});
    const uint32_t handle = newPlayer();
    EXPECT_EQ(ask("players").at("players").at(0), json::parse(R"({"player":1,"kind":"url",
        "url":")" + kFilm + R"(",
        "state":"idle","time":{"begin":0,"now":0,"end":0},"picture":null,"speed":1.0,"volume":100,
        "bounds":{"x":16,"y":9,"w":320,"h":180},"buffered":[],
        "tracks":{"video":[],"audio":[],"subtitle":[]}})"));
    m_players.withUrlPlayer(handle, [](Player& player) {
        player.setVolume(40);
        return player.fetch();
    });
    EXPECT_EQ(waitFor("fetched").at("ok"), true);
    m_players.withUrlPlayer(handle, [](Player& player) {
        player.start();
        return player.selectTrack(TrackKind::audio, 2);
    });
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
    start(newPlayer("/nowhere.mp4"));
    const json failed = waitFor("failed").at("player");
    EXPECT_EQ(failed.at("player"), 2);
    EXPECT_EQ(failed.at("error"), 2);
    EXPECT_EQ(failed.at("reason"), "not found");
    const std::string error =
        ask("waitPlayer", {{"player", 1}, {"state", "failed"}, {"timeout", 1}}).at("error");
    EXPECT_EQ(error.rfind("player 1 isn't failed at 0 ms or later after 1 ms; player 1 is ", 0), 0U)
        << error;
    m_players.unloadUrlPlayer(handle);
    EXPECT_EQ(states(), Strings{"failed"});
}

TEST_F(Players, AreHaltedByRequestsAndByWhatTakesTheirOutput) {
    const uint32_t handle = newPlayer();
    const auto isHalted = [&](const char* how) {
        return ask("haltPlayer", {{"player", 1}, {"how", how}}).at("ok") == true;
    };
    start(handle);
    EXPECT_EQ(waitFor("playing").at("ok"), true);
    EXPECT_TRUE(isHalted("suspend"));
    EXPECT_EQ(states(), Strings{"suspended"});
    EXPECT_FALSE(isHalted("suspend")) << "it doesn't play";
    EXPECT_EQ(resume(handle), e_pl_status_ok);
    auto claim = m_players.takeOutput();
    auto other = m_players.takeOutput();
    EXPECT_EQ(states(), Strings{"suspended"});
    claim.reset();
    EXPECT_EQ(start(newPlayer()), e_pl_status_ok);
    EXPECT_EQ(resume(handle), e_pl_status_unavailable);
    EXPECT_EQ(states(), (Strings{"suspended", "suspended"}));
    other.reset();
    EXPECT_EQ(states().at(0), "suspended") << "until the application resumes it";
    EXPECT_EQ(resume(handle), e_pl_status_ok);
    EXPECT_EQ(waitFor("playing").at("player").at("player"), 1);
    EXPECT_TRUE(isHalted("abort"));
    EXPECT_EQ(states().at(0), "aborted");
    EXPECT_EQ(resume(handle), e_pl_status_wrong_state);
}

}  // namespace
}  // namespace quiravent::desktop
