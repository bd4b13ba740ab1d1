#include "DemuxFilterWrapper.h"

#include "support/Kept.h"

Nan::Persistent<v8::Function> DemuxFilterWrapper::constructor;

QUIRAVENT_KEPT void DemuxFilterWrapper::Init(v8::Local<v8::Object> exports) {
    ExportWithoutMethods(exports);
}
