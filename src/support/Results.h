#pragma once

#include <cstdint>
#include <initializer_list>
#include <utility>

#include "Entry.h"
#include "PropertyNames.h"

/// Result objects: plain new objects whose properties are set in the order given.
namespace quiravent {

/// An object of unsigned 32-bit values.
v8::Local<v8::Object> MakeUnsigned(std::initializer_list<std::pair<Property, uint32_t>> values);

/// A script function that makes objects of certain properties from their values, for what is
/// returned again and again: setting a property from here costs as much as all that it does.
class ResultMaker {
  public:
    ResultMaker(const Property* properties, size_t count)
        : m_properties(properties), m_count(count) {}

    /// Returns an object of those values, one for each property. What setting one throws, or a
    /// lack of stack, reaches the script, without a result.
    template <size_t count>
    void Return(const Info& info, v8::Local<v8::Value> (&values)[count]) {
        Return(info, values, count);
    }

  private:
    void Return(const Info& info, v8::Local<v8::Value>* values, size_t count);
    bool Compile(v8::Local<v8::Context> context);

    const Property* m_properties;
    size_t m_count;
    Nan::Persistent<v8::Function> m_function;  ///< made when it is needed first
};

template <Property... properties>
ResultMaker& MakerOf() {
    static constexpr Property kProperties[] = {properties...};
    static ResultMaker maker(kProperties, sizeof...(properties));
    return maker;
}

/// Returns an object of signed 32-bit values.
template <Property... properties, class... Values>
void ReturnIntegers(const Info& info, Values... values) {
    v8::Local<v8::Value> numbers[] = {v8::Integer::New(info.GetIsolate(), values)...};
    MakerOf<properties...>().Return(info, numbers);
}

/// Returns an object of unsigned 32-bit values.
template <Property... properties, class... Values>
void ReturnUnsigned(const Info& info, Values... values) {
    v8::Local<v8::Value> numbers[] = {v8::Integer::NewFromUnsigned(info.GetIsolate(), values)...};
    MakerOf<properties...>().Return(info, numbers);
}

}  // namespace quiravent
