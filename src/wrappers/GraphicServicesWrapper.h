#pragma once

#include <nan.h>

/// The namespace "graphicServices".
class GraphicServicesWrapper {
  public:
    static void Init(v8::Local<v8::Object> exports);
};
