// What the channel tells of the tuner, and does to its signal.

#include <gtest/gtest.h>

#include <string>

#include "control/Station.h"

namespace quiravent::desktop {
namespace {

const std::string kMultiplex = TEST_MULTIPLEXES "/mux.ts";

void ignore(e_pl_dtv_error) {}

class TunerCommands : public ChannelTest {
  protected:
    TunerCommands() : ChannelTest("", "lost 1000-2000 off; errors 5-8 1e-5; seed 3") {}

    json waitFor(const char* state) {
        return ask("waitTuner", {{"state", state}, {"timeout", 15000}});
    }
    Tuner& m_tuner = m_station.tuner();
};

TEST_F(TunerCommands, TellTheTunerWithServicesAndSignal) {
    m_tuner.select(kMultiplex, "program=2", ignore);
    json told = waitFor("locked").at("tuner");
    EXPECT_EQ(told.at("selector"), kMultiplex);
    EXPECT_EQ(told.at("option"), "program=2");
    EXPECT_EQ(told.at("transportStream"), 77);
    const json& service = told.at("services").at(1);
    EXPECT_EQ(service.at("streams").at(1), json::parse(R"({"pid":513,"type":3,"kind":"audio",
        "codec":"MPEG audio","language":"fra"})"));
    EXPECT_EQ(service.at("number"), 2);
    EXPECT_EQ(service.at("name"), "Deux");
    EXPECT_EQ(service.at("pcrPid"), 512);
    EXPECT_GT(told.at("signal").at("packets"), 0);
    EXPECT_EQ(told.at("signal").at("continuityErrors"), 0);
    EXPECT_EQ(told.at("signal").at("pids").at(0).at("pid"), 0);
    m_tuner.select(kMultiplex, "program=5", ignore);
    told = waitFor("failed").at("tuner");
    EXPECT_EQ(told.at("error"), 8);
    EXPECT_EQ(told.at("reason"), "service not found");
    m_tuner.unselect();
    EXPECT_EQ(waitFor("idle").at("ok"), true);
}

TEST_F(TunerCommands, SteerTheSignal) {
    m_tuner.select(kMultiplex, "", ignore);
    EXPECT_EQ(waitFor("locked").at("ok"), true);
    json expected = json::parse(R"({"ok":true,"signal":{"lost":true,"errorRate":0.0,
        "delay":20,"seed":3,"faults":[
        {"fault":1,"kind":"lost","from":1000.0,"to":2000.0,"on":false},
        {"fault":2,"kind":"errors","from":5.0,"to":8.0,"errorRate":1e-05,"on":true}]}})");
    EXPECT_EQ(ask("signal", {{"lost", true}, {"delay", 20}}), expected);
    EXPECT_EQ(waitFor("failed").at("tuner").at("reason"), "no signal");
    ask("signal", {{"lost", false}});
    EXPECT_EQ(waitFor("locked").at("ok"), true);
    expected["signal"].update({{"lost", false}, {"errorRate", 0.25}, {"seed", 9}});
    expected["signal"]["faults"][0]["on"] = true;
    EXPECT_EQ(ask("signal", {{"errorRate", 0.25}, {"seed", 9}, {"fault", 1}, {"on", true}}),
              expected);
}

}  // namespace
}  // namespace quiravent::desktop
