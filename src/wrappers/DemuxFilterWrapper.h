#pragma once

#include "interfaces/DemuxFilter.h"
#include "support/WrapperClass.h"

/// The script class "demuxfilter", which is deliberately not set up: scripts don't see it until the
/// entry point reserved for it is connected.
class DemuxFilterWrapper : public quiravent::ExternalWrapper<DemuxFilterWrapper, DemuxFilter> {
  public:
    static constexpr const char* kScriptName = "demuxfilter";
    static constexpr const char* kHollowText = "Error when tried create a new demuxfilter object";
    static Nan::Persistent<v8::Function> constructor;

    static void Init(v8::Local<v8::Object> exports);

    using ExternalWrapper::ExternalWrapper;
    ~DemuxFilterWrapper() override { delete native(); }
};
