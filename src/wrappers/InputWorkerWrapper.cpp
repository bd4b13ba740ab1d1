#include "InputWorkerWrapper.h"

#include "porting/pl_input.h"

void InputWorkerWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWith(exports, quiravent::MemberOf<Close>("closeInput"));
    (void)pl_input_init();
}

std::shared_ptr<InputWorker> InputWorkerWrapper::MakeWorker(const quiravent::Info& info) {
    return std::make_shared<InputWorker>(quiravent::Listeners(info[0], info[1], info[2]));
}
