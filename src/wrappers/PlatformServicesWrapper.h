#pragma once

#include <nan.h>

/// The namespace "platformServices".
class PlatformServicesWrapper {
  public:
    static void Init(v8::Local<v8::Object> exports);
};
