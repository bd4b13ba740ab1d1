#include "DemuxFilterWrapper.h"

Nan::Persistent<v8::Function> DemuxFilterWrapper::constructor;

void DemuxFilterWrapper::Init(v8::Local<v8::Object> exports) { ExportWithoutMethods(exports); }
