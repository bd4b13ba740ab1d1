#include "EventWorker.h"

#include <set>
#include <utility>

#include "support/Arguments.h"
#include "support/RepeatedTexts.h"
#include "support/Runtime.h"

namespace quiravent {

namespace {

/// The workers whose jobs run, so that they can be woken when the process exits: runtimes since 14
/// join the pool's threads then.
std::set<EventWorker*>& RunningWorkers() {
    static auto& workers = *new std::set<EventWorker*>;
    return workers;
}

void CloseAllForExit() {
    for (EventWorker* worker : RunningWorkers()) worker->CloseForExit();
}

void RegisterExitHook() {
    static const bool registered = [] {
        AtProcessExit(CloseAllForExit);
        return true;
    }();
    (void)registered;
}

}  // namespace

/// What the runtime runs for a worker. Made and ended on the script thread.
class EventJob : public Nan::AsyncProgressWorkerBase<char> {
  public:
    explicit EventJob(std::shared_ptr<EventWorker> worker)
        : AsyncProgressWorkerBase(worker->m_listeners.completion), m_worker(std::move(worker)) {
        RegisterExitHook();
        RunningWorkers().insert(m_worker.get());
    }

    void Execute(const ExecutionProgress& progress) override { m_worker->Execute(progress); }

    void HandleProgressCallback(const char*, size_t) override {
        m_worker->drainQueue(async_resource);
    }

    void HandleOKCallback() override {
        RunningWorkers().erase(m_worker.get());
        m_worker->End();
        m_worker->drainQueue(async_resource);
        const Nan::HandleScope scope;
        (void)callback->Call(0, nullptr, async_resource);
    }

    /// For a worker that ended with an error text. None of them sets one.
    void HandleErrorCallback() override {
        const Nan::HandleScope scope;
        v8::Local<v8::Value> error = Nan::Error(ErrorMessage());
        (void)m_worker->m_listeners.error->Call(1, &error, async_resource);
    }

  private:
    std::shared_ptr<EventWorker> m_worker;
};

Listeners::Listeners(v8::Local<v8::Value> dataValue, v8::Local<v8::Value> completionValue,
                     v8::Local<v8::Value> errorValue)
    : data(NewCallback(dataValue)),
      completion(NewCallback(completionValue)),
      error(NewCallback(errorValue)) {}

EventWorker::EventWorker(const Listeners& listeners) : m_listeners(listeners) {}

EventWorker::~EventWorker() = default;

void EventWorker::Queue() { Nan::AsyncQueueWorker(new EventJob(shared_from_this())); }

void EventWorker::CloseForExit() {
    SetClosed();
    const std::lock_guard<std::mutex> lock(m_mutex);
    Wake();
}

void EventWorker::AddReport(Message&& report) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_ended) return;
    m_reports.push_back(std::move(report));
    if (m_waiting == nullptr) return;
    // The pool thread isn't woken for a report: it would only do this, a change of threads later.
    if (closed())
        Wake();
    else
        Release(*m_waiting);
}

void EventWorker::Execute(const Progress& progress) {
    Attach();
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!closed()) {
            m_waiting = &progress;
            // Deliberately without a predicate: what is in the queue already stays there until
            // the next notification or report.
            m_condition.wait(lock);
            m_waiting = nullptr;
            if (DrainsWhenClosed() || !closed()) Release(progress);
        }
    }
    Detach();
}

void EventWorker::Release(const Progress& progress) {
    const bool isFirst = m_released == 0 && !m_reports.empty();
    m_released = m_reports.size();
    if (isFirst) progress.Signal();
}

void EventWorker::End() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_ended = true;
    while (m_reports.size() > m_released) m_reports.pop_back();
}

std::deque<Message> EventWorker::TakeReleased() {
    std::deque<Message> taken;
    const std::lock_guard<std::mutex> lock(m_mutex);
    taken.swap(m_reports);
    while (taken.size() > m_released) {
        m_reports.push_front(std::move(taken.back()));
        taken.pop_back();
    }
    m_released = 0;
    return taken;
}

void EventWorker::drainQueue(Nan::AsyncResource* resource) {
    const Nan::HandleScope scope;
    const v8::Local<v8::Object> global = Nan::GetCurrentContext()->Global();
    const v8::Local<v8::Function> listener = m_listeners.data->GetFunction();
    for (const Message& message : TakeReleased()) {
        // A scope for each, since one turn may bring a great many.
        const Nan::HandleScope messageScope;
        v8::Local<v8::Value> arguments[] = {RepeatedText(message.name()),
                                            RepeatedText(message.data())};
        (void)resource->runInAsyncScope(global, listener, 2, arguments);
    }
}

}  // namespace quiravent
