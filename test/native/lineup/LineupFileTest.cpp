#include <gtest/gtest.h>

#include <regex>

#include "lineup/TestLineup.h"
#include "lineup/description/lineupFields.h"

namespace quiravent::desktop::lineup {
namespace {

using test::lineupOf;
using test::refusalOf;

struct BadText {
    const char* json;
    const char* message;  ///< a pattern of the whole message
};

std::string event(const std::string& more) {
    return R"({"services":[{"name":"A","present":{"name":"E","duration":60,)" + more + "}}]}";
}

std::string captions(const std::string& texts) {
    return R"({"services":[{"name":"A","captions":{"texts":[)" + texts + "]}}]}";
}

void expectRefusal(const std::string& json, const std::string& pattern) {
    const std::string message = refusalOf(json);
    EXPECT_TRUE(std::regex_match(message, std::regex("lineup\\.json: " + pattern))) << message;
}

TEST(LineupFile, IsRefusedInOneLineThatNamesTheValue) {
    const std::vector<BadText> cases{
        {"", "not valid JSON: .*"},
        {"{", "not valid JSON: .*"},
        {"[]", R"(the file is \[\]; allowed: an object with \$schema, .*)"},
        {"{}", "services is missing; allowed: a list of 1 to 32 objects"},
        {R"({"services":[]})", R"(services is \[\]; allowed: a list of 1 to 32 objects)"},
        {R"({"services":[7]})", R"(services\[0\] is 7; allowed: an object with id, .*)"},
        {R"({"services":[{}]})", R"(services\[0\]\.name is missing; allowed: a text .*)"},
        {R"({"services":[{"name":""}]})", R"re(services\[0\]\.name is ""; allowed: a text .*)re"},
        {R"({"services":[{"name":"a\u0007"}]})", R"(services\[0\]\.name is .*)"},
        {R"({"services":[{"name":"A"}],"service":1})",
         "unknown key service with the value 1; allowed: .*services"},
        {R"({"services":[{"name":"A","name":"B"}]})", R"(key "name" stands twice .*)"},
        {R"({"services":[{"name":"A","id":0}]})", R"(services\[0\]\.id is 0; allowed: .* 65535)"},
        {R"({"services":[{"name":"A","id":5},{"name":"B","id":5}]})",
         R"(services\[1\]\.id is 5; allowed: an identifier that no other service has)"},
        {R"({"services":[{"name":"A","mapPid":31}]})", R"(services\[0\]\.mapPid is 31; .*)"},
        {R"({"services":[{"name":"A","mapPid":300,"video":{"pid":300}}]})",
         R"(services\[0\]\.video\.pid is 300; .*own; services\[0\]\.mapPid has this one)"},
        {R"({"services":[{"name":"A","pcrPid":300},{"name":"B","pcrPid":300}]})",
         R"(services\[1\]\.pcrPid is 300; .*)"},
        {R"({"services":[{"name":"A","video":{"codec":"vp9"}}]})",
         R"re(services\[0\]\.video\.codec is "vp9"; allowed: "h264", "mpeg2")re"},
        {R"({"services":[{"name":"A","video":{"width":641}}]})",
         R"(services\[0\]\.video\.width is 641; allowed: an even number)"},
        {R"({"services":[{"name":"A","video":{"frameRate":26}}]})",
         R"(services\[0\]\.video\.frameRate is 26; allowed: 23\.976, .*)"},
        {R"({"services":[{"name":"A","video":{"colour":"red"}}]})",
         R"re(services\[0\]\.video\.colour is "red"; allowed: a colour as "#1060A0")re"},
        {R"({"services":[{"name":"A","video":null,"audio":[]}]})",
         R"(services\[0\]\.video is missing; allowed: a video, or .*)"},
        {R"({"services":[{"name":"A","video":{"copy":true}}]})",
         R"(services\[0\]\.video\.copy is true; allowed: false, since .* no "media")"},
        {R"({"services":[{"name":"A","audio":[{"tone":5}]}]})",
         R"(services\[0\]\.audio\[0\]\.tone is 5; allowed: a number from 20 to 20000)"},
        {R"({"services":[{"name":"A","audio":[{"language":"pt"}]}]})",
         R"(services\[0\]\.audio\[0\]\.language is "pt"; .*)"},
        {R"({"services":[{"name":"A","media":"none.mp4"}]})",
         R"(services\[0\]\.media is ".*"; allowed: a file with .*here, .*)"},
        {R"({"services":[{"name":"A","following":{"name":"E","duration":60,)"
         R"("start":"2026-01-01T00:00:00Z"}}]})",
         R"(services\[0\]\.present is missing; .*)"},
        {R"({"services":[{"name":"A"}],"duration":0.5})", R"(duration is 0\.5; allowed: .*)"},
        {R"({"services":[{"name":"A"}],"duration":1,"bitRate":200000})",
         R"(bitRate is 200000; allowed: at least \d+, which the services need)"},
        {R"({"services":[{"name":"A"}],"standard":"atsc"})",
         R"re(standard is "atsc"; allowed: "dvb", "isdb")re"},
        {R"({"services":[{"name":"Ж"}],"standard":"isdb"})", R"(services\[0\]\.name is "Ж"; .*)"},
        {R"({"services":[{"name":"A","audio":[{"codec":"mp2","bitRate":100000}]}]})",
         R"(services\[0\]\.audio\[0\]\.bitRate is 100000; allowed: with "mp2", \[64000,.*)"},
        {R"({"services":[{"name":"A"}],"duration":300,"bitRate":80000000})",
         R"(duration is 300\.0; allowed: .* at most 1 GiB)"},
    };
    for (const BadText& one : cases) expectRefusal(one.json, one.message);
    EXPECT_NE(refusalOf(R"({"services":[{"name":"A"}],"font":"none.ttf"})").find("none.ttf"),
              std::string::npos);
}

TEST(LineupFile, RefusesDatesThatDoNotExist) {
    for (const char* const date :
         {"2026-02-29T00:00:00Z", "2026-13-01T00:00:00Z", "2026-01-01T24:00:00Z", "2026-01-01",
          "2026-01-01T00:00:00", "2038-01-01T00:00:00Z", "2026-01-01T00:00:00+15:00"}) {
        expectRefusal(event(std::string(R"("start":")") + date + '"'),
                      R"(services\[0\]\.present\.start is .*; allowed: a date as .*)");
    }
}

TEST(LineupFile, RefusesCaptionsThatCannotBeSentOrSeen) {
    const std::vector<BadText> cases{
        {R"({"from":2,"to":2,"text":"a"})", R"(services\[0\]\.captions\.texts\[0\]\.to is 2.*)"},
        {R"({"from":2,"to":99,"text":"a"})", R"(.*\.to is 99.*the end of the loop at .*)"},
        {R"({"from":2,"to":4,"text":"a"},{"from":3,"to":5,"text":"b"})",
         R"(.*texts\[1\]\.from is 3.*)"},
        {R"({"from":0.1,"to":4,"text":"a"})",
         R"(.*texts\[0\]\.from is 0\.1; allowed: at least 0\.\d seconds after .*CEA-608 sends.*)"},
        {R"({"from":4,"to":5,"text":"Ж"})", R"(.*texts\[0\]\.text is "Ж"; .* of CEA-608)"},
        {R"({"from":4,"to":5,"text":"123456789012345678901234567890123"})",
         R"(.*text is .*; allowed: at most 4 lines of 32 characters)"},
        {R"({"from":4,"to":5,"text":"1\n2\n3\n4\n5"})", R"(.*at most 4 lines.*)"},
    };
    for (const BadText& one : cases) expectRefusal(captions(one.json), one.message);
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
        const Lineup lineup = lineupOf(event(std::string(R"("start":")") + date + '"'));
        EXPECT_EQ(lineup.services[0].present->start, 1795302000) << date;
    }
}

/// Every value of the schema, by its path.
void collect(const nlohmann::ordered_json& schema,
             std::vector<const nlohmann::ordered_json*>& all) {
    if (schema.contains("items")) collect(schema["items"], all);
    if (!schema.contains("properties")) return;
    for (const auto& [key, value] : schema["properties"].items()) {
        all.push_back(&value);
        collect(value, all);
    }
}

TEST(LineupFile, HasASchemaThatDescribesEveryValue) {
    const nlohmann::ordered_json schema = lineupSchema();
    std::vector<const nlohmann::ordered_json*> values;
    collect(schema, values);
    EXPECT_GT(values.size(), 50U);
    for (const nlohmann::ordered_json* const value : values) {
        EXPECT_FALSE(value->at("description").get<std::string>().empty());
        EXPECT_TRUE(value->contains("type") || value->contains("enum")) << *value;
    }
    EXPECT_EQ(schema["properties"]["services"]["items"]["required"],
              nlohmann::ordered_json({"name"}));
}

}  // namespace
}  // namespace quiravent::desktop::lineup
