#pragma once

#include "interfaces/Canvas.h"
#include "support/WrapperClass.h"

/// The script class "canvas". A canvas dies with its script object, but for the target, which
/// several script objects may stand for and which lives on.
///
/// No method tests whether the canvas is still valid: Canvas itself answers by doing nothing.
class CanvasWrapper : public quiravent::ExternalWrapper<CanvasWrapper, Canvas> {
  public:
    static constexpr const char* kScriptName = "canvas";
    static constexpr const char* kHollowText = "Error when tried create a new canvas object";
    static Nan::Persistent<v8::Function> constructor;

    static void Init(v8::Local<v8::Object> exports);

    using ExternalWrapper::ExternalWrapper;
    ~CanvasWrapper() override;
};
