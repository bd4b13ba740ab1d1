#pragma once

#include <nan.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

#include "support/MessageQueue.h"

namespace quiravent {

/// The script functions of an event worker, made from script values; none is tested.
struct Listeners {
    Listeners(v8::Local<v8::Value> data, v8::Local<v8::Value> completion,
              v8::Local<v8::Value> error);

    // The data and error listeners are deliberately kept to the end of the process: applications
    // may hold a worker's object beyond the worker.
    Nan::Callback* data;
    Nan::Callback* completion;  ///< passes to the job, which disposes of it
    Nan::Callback* error;
};

/// What all event workers share: the way from a pool thread to the script's listeners.
///
/// A worker is the part that device threads, the script object and the process-wide slot hold on
/// to; the job that runs it belongs to the runtime and ends before it. So a report or a "close"
/// that comes after the job has ended still meets a living object, and is dropped.
class EventWorkerBase : public std::enable_shared_from_this<EventWorkerBase> {
  public:
    using Progress = Nan::AsyncProgressWorkerBase<char>::ExecutionProgress;

    virtual ~EventWorkerBase();
    EventWorkerBase(const EventWorkerBase&) = delete;
    EventWorkerBase& operator=(const EventWorkerBase&) = delete;

    /// Hands the worker to the runtime's pool, where it takes one thread until it is closed.
    /// Script thread; once.
    void Queue();

    /// Asks the worker to end, and doesn't wait. Script thread.
    virtual void close() = 0;
    bool closed() const { return m_closedFlag; }

    /// Ends all workers that run, since they must not keep the process from exiting; the device is
    /// told nothing of it. Those that are closed already end as ever; of the others none begins any
    /// more. Script thread.
    static void EndAllForExit();

  protected:
    explicit EventWorkerBase(const Listeners& listeners);

    void SetClosed() { m_closedFlag = true; }

    static bool Exiting() { return s_exiting; }

    /// Wakes the worker wherever it is on the way to its wait.
    virtual void WakeForExit() = 0;

    /// Pool thread: queues a message for the script thread, and wakes that unless a wake-up that it
    /// hasn't followed yet will bring the message too.
    void writeToNode(const Progress& progress, Message message) {
        if (m_messageQueue.Append(std::move(message))) progress.Signal();
    }

  private:
    friend class EventJob;

    /// The worker's life, on a pool thread.
    virtual void Execute(const Progress& progress) = 0;
    /// From now on reports are dropped. Script thread, after Execute has returned.
    virtual void End() = 0;

    /// Gives every waiting message to the data listener, in order and outside of every lock.
    void drainQueue(Nan::AsyncResource* resource);

    /// Set before any worker is woken: the thread that the first one leaves may take another at
    /// once.
    static inline std::atomic<bool> s_exiting{false};

    Listeners m_listeners;
    MessageQueue m_messageQueue;
    std::atomic<bool> m_closedFlag{false};
};

/// The frame of the event workers: reports of a device thread wait in a queue, a pool thread makes
/// messages of them, the script thread gives these to the listener. A worker class states what it
/// registers with the device, how a report becomes a message, and how it is closed.
template <class Report>
class EventWorker : public EventWorkerBase {
  protected:
    explicit EventWorker(const Listeners& listeners) : EventWorkerBase(listeners) {}

    /// Starts the device's reports; pool thread.
    virtual void Attach() = 0;
    /// Ends them, where a device function does.
    virtual void Detach() {}
    virtual Message MessageOf(Report report) = 0;
    /// Whether a drain ends with the queue, or already with the worker's closing.
    virtual bool DrainsWhenClosed() const { return true; }

    /// Queues one report and wakes the pool thread; any thread. A report that finds the pool
    /// thread busy elsewhere waits, in its place, for the next one.
    void AddReport(Report report) {
        const std::lock_guard<std::mutex> lock(m_eventMutex);
        if (m_ended) return;
        m_eventQueue.push_back(std::move(report));
        m_eventCondition.notify_all();
    }

    void Wake() { m_eventCondition.notify_all(); }

  private:
    void Execute(const Progress& progress) final {
        if (Exiting() && !closed()) return;
        Attach();
        while (!closed()) {
            std::unique_lock<std::mutex> lock(m_eventMutex);
            if (Exiting()) break;
            // Deliberately without a predicate: what is in the queue already stays there until
            // the next notification.
            m_eventCondition.wait(lock);
            Drain(progress);
        }
        if (closed()) Detach();
    }

    void WakeForExit() final {
        const std::lock_guard<std::mutex> lock(m_eventMutex);
        m_eventCondition.notify_all();
    }

    void Drain(const Progress& progress) {
        while (!m_eventQueue.empty() && (DrainsWhenClosed() || !closed())) {
            writeToNode(progress, MessageOf(std::move(m_eventQueue.front())));
            m_eventQueue.pop_front();
        }
    }

    void End() final {
        const std::lock_guard<std::mutex> lock(m_eventMutex);
        m_ended = true;
        m_eventQueue.clear();
    }

    std::mutex m_eventMutex;
    std::condition_variable m_eventCondition;
    std::deque<Report> m_eventQueue;
    bool m_ended = false;
};

/// The process-wide place of the current worker of a class, through which device callbacks, which
/// carry no context, find it. Never emptied: a worker stays in it until another takes it.
template <class Worker>
class WorkerSlot {
  public:
    /// Takes the place, with no word to the worker that held it. Script thread.
    void Take(std::shared_ptr<Worker> worker) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_worker == nullptr) m_worker = new std::shared_ptr<Worker>;
        m_worker->swap(worker);
    }

    /// The current worker, kept alive while the caller holds it; null before the first. Any thread.
    std::shared_ptr<Worker> Get() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_worker != nullptr ? *m_worker : nullptr;
    }

  private:
    // Never freed: device threads may report while the process cleans up after itself.
    std::shared_ptr<Worker>* m_worker = nullptr;
    mutable std::mutex m_mutex;
};

}  // namespace quiravent
