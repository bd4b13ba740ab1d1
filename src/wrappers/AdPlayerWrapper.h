#pragma once

#include "interfaces/AdPlayer.h"
#include "support/WrapperClass.h"

/// The script class "adPlayer". The player is deliberately never freed or unloaded here.
class AdPlayerWrapper : public quiravent::ExternalWrapper<AdPlayerWrapper, AdPlayer> {
  public:
    static constexpr const char* kScriptName = "adPlayer";
    static constexpr const char* kHollowText = "Error when tried create a new AdPlayer object";
    static Nan::Persistent<v8::Function> constructor;

    static void Init(v8::Local<v8::Object> exports);

    using ExternalWrapper::ExternalWrapper;
};
