#include "EventWorker.h"

#include <deque>
#include <set>

#include "support/Arguments.h"
#include "support/RepeatedTexts.h"
#include "support/Runtime.h"

namespace quiravent {

namespace {

/// The workers whose jobs run, so that they can be woken when the process exits: runtimes since 14
/// join the pool's threads then.
std::set<EventWorkerBase*>& RunningWorkers() {
    static auto& workers = *new std::set<EventWorkerBase*>;
    return workers;
}

void RegisterExitHook() {
    static const bool registered = [] {
        AtProcessExit(EventWorkerBase::EndAllForExit);
        return true;
    }();
    (void)registered;
}

}  // namespace

/// What the runtime runs for a worker. Made and ended on the script thread.
class EventJob : public Nan::AsyncProgressWorkerBase<char> {
  public:
    explicit EventJob(std::shared_ptr<EventWorkerBase> worker)
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
    std::shared_ptr<EventWorkerBase> m_worker;
};

Listeners::Listeners(v8::Local<v8::Value> dataValue, v8::Local<v8::Value> completionValue,
                     v8::Local<v8::Value> errorValue)
    : data(NewCallback(dataValue)),
      completion(NewCallback(completionValue)),
      error(NewCallback(errorValue)) {}

EventWorkerBase::EventWorkerBase(const Listeners& listeners) : m_listeners(listeners) {}

EventWorkerBase::~EventWorkerBase() = default;

void EventWorkerBase::EndAllForExit() {
    s_exiting = true;
    for (EventWorkerBase* worker : RunningWorkers()) worker->WakeForExit();
}

void EventWorkerBase::Queue() { Nan::AsyncQueueWorker(new EventJob(shared_from_this())); }

void EventWorkerBase::drainQueue(Nan::AsyncResource* resource) {
    const Nan::HandleScope scope;
    const v8::Local<v8::Object> global = Nan::GetCurrentContext()->Global();
    const v8::Local<v8::Function> listener = m_listeners.data->GetFunction();
    const std::deque<Message> messages = m_messageQueue.TakeAll();
    for (auto next = messages.begin(); next != messages.end();) {
        const Message& message = *next++;
        // It was written on another core, and is fetched from there while the listener runs.
        if (next != messages.end()) __builtin_prefetch(&*next);
        // A scope for each, since one turn may bring a great many.
        const Nan::HandleScope messageScope;
        // Each text ends at its first zero byte.
        v8::Local<v8::Value> arguments[] = {RepeatedText(message.name.c_str()),
                                            RepeatedText(message.data.c_str())};
        (void)resource->runInAsyncScope(global, listener, 2, arguments);
    }
}

}  // namespace quiravent
