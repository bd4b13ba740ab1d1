#pragma once

#include <nan.h>

/// The namespace "tunerServices".
class TunerServicesWrapper {
  public:
    static void Init(v8::Local<v8::Object> exports);
};
