#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Event.h"
#include "Value.h"

namespace quiravent::recorder {

/// One call of the interface, as it was made.
struct Call {
    uint64_t seq;        ///< rises by 1 with every call of the process, from 1
    const char* fn;      ///< name of the function
    List args;           ///< one entry for each parameter, see Encode.h
    std::string thread;  ///< see threadKind
};

/// How a function shall answer a call.
struct Behaviour {
    std::optional<int32_t> status;  ///< unset: as the fake device has it
    Record outputs;                 ///< by the output's name; null leaves that output unwritten
    std::string gate;               ///< unless empty, the call waits until this gate is open
    std::chrono::milliseconds patience{10000};  ///< after which it goes on with the gate closed
    std::string opens;                          ///< unless empty, the gate that the call opens
    std::vector<Event> inside;                  ///< callbacks to call before the call returns
};

/// What the tests steer: the log of all calls, the answers prepared for them, and the gates at
/// which calls wait. All of it may be used by any thread.
class __attribute__((visibility("default"))) Recorder {
  public:
    /// The one recorder of the process; never destroyed, since device threads may outlive main.
    static Recorder& instance();

    /// The calls from that number on, oldest first.
    std::vector<Call> callsFrom(uint64_t seq) const;

    /// Forgets the calls made so far; numbering goes on.
    void clear();

    /// Answers the next call of fn for which nothing earlier is queued; then it is spent.
    void answerOnce(const std::string& fn, Behaviour behaviour);

    /// Answers every call of fn for which nothing is queued, instead of what was set before.
    void answerAlways(const std::string& fn, Behaviour behaviour);

    /// Forgets all prepared answers, and lets all go on that wait at gates.
    void resetAnswers();

    /// Opens a gate for good.
    void openGate(const std::string& gate);

    /// How many calls wait at a gate at this moment.
    uint32_t waitingAt(const std::string& gate) const;

    /// Writes the name of each call from now on to standard output at once, a line each, for tests
    /// that end their process.
    void echo();

    /// Who is told, on any thread, that a call was logged, began to wait or that a burst of events
    /// is over; none when empty. When this returns, no call of the former one is under way.
    void setChangeListener(std::function<void()> listener);
    void notifyChange();

    /// What every function of the interface begins with: logs the call, takes the answer prepared
    /// for it, and waits at its gate.
    Behaviour enter(const char* fn, List args);

  private:
    struct Answers {
        std::deque<Behaviour> once;
        Behaviour always;
    };

    Behaviour takeBehaviour(const char* fn);
    void waitAtGate(const Behaviour& behaviour, std::unique_lock<std::mutex>& lock);

    mutable std::mutex m_mutex;
    std::condition_variable m_gateOpened;
    std::deque<Call> m_calls;
    uint64_t m_nextSeq = 1;
    std::map<std::string, Answers> m_answers;
    std::set<std::string> m_openGates;
    std::map<std::string, uint32_t> m_waiting;
    uint64_t m_resets = 0;
    bool m_echoes = false;

    std::mutex m_listenerMutex;
    std::function<void()> m_listener;
};

}  // namespace quiravent::recorder
