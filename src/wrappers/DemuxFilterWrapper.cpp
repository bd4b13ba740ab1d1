#include "DemuxFilterWrapper.h"

#include "support/InitOrder.h"
#include "support/Kept.h"

Nan::Persistent<v8::Function> DemuxFilterWrapper::constructor
    __attribute__((init_priority(quiravent::kDemuxFilterConstructor)));

QUIRAVENT_KEPT void DemuxFilterWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWithoutMethods(exports);
}
