#include <gtest/gtest.h>

#include <regex>

#include "common/pairsIn.h"
#include "lineup/TestLineup.h"

namespace quiravent::desktop::lineup {
namespace {

using test::lineupOf;
using test::refusalOf;

TEST(LineupFile, IsRefusedInOneLineThatNamesTheValue) {
    // Each with a pattern of the whole message.
    auto cases = test::pairsIn(TEST_DATA "/refusals.txt");
    cases.emplace_back("", "not valid JSON: .*");
    for (const auto& [text, pattern] : cases) {
        const std::string message = refusalOf(text);
        EXPECT_TRUE(std::regex_match(message, std::regex("lineup\\.json: " + pattern))) << message;
    }
    EXPECT_NE(refusalOf(R"({"services":[{"name":"A"}],"font":"none.ttf"})").find("none.ttf"),
              std::string::npos);
}

TEST(LineupFile, LeavesOpenWhatIsThenGiven) {
    const Lineup lineup = lineupOf(R"({"originalNetworkId":9,"services":[
        {"name":"A","id":2}, {"name":"B","video":{"pid":256}}, {"name":"C","video":null}]})");
    ASSERT_EQ(lineup.services.size(), 3U);
    EXPECT_EQ(lineup.networkId, 9);
    EXPECT_EQ(lineup.services[0].id, 2);
    EXPECT_EQ(lineup.services[1].id, 1);
    EXPECT_EQ(lineup.services[2].id, 3);
    EXPECT_EQ(lineup.services[0].mapPid, 257) << "the second service's video has the first choice";
    EXPECT_EQ(lineup.services[0].pcrPid, lineup.services[0].video->pid);
    EXPECT_EQ(lineup.services[2].pcrPid, lineup.services[2].audio[0].pid);
    EXPECT_NE(lineup.services[0].video->colour, lineup.services[1].video->colour);
    EXPECT_NE(lineup.services[0].audio[0].tone, lineup.services[1].audio[0].tone);
}

TEST(LineupFile, ReadsDatesOfAnyZone) {
    for (const char* const date :
         {"2026-11-21T20:00:00-03:00", "2026-11-21T23:00:00Z", "2026-11-22T04:30:00+05:30"}) {
        const Lineup lineup = lineupOf(
            std::string(
                R"({"services":[{"name":"A","present":{"name":"E","duration":60,"start":")") +
            date + "\"}}]}");
        EXPECT_EQ(lineup.services[0].present->start, 1795302000) << date;
    }
}

}  // namespace
}  // namespace quiravent::desktop::lineup
