#pragma once

#include <nan.h>

/// The namespace "dataServices".
class DataServicesWrapper {
  public:
    static void Init(v8::Local<v8::Object> exports);
};
