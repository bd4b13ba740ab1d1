#include "RepeatedTexts.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace quiravent {

namespace {

/// A short text as numbers: these are faster to compare than texts. It is told by its length and by
/// words of its bytes, which overlap where the length takes it.
using Key = std::array<uint64_t, 4>;

constexpr size_t kLongestRepeated = 3 * sizeof(uint64_t);

template <class Word>
uint64_t wordAt(const char* bytes) {
    Word word{};
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

/// Loads words straight from the text: a copy made byte by byte and then read in words would have
/// the processor wait until it is written.
Key KeyOf(std::string_view text) {
    const char* const bytes = text.data();
    const size_t size = text.size();
    if (size >= 2 * sizeof(uint64_t))
        return {size, wordAt<uint64_t>(bytes), wordAt<uint64_t>(bytes + sizeof(uint64_t)),
                wordAt<uint64_t>(bytes + size - sizeof(uint64_t))};
    if (size >= sizeof(uint64_t))
        return {size, wordAt<uint64_t>(bytes), wordAt<uint64_t>(bytes + size - sizeof(uint64_t))};
    if (size >= sizeof(uint32_t))
        return {size, wordAt<uint32_t>(bytes), wordAt<uint32_t>(bytes + size - sizeof(uint32_t))};
    // One to three bytes: the first, the middle and the last are all.
    if (size > 0)
        return {size, wordAt<uint8_t>(bytes), wordAt<uint8_t>(bytes + size / 2),
                wordAt<uint8_t>(bytes + size - 1)};
    return {};
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
    const uint64_t mixed = key[0] ^ key[1] * 3 ^ key[2] * 5 ^ key[3] * 7;
    const uint64_t product = mixed * 0x9E3779B97F4A7C15U;
    return places[product >> (64 - kBits)];
}

v8::Local<v8::String> MakeString(std::string_view text) {
    return Nan::New<v8::String>(text.data(), static_cast<int>(text.size())).ToLocalChecked();
}

}  // namespace

v8::Local<v8::String> RepeatedText(std::string_view text) {
    if (text.size() > kLongestRepeated) return MakeString(text);
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
