#include "Recorder.h"

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <utility>

#include "ThreadKind.h"

namespace quiravent::recorder {

Recorder& Recorder::instance() {
    static Recorder& recorder = *std::make_unique<Recorder>().release();
    return recorder;
}

std::vector<Call> Recorder::callsFrom(uint64_t seq) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<Call> calls;
    for (const Call& call : m_calls) {
        if (call.seq >= seq) calls.push_back(call);
    }
    return calls;
}

void Recorder::clear() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_calls.clear();
}

void Recorder::answerOnce(const std::string& fn, Behaviour behaviour) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answers[fn].once.push_back(std::move(behaviour));
}

void Recorder::answerAlways(const std::string& fn, Behaviour behaviour) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answers[fn].always = std::move(behaviour);
}

void Recorder::resetAnswers() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_answers.clear();
    m_openGates.clear();
    ++m_resets;
    m_gateOpened.notify_all();
}

void Recorder::openGate(const std::string& gate) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_openGates.insert(gate);
    m_gateOpened.notify_all();
}

uint32_t Recorder::waitingAt(const std::string& gate) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_waiting.find(gate);
    return found == m_waiting.end() ? 0 : found->second;
}

void Recorder::echo() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_echoes = true;
}

void Recorder::setChangeListener(std::function<void()> listener) {
    const std::lock_guard<std::mutex> lock(m_listenerMutex);
    m_listener = std::move(listener);
}

void Recorder::notifyChange() {
    const std::lock_guard<std::mutex> lock(m_listenerMutex);
    if (m_listener) m_listener();
}

Behaviour Recorder::enter(const char* fn, List args) {
    std::unique_lock<std::mutex> lock(m_mutex);
    m_calls.push_back({m_nextSeq++, fn, std::move(args), threadKind()});
    if (m_echoes) dprintf(STDOUT_FILENO, "%s\n", fn);
    Behaviour behaviour = takeBehaviour(fn);
    if (!behaviour.opens.empty()) {
        m_openGates.insert(behaviour.opens);
        m_gateOpened.notify_all();
    }
    if (!behaviour.gate.empty()) waitAtGate(behaviour, lock);
    lock.unlock();
    notifyChange();
    return behaviour;
}

Behaviour Recorder::takeBehaviour(const char* fn) {
    const auto found = m_answers.find(fn);
    if (found == m_answers.end()) return {};
    Answers& answers = found->second;
    if (answers.once.empty()) return answers.always;
    Behaviour behaviour = std::move(answers.once.front());
    answers.once.pop_front();
    return behaviour;
}

void Recorder::waitAtGate(const Behaviour& behaviour, std::unique_lock<std::mutex>& lock) {
    const uint64_t resets = m_resets;
    const auto deadline = std::chrono::steady_clock::now() + behaviour.patience;
    ++m_waiting[behaviour.gate];
    lock.unlock();
    notifyChange();
    lock.lock();
    m_gateOpened.wait_until(lock, deadline, [&] {
        return m_openGates.count(behaviour.gate) != 0 || m_resets != resets;
    });
    --m_waiting[behaviour.gate];
}

}  // namespace quiravent::recorder
