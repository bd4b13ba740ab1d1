#pragma once

#include <memory>
#include <utility>

#include "EventWorker.h"
#include "WrapperClass.h"

namespace quiravent {

/// The wrapper classes whose script objects are made by scripts, around a worker that is built from
/// the script's arguments. The wrapper keeps the worker's memory, not its life: the worker ends by
/// itself.
///
/// A class states `kScriptName`, `kArguments` (how many it takes), `MakeWorker(info)` and the slot.
template <class Derived, class WorkerClass>
class WorkerWrapper : public Wrapper {
  public:
    using Native = WorkerClass;

    explicit WorkerWrapper(std::shared_ptr<Native> worker)
        : Wrapper(worker.get()), m_worker(std::move(worker)) {}

  protected:
    static Nan::Persistent<v8::Function>& constructor() {
        static Nan::Persistent<v8::Function> my_constructor;
        return my_constructor;
    }

    /// Two internal fields, of which the second is never used.
    static void ExportWith(v8::Local<v8::Object> exports, const Member& closing) {
        ExportClass(exports, Derived::kScriptName, Dispatch<New>, 2, &closing, 1, constructor());
    }

    /// The entry of the method that closes the worker.
    static void Close(const Info& info) {
        static_cast<Native*>(NativeAddressOf(info.Holder()))->close();
    }

  private:
    static void New(const Info& info) {
        if (!info.IsConstructCall()) return Reenter(info);
        const std::shared_ptr<Native> worker = Derived::MakeWorker(info);
        Derived::Slot().Take(worker);
        auto* wrapper = new Derived(worker);
        wrapper->Wrap(info.This());
        info.GetReturnValue().Set(info.This());
        worker->Queue();
    }

    /// A plain call is made a construct call with the same arguments, undefined for missing ones.
    static void Reenter(const Info& info) {
        v8::Local<v8::Value> arguments[Derived::kArguments];
        for (int index = 0; index < Derived::kArguments; ++index) arguments[index] = info[index];
        const v8::Local<v8::Function> make = Nan::New(constructor());
        info.GetReturnValue().Set(
            Nan::NewInstance(make, Derived::kArguments, arguments).ToLocalChecked());
    }

    std::shared_ptr<Native> m_worker;
};

}  // namespace quiravent
