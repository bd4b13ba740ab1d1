#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "Recorder.h"

/// Over a recorder that has heard nothing and answers as it does by itself.
class RecorderTest : public testing::Test {
  protected:
    RecorderTest() {
        m_recorder.resetAnswers();
        m_recorder.clear();
    }

    static quiravent::recorder::Behaviour answering(int32_t status,
                                                    quiravent::recorder::Record outputs = {}) {
        quiravent::recorder::Behaviour behaviour;
        behaviour.status = status;
        behaviour.outputs = std::move(outputs);
        return behaviour;
    }

    std::vector<quiravent::recorder::Call> calls() const { return m_recorder.callsFrom(0); }

    quiravent::recorder::Recorder& m_recorder = quiravent::recorder::Recorder::instance();
};
