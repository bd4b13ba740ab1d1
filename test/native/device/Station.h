#pragma once

#include <functional>
#include <map>
#include <string>

#include "common/ChildProcess.h"
#include "common/TemporaryFolder.h"

/// Runs bodies over the C interface of the device, each in a process of its own, with its files in
/// a folder that goes with the station.
class Station {
  public:
    std::string operator/(const std::string& name) const { return m_folder / name; }

    void setVariable(const std::string& name, const std::string& value) {
        m_variables[name] = value;
    }

    ChildOutcome run(const std::function<void()>& body) const {
        auto variables = m_variables;
        variables["QUIRAVENT_STORAGE"] = m_folder / "store";
        variables.emplace("QUIRAVENT_AUDIO", "null");
        return runInChild(variables, body);
    }

    /// Runs a body in which every expectation has to hold and nothing is told.
    void expectQuiet(const std::function<void()>& body) const {
        const ChildOutcome outcome = run(body);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
    }

  private:
    TemporaryFolder m_folder;
    std::map<std::string, std::string> m_variables;
};

/// The same in a station of which nothing else is wanted.
inline void expectQuiet(const std::function<void()>& body) { Station().expectQuiet(body); }
