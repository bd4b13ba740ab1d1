#pragma once

#include <memory>

#include "InputWorker.h"
#include "support/WorkerWrapper.h"

/// The script class "InputWorker".
class InputWorkerWrapper : public quiravent::WorkerWrapper<InputWorkerWrapper, InputWorker> {
  public:
    static constexpr const char* kScriptName = "InputWorker";
    static constexpr int kArguments = 3;

    /// Also sets the device's input up, as its last act.
    static void Init(v8::Local<v8::Object> exports);

    static std::shared_ptr<InputWorker> MakeWorker(const quiravent::Info& info);
    static InputWorkerSlot& Slot() { return g_input_worker_slot; }

    using WorkerWrapper::WorkerWrapper;
};
