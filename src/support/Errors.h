#pragma once

#include <nan.h>

#include <string>

namespace quiravent {

/// Throws a script TypeError; the caller returns to the script at once.
inline void ThrowTypeError(const std::string& text) {
    const Nan::HandleScope scope;
    Nan::ThrowTypeError(Nan::New(text).ToLocalChecked());
}

/// The TypeError of a method that was called without its callback; it names the project's guide.
inline void ThrowMissingCallback(const std::string& method) {
    ThrowTypeError(method +
                   "() error. You must write a callback. If you have questions: "
                   "quiravent/docs/application-guide.md.");
}

}  // namespace quiravent
