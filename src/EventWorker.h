#pragma once

#include <nan.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

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

/// What an event worker tells the script: what happened, and the detail as text; neither holds a
/// zero byte. They share one string, which for nearly all needs no memory of its own.
class Message {
  public:
    Message(std::string_view name, std::string_view data) : m_texts(name), m_nameSize(name.size()) {
        m_texts.append(data);
    }

    std::string_view name() const { return {m_texts.data(), m_nameSize}; }
    std::string_view data() const {
        return {m_texts.data() + m_nameSize, m_texts.size() - m_nameSize};
    }

  private:
    std::string m_texts;
    size_t m_nameSize;
};

/// The way from device threads to the script's listeners, which all event workers share. A worker
/// takes a pool thread, which waits for its end; while it waits, whoever reports releases the
/// report to the script thread. A worker class states what it registers with the device, and how it
/// is closed.
///
/// A worker is the part that device threads, the script object and the process-wide slot hold on
/// to; the job that runs it belongs to the runtime and ends before it. So a report or a "close"
/// that comes after the job has ended still meets a living object, and is dropped.
class EventWorker : public std::enable_shared_from_this<EventWorker> {
  public:
    virtual ~EventWorker();
    EventWorker(const EventWorker&) = delete;
    EventWorker& operator=(const EventWorker&) = delete;

    /// Hands the worker to the runtime's pool, where it takes one thread until it is closed.
    /// Script thread; once.
    void Queue();

    /// Asks the worker to end, and doesn't wait. Script thread.
    virtual void close() = 0;
    bool closed() const { return m_closedFlag; }

    /// As close, but wakes in every case: a worker must not keep the process from exiting.
    void CloseForExit();

  protected:
    explicit EventWorker(const Listeners& listeners);

    /// Starts the device's reports; pool thread.
    virtual void Attach() = 0;
    /// Ends them, where a device function does.
    virtual void Detach() {}
    /// Whether what waits is still delivered when the worker has been closed.
    virtual bool DrainsWhenClosed() const { return true; }

    /// Queues one report; any thread. A report that comes before the pool thread waits stays, in
    /// its place, until the next one.
    void AddReport(Message&& report);

    void SetClosed() { m_closedFlag = true; }
    void Wake() { m_condition.notify_all(); }

  private:
    friend class EventJob;
    using Progress = Nan::AsyncProgressWorkerBase<char>::ExecutionProgress;

    /// The worker's life, on a pool thread.
    void Execute(const Progress& progress);
    /// Gives all reports free to the script thread, and wakes it unless it was woken for others
    /// that it hasn't taken yet. Under the lock.
    void Release(const Progress& progress);
    /// From now on reports are dropped. Script thread, after Execute has returned.
    void End();

    /// Gives every released report to the data listener, in order and outside of every lock.
    void drainQueue(Nan::AsyncResource* resource);
    std::deque<Message> TakeReleased();

    const Listeners m_listeners;
    std::atomic<bool> m_closedFlag{false};

    std::mutex m_mutex;                   ///< guards what follows
    std::condition_variable m_condition;  ///< the pool thread waits for it
    std::deque<Message> m_reports;        ///< without a bound
    size_t m_released = 0;                ///< so many, from the front, are the script thread's
    const Progress* m_waiting = nullptr;  ///< of the pool thread, while it waits
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

    /// Calls use(Worker*) with the current worker, which is null before the first; no other takes
    /// its place meanwhile. Any thread.
    template <class Use>
    void With(Use use) const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        use(m_worker != nullptr ? m_worker->get() : nullptr);
    }

    /// The current worker, kept alive while the caller holds it; null before the first. Any thread.
    std::shared_ptr<Worker> Get() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_worker != nullptr ? *m_worker : nullptr;
    }

  private:
    // Never freed: device threads may report while the process cleans up after itself. First, so
    // that a debugger or another library that looks the symbol up sees null or not.
    std::shared_ptr<Worker>* m_worker = nullptr;
    mutable std::mutex m_mutex;
};

}  // namespace quiravent
