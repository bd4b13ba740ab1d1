#pragma once

#include <memory>

#include "TunerWorker.h"
#include "support/WorkerWrapper.h"

/// The script class "TunerWorker".
class TunerWorkerWrapper : public quiravent::WorkerWrapper<TunerWorkerWrapper, TunerWorker> {
  public:
    static constexpr const char* kScriptName = "TunerWorker";
    static constexpr int kArguments = 5;

    static void Init(v8::Local<v8::Object> exports);

    static std::shared_ptr<TunerWorker> MakeWorker(const quiravent::Info& info);
    static quiravent::WorkerSlot<TunerWorker>& Slot() { return g_tuner_worker; }

    using WorkerWrapper::WorkerWrapper;
};
