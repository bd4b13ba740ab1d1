#include "KnownTexts.h"

#include <array>
#include <utility>

#include "Arguments.h"

namespace quiravent {

namespace {

/// Longer ones are seldom repeated.
constexpr int kLongestKnown = 256;

struct KnownText {
    v8::Global<v8::String> string;
    std::string text;
};

/// At once when the string is collected, unlike Nan's weak callbacks, which come later.
void Forget(const v8::WeakCallbackInfo<KnownText>& info) { info.GetParameter()->string.Reset(); }

/// Two places for each hash, of which the first was used last.
using Places = std::array<KnownText*, 2>;

struct KnownTexts {
    std::array<KnownText, 512> texts;
    std::array<Places, 256> sets{};

    KnownTexts() {
        for (size_t i = 0; i < sets.size(); ++i) sets[i] = {&texts[2 * i], &texts[2 * i + 1]};
    }
};

// Never destroyed: at process end the runtime that owns the strings may be gone already.
Places& PlacesFor(v8::Local<v8::String> string) {
    static KnownTexts& known = *new KnownTexts;
    return known.sets[static_cast<unsigned>(string->GetIdentityHash()) % known.sets.size()];
}

}  // namespace

const std::string& ReadKnownText(v8::Local<v8::Value> value) {
    if (!value->IsString() || value.As<v8::String>()->Length() > kLongestKnown) {
        static std::string& other = *new std::string;
        other = ReadText(value);
        return other;
    }
    const v8::Local<v8::String> string = value.As<v8::String>();
    Places& places = PlacesFor(string);
    if (places[0]->string == string) return places[0]->text;
    std::swap(places[0], places[1]);
    KnownText& place = *places[0];
    if (place.string == string) return place.text;
    place.text = ReadText(value);
    place.string.Reset(v8::Isolate::GetCurrent(), string);
    place.string.SetWeak(&place, Forget, v8::WeakCallbackType::kParameter);
    return place.text;
}

}  // namespace quiravent
