#include "RepeatedTexts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quiravent {

namespace {

/// A short text, filled up with zero bytes, as numbers: these are faster to compare than texts.
using Key = std::array<uint64_t, 3>;

Key KeyOf(std::string_view text) {
    Key key{};
    std::memcpy(key.data(), text.data(), text.size());
    return key;
}

/// Where texts of some kind are kept, one at a time. A text that comes once drives none away.
struct Place {
    Key key{};
    Nan::Persistent<v8::String> string;
    Key missed{};  ///< what came last and wasn't there
};

// Never destroyed: at process end the runtime that owns the strings may be gone already.
Place& PlaceOf(const Key& key) {
    constexpr int kBits = 7;
    static auto& places = *new std::array<Place, 1U << kBits>;
    // The upper bits of a product depend on all bits of its factors.
    const uint64_t product = (key[0] ^ key[1] * 3 ^ key[2] * 5) * 0x9E3779B97F4A7C15U;
    return places[product >> (64 - kBits)];
}

v8::Local<v8::String> MakeString(std::string_view text) {
    return Nan::New<v8::String>(text.data(), static_cast<int>(text.size())).ToLocalChecked();
}

}  // namespace

v8::Local<v8::String> RepeatedText(std::string_view text) {
    if (text.size() > sizeof(Key)) return MakeString(text);
    const Key key = KeyOf(text);
    Place& place = PlaceOf(key);
    if (place.key == key && !place.string.IsEmpty()) return Nan::New(place.string);
    const v8::Local<v8::String> made = MakeString(text);
    if (place.missed == key) {
        place.key = key;
        place.string.Reset(made);
    }
    place.missed = key;
    return made;
}

}  // namespace quiravent
