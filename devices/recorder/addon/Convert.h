#pragma once

#include <nan.h>

#include "Event.h"
#include "Recorder.h"
#include "Value.h"

namespace quiravent::recorder {

/// The script value of a value. Texts are taken as UTF-8, and may hold NULs.
v8::Local<v8::Value> toScript(const Value& value);

/// A plain object with "seq", "fn", "args" and "thread".
v8::Local<v8::Value> toScript(const Call& call);

/// The value of a script value: undefined is null, an object becomes a record of its own
/// properties.
Value fromScript(v8::Local<v8::Value> value);

/// From an object with any of "status", "outputs", "gate", "opens", "patience" (milliseconds) and
/// "inside" (a list of events).
Behaviour toBehaviour(const Value& value);

/// From a list of objects with "callback", "args" and, optionally, "times".
std::vector<Event> toEvents(const Value& value);

}  // namespace quiravent::recorder
