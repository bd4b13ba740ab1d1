// What the channel tells of the tuner, and does to its signal.

#include <gtest/gtest.h>

#include <string>

#include "control/Station.h"

namespace quiravent::desktop {
namespace {

using TunerCommands = ChannelTest;

TEST_F(TunerCommands, TellTheTunerWithServicesAndSignal) {
    const std::string multiplex = TEST_MULTIPLEXES "/mux.ts";
    const auto waitFor = [&](const char* state) {
        return ask("waitTuner", {{"state", state}, {"timeout", 15000}});
    };
    Tuner& tuner = m_station.tuner();
    tuner.select(multiplex, "program=2", [](e_pl_dtv_error) {});
    json told = waitFor("locked").at("tuner");
    EXPECT_EQ(told.at("selector"), multiplex);
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
    ask("signal", {{"lost", true}});
    EXPECT_EQ(waitFor("failed").at("tuner").at("reason"), "no signal");
    ask("signal", {{"lost", false}});
    EXPECT_EQ(waitFor("locked").at("ok"), true);
    tuner.select(multiplex, "program=5", [](e_pl_dtv_error) {});
    told = waitFor("failed").at("tuner");
    EXPECT_EQ(told.at("error"), 8);
    EXPECT_EQ(told.at("reason"), "service not found");
    tuner.unselect();
    EXPECT_EQ(waitFor("idle").at("ok"), true);
}

}  // namespace
}  // namespace quiravent::desktop
