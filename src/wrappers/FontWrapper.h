#pragma once

#include "interfaces/Font.h"
#include "support/WrapperClass.h"

/// The script class "font": a font is loaded, handed to "setFont", and dies with its object.
class FontWrapper : public quiravent::ExternalWrapper<FontWrapper, Font> {
  public:
    static constexpr const char* kScriptName = "font";
    static constexpr const char* kHollowText = "Error when tried create a new font object";
    static Nan::Persistent<v8::Function> constructor;

    static void Init(v8::Local<v8::Object> exports) { ExportWithoutMethods(exports); }

    using ExternalWrapper::ExternalWrapper;
    ~FontWrapper() override { delete native(); }
};
