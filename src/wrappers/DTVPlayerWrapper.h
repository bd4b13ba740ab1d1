#pragma once

#include "interfaces/DTVPlayer.h"
#include "support/WrapperClass.h"

/// The script class "dtvplayer". A player that the script forgets is released with its object.
class DTVPlayerWrapper : public quiravent::ExternalWrapper<DTVPlayerWrapper, DTVPlayer> {
  public:
    static constexpr const char* kScriptName = "dtvplayer";
    static constexpr const char* kHollowText = "Error when tried create a new dtvplayer object";
    static Nan::Persistent<v8::Function> constructor;

    static void Init(v8::Local<v8::Object> exports);

    using ExternalWrapper::ExternalWrapper;
    ~DTVPlayerWrapper() override { delete native(); }
};
