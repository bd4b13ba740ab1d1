#pragma once

#include <nan.h>

#include <string>

namespace quiravent {

/// ReadText for texts that scripts hand over again and again, like labels and names of colours: of
/// a string that was read lately, and is the same object, the UTF-8 form is known. Strings are not
/// kept alive by that. Valid until the next such text is read, so not beyond a conversion, which
/// may run script.
const std::string& ReadKnownText(v8::Local<v8::Value> value);

}  // namespace quiravent
