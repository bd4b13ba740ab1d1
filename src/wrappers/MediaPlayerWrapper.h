#pragma once

#include "interfaces/MediaPlayer.h"
#include "support/WrapperClass.h"

/// The script class "mediaPlayer". The player is deliberately never freed or unloaded here.
class MediaPlayerWrapper : public quiravent::ExternalWrapper<MediaPlayerWrapper, MediaPlayer> {
  public:
    static constexpr const char* kScriptName = "mediaPlayer";
    static constexpr const char* kHollowText = "Error when tried create a new MediaPlayer object";
    static Nan::Persistent<v8::Function> constructor;

    static void Init(v8::Local<v8::Object> exports);

    using ExternalWrapper::ExternalWrapper;
};
