#pragma once

#include <nan.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "HardEnd.h"
#include "KeptException.h"
#include "PropertyNames.h"
#include "Runtime.h"

/// Reading of script values, by the script's own conversions: no range is tested, nothing is
/// refused. Where a conversion itself throws, the value counts as 0, and the exception reaches the
/// script when the entry returns (texts excepted, see ReadText).
namespace quiravent {

inline bool IsMissing(v8::Local<v8::Value> value) {
    return value->IsUndefined() || value->IsNull();
}

/// The conversions of values that aren't the expected kind already.
uint32_t ConvertUint32(v8::Local<v8::Value> value);
int32_t ConvertInt32(v8::Local<v8::Value> value);
double ConvertDouble(v8::Local<v8::Value> value);

/// A negative number gives its 32-bit complement, what is no number 0.
inline uint32_t ReadUint32(v8::Local<v8::Value> value) {
    // The general conversion costs twice as much as these tests.
    if (value->IsUint32()) return value.As<v8::Uint32>()->Value();
    if (value->IsInt32()) return static_cast<uint32_t>(value.As<v8::Int32>()->Value());
    return ConvertUint32(value);
}

/// As above, with the bits taken as a signed number; a fraction is cut off.
inline int32_t ReadInt32(v8::Local<v8::Value> value) {
    if (value->IsInt32()) return value.As<v8::Int32>()->Value();
    return ConvertInt32(value);
}

/// What is no number gives not-a-number.
inline double ReadDouble(v8::Local<v8::Value> value) {
    if (value->IsNumber()) return value.As<v8::Number>()->Value();
    return ConvertDouble(value);
}

/// The text form of any value, up to its first zero byte; the word "undefined" for a missing
/// argument.
/// \throws std::logic_error where the value's own conversion threw. Nothing in the module catches
/// it, by design: the process ends.
std::string ReadText(v8::Local<v8::Value> value);

/// The value as an object. Null and undefined, for which there is none, end the process; callers
/// that have an answer for them test first.
v8::Local<v8::Object> ReadObject(v8::Local<v8::Value> value);

/// Stands around reads of properties: what an accessor throws, the script gets when the entry
/// returns. One for all properties of an object, since it costs as much as a read.
class PropertyReads {
  public:
    PropertyReads() = default;
    ~PropertyReads() { KeptException::Keep(m_caught); }
    PropertyReads(const PropertyReads&) = delete;
    PropertyReads& operator=(const PropertyReads&) = delete;

  private:
    Nan::TryCatch m_caught;
};

/// A property of an object, within PropertyReads; undefined where reading it threw.
v8::Local<v8::Value> ReadProperty(v8::Local<v8::Object> object, Property property);

inline uint32_t ReadUint32(v8::Local<v8::Object> object, Property property) {
    return ReadUint32(ReadProperty(object, property));
}

/// Four numbers as the script gives them for a rectangle, or for the two ends of a line.
struct FourNumbers {
    uint32_t x;
    uint32_t y;
    uint32_t w;
    uint32_t h;
};

/// Reads the four properties in this order; a missing one is 0.
FourNumbers ReadFour(v8::Local<v8::Object> object, Property first, Property second, Property third,
                     Property fourth);

/// Reads "x", "y", "w", "h".
inline FourNumbers ReadRectangle(v8::Local<v8::Object> object) {
    return ReadFour(object, Property::x, Property::y, Property::w, Property::h);
}

/// The first four arguments.
inline FourNumbers ReadFour(const Nan::FunctionCallbackInfo<v8::Value>& info) {
    const uint32_t x = ReadUint32(info[0]);
    const uint32_t y = ReadUint32(info[1]);
    const uint32_t w = ReadUint32(info[2]);
    const uint32_t h = ReadUint32(info[3]);
    return {x, y, w, h};
}

/// A rectangle object as first argument, or else the first four arguments.
inline FourNumbers ReadRectangle(const Nan::FunctionCallbackInfo<v8::Value>& info) {
    if (info[0]->IsObject()) return ReadRectangle(info[0].As<v8::Object>());
    return ReadFour(info);
}

/// A callback over any value, owned by the caller. A value that is no function is kept all the
/// same, and the fault shows when it is called: a TypeError then, by the rules for exceptions that
/// nothing catches.
Nan::Callback* NewCallback(v8::Local<v8::Value> value);

}  // namespace quiravent
