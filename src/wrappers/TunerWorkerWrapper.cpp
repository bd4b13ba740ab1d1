#include "TunerWorkerWrapper.h"

#include <string>

#include "support/Arguments.h"

void TunerWorkerWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(exports, quiravent::MemberOf<Close>("closeTuner"));
}

std::shared_ptr<TunerWorker> TunerWorkerWrapper::MakeWorker(const quiravent::Info& info) {
    const std::string selector = quiravent::ReadText(info[0]);
    const std::string option = quiravent::ReadText(info[1]);
    return std::make_shared<TunerWorker>(quiravent::Listeners(info[2], info[3], info[4]), selector,
                                         option);
}
