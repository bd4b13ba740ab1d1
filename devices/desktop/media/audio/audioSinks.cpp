#include "media/audio/audioSinks.h"

#include <utility>

#include "media/audio/NullSink.h"
#include "media/audio/SoundCardSink.h"
#include "media/audio/WavSink.h"
#include "resources/Location.h"

namespace quiravent::desktop {

namespace {

using Made = Result<std::unique_ptr<AudioSink>>;

template <log::Level missing>
Made makeCard(const std::string&) {
    return std::unique_ptr<AudioSink>(std::make_unique<SoundCardSink>(missing));
}

Made makeNull(const std::string&) {
    return std::unique_ptr<AudioSink>(std::make_unique<NullSink>());
}

Made makeWav(const std::string& path) {
    Result<std::unique_ptr<WavSink>> sink = WavSink::create(path);
    if (!sink) return Failure{sink.reason()};
    return std::unique_ptr<AudioSink>(std::move(*sink));
}

struct Entry {
    const char* name;
    Made (*make)(const std::string& target);
};
constexpr Entry kSinks[] = {{"auto", makeCard<log::Level::info>},
                            {"device", makeCard<log::Level::warning>},
                            {"null", makeNull},
                            {"wav", makeWav}};

}  // namespace

std::vector<std::string> audioSinkNames() {
    std::vector<std::string> names;
    for (const Entry& entry : kSinks) names.emplace_back(entry.name);
    return names;
}

Result<std::unique_ptr<AudioSink>> createAudioSink(const std::string& name,
                                                   const std::string& target) {
    for (const Entry& entry : kSinks)
        if (name == entry.name) return entry.make(target);
    return Failure{"there is no audio sink " + inQuotes(name)};
}

}  // namespace quiravent::desktop
