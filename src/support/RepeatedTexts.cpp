#include "RepeatedTexts.h"

#include <array>
#include <cstddef>
#include <functional>

namespace quiravent {

namespace {

constexpr size_t kLongest = 32;

/// Where texts of some hashes are kept, one at a time. A text that comes once drives none away.
struct Place {
    std::string text;
    Nan::Persistent<v8::String> string;
    size_t missedHash = 0;  ///< of the text that came last and wasn't there
};

// Never destroyed: at process end the runtime that owns the strings may be gone already.
Place& PlaceOf(size_t hash) {
    static auto& places = *new std::array<Place, 128>;
    return places[hash % places.size()];
}

v8::Local<v8::String> MakeString(const std::string& text) {
    return Nan::New(text.c_str()).ToLocalChecked();
}

}  // namespace

v8::Local<v8::String> RepeatedText(const std::string& text) {
    if (text.size() > kLongest) return MakeString(text);
    const size_t hash = std::hash<std::string>()(text);
    Place& place = PlaceOf(hash);
    if (place.text == text && !place.string.IsEmpty()) return Nan::New(place.string);
    const v8::Local<v8::String> made = MakeString(text);
    if (place.missedHash == hash) {
        place.text = text;
        place.string.Reset(made);
    }
    place.missedHash = hash;
    return made;
}

}  // namespace quiravent
