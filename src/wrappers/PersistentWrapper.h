#pragma once

#include "interfaces/Persistent.h"
#include "support/WrapperClass.h"

/// The script class "persistent": an open store. Its native side is deliberately never freed,
/// since a store can't be closed.
class PersistentWrapper : public quiravent::ExternalWrapper<PersistentWrapper, Persistent> {
  public:
    static constexpr const char* kScriptName = "persistent";
    static constexpr const char* kHollowText = "Error when tried create a new persistent object";
    static Nan::Persistent<v8::Function> constructor;

    static void Init(v8::Local<v8::Object> exports);

    using ExternalWrapper::ExternalWrapper;
};
