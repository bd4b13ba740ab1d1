#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <utility>

#include "EventWorker.h"
#include "porting/pl_input.h"

/// The event worker of everything that has no player of its own: keys, changes of the runtime
/// state, messages of the service selector channel. Keys have no names here: a key reaches the
/// script as the decimal text of its code.
class InputWorker : public quiravent::EventWorker<std::pair<std::string, std::string>> {
  public:
    explicit InputWorker(const quiravent::Listeners& listeners) : EventWorker(listeners) {}

    /// Queues a key event; device threads.
    void onKeyEvent(std::string name, pl_input_keycode code);
    /// Queues an event with the two texts as they stand; any thread.
    void dispatchCustomEvent(std::string name, std::string data);

    /// Deliberately wakes nobody: the worker ends with the next event, which is still delivered.
    void close() override { SetClosed(); }

    /// Asks the device for all keys but two groups. Nothing in the module does.
    static void attachAllKeys();

  private:
    void Attach() override;
    quiravent::Message MessageOf(std::pair<std::string, std::string> report) override;
};

/// The current worker, null before the first, for debuggers and libraries that look the symbol up.
/// Written on the script thread; it doesn't keep the worker alive, as the slot does.
extern __attribute__((visibility("default"))) std::atomic<InputWorker*> g_input_worker;

/// Where callbacks of the device, and all that has no object in hand, find the current worker.
class InputWorkerSlot : public quiravent::WorkerSlot<InputWorker> {
  public:
    void Take(std::shared_ptr<InputWorker> worker) {
        g_input_worker = worker.get();
        WorkerSlot::Take(std::move(worker));
    }
};

extern InputWorkerSlot g_input_worker_slot;
