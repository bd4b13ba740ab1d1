#pragma once

#include <map>
#include <string>
#include <type_traits>

#include "Value.h"
#include "porting/pl_functions.h"

namespace quiravent::recorder {

// How an argument is written to the log: numbers, texts and records as they are, null pointers as
// null, a pointer to be written through as the text "out", a function as the text "function".

template <class Number,
          class = std::enable_if_t<std::is_arithmetic_v<Number> || std::is_enum_v<Number>>>
Value encode(Number number) {
    return static_cast<double>(number);
}

inline Value encode(bool flag) { return flag; }

inline Value encode(const char* text) { return text ? Value(std::string(text)) : Value(); }

inline Value encode(const std::string& text) { return text; }

inline Value encode(const std::map<std::string, std::string>& values) {
    return Record(values.begin(), values.end());
}

inline Value encode(s_pl_gfx_color color) {
    return Record{{"r", encode(color.r)},
                  {"g", encode(color.g)},
                  {"b", encode(color.b)},
                  {"a", encode(color.a)}};
}

template <class Rectangle>
Value encodeRectangle(const Rectangle* rect) {
    if (!rect) return {};
    return Record{{"x", encode(rect->x)},
                  {"y", encode(rect->y)},
                  {"w", encode(rect->w)},
                  {"h", encode(rect->h)}};
}

inline Value encode(const s_pl_gfx_rect* rect) { return encodeRectangle(rect); }
inline Value encode(const s_pl_media_bounds* bounds) { return encodeRectangle(bounds); }

/// The playback speed, which goes in as well as out.
inline Value encode(int32_t* speed) { return speed ? encode(*speed) : Value(); }

/// A pointer that the function writes through.
template <class Output,
          class = std::enable_if_t<!std::is_const_v<Output> && !std::is_function_v<Output>>>
Value encode(Output* output) {
    return output ? Value(std::string("out")) : Value();
}

template <class... Arguments>
Value encode(void (*callback)(Arguments...)) {
    return callback ? Value(std::string("function")) : Value();
}

}  // namespace quiravent::recorder
