#pragma once

#include <nan.h>

/// The namespace "mediaServices".
class MediaServicesWrapper {
  public:
    static void Init(v8::Local<v8::Object> exports);
};
