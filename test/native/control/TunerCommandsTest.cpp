// What the channel tells of the tuner, and does to its signal.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "control/Station.h"

namespace quiravent::desktop {
namespace {

using nlohmann::json;

const std::string kMultiplex = TEST_MULTIPLEXES "/mux.ts";

void ignore(e_pl_dtv_error) {}

class TunerCommands : public testing::Test {
  protected:
    json ask(const json& members) { return json::parse(m_client.ask(members.dump())); }
    json waitFor(const char* state) {
        return ask({{"command", "waitTuner"}, {"state", state}, {"timeout", 15000}});
    }
    Tuner& tuner() { return m_station.tuner(); }

  private:
    Station m_station{"", "lost 1000-2000 off; errors 5-8 1e-5; seed 3"};
    Client m_client = m_station.client();
};

TEST_F(TunerCommands, TellTheTunerWithServicesAndSignal) {
    EXPECT_EQ(ask({{"command", "tuner"}}), json::parse(R"({"ok":true,"tuner":{"state":"idle"}})"));
    tuner().select(kMultiplex, "program=2", ignore);
    json told = waitFor("locked").at("tuner");
    EXPECT_EQ(told.at("selector"), kMultiplex);
    EXPECT_EQ(told.at("option"), "program=2");
    EXPECT_EQ(told.at("transportStream"), 77);
    const json& service = told.at("services").at(1);
    EXPECT_EQ(service.at("number"), 2);
    EXPECT_EQ(service.at("name"), "Deux");
    EXPECT_EQ(service.at("pcrPid"), 512);
    EXPECT_EQ(service.at("streams").at(1),
              json::parse(R"({"pid":513,"type":3,"kind":"audio","codec":"MPEG audio",
                              "language":"fra"})"));
    EXPECT_GT(told.at("signal").at("packets"), 0);
    EXPECT_EQ(told.at("signal").at("continuityErrors"), 0);
    EXPECT_EQ(told.at("signal").at("pids").at(0).at("pid"), 0);
    tuner().select(kMultiplex, "program=5", ignore);
    told = waitFor("failed").at("tuner");
    EXPECT_EQ(told.at("error"), 8);
    EXPECT_EQ(told.at("reason"), "service not found");
    tuner().unselect();
    EXPECT_EQ(waitFor("idle").at("ok"), true);
    EXPECT_EQ(ask({{"command", "waitTuner"}, {"state", "locked"}, {"timeout", 1}}).at("error"),
              "the tuner isn't locked after 1 ms: it is idle");
}

TEST_F(TunerCommands, SteerTheSignal) {
    tuner().select(kMultiplex, "", ignore);
    EXPECT_EQ(waitFor("locked").at("ok"), true);
    const json troubles = ask({{"command", "signal"}, {"lost", true}, {"delay", 20}});
    EXPECT_EQ(troubles, json::parse(R"({"ok":true,"signal":{"lost":true,"errorRate":0.0,
        "delay":20,"seed":3,"faults":[
        {"fault":1,"kind":"lost","from":1000.0,"to":2000.0,"on":false},
        {"fault":2,"kind":"errors","from":5.0,"to":8.0,"errorRate":1e-05,"on":true}]}})"));
    EXPECT_EQ(waitFor("failed").at("tuner").at("reason"), "no signal");
    ask({{"command", "signal"}, {"lost", false}});
    EXPECT_EQ(waitFor("locked").at("ok"), true);
    const json changed =
        ask({{"command", "signal"}, {"errorRate", 0.25}, {"seed", 9}, {"fault", 1}, {"on", true}});
    EXPECT_EQ(changed.at("signal").at("errorRate"), 0.25);
    EXPECT_EQ(changed.at("signal").at("seed"), 9);
    EXPECT_EQ(changed.at("signal").at("faults").at(0).at("on"), true);
}

TEST_F(TunerCommands, RefuseWhatIsNoTrouble) {
    struct Case {
        const char* parameters;
        const char* error;
    };
    const Case cases[] = {
        {R"({"lost":1})", "lost is 1; allowed: true, false"},
        {R"({"lost":true,"errorRate":0.6})", "errorRate is 0.6; allowed: a number from 0.0 to 0.5"},
        {R"({"errorRate":"1"})", "errorRate is \"1\"; allowed: a number from 0.0 to 0.5"},
        {R"({"delay":-1})", "delay is -1; allowed: a whole number from 0 to 600000"},
        {R"({"fault":3,"on":true})",
         "there is no fault 3; television.faults has 2, counted from 1"},
        {R"({"fault":0,"on":true})",
         "there is no fault 0; television.faults has 2, counted from 1"},
        {R"({"fault":1})", "on is missing; allowed: true, false"},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.parameters);
        json request = json::parse(one.parameters);
        request["command"] = "signal";
        EXPECT_EQ(ask(request).at("error"), one.error);
    }
    EXPECT_EQ(ask({{"command", "signal"}}).at("signal").at("lost"), false)
        << "a request that is refused changes nothing";
}

}  // namespace
}  // namespace quiravent::desktop
