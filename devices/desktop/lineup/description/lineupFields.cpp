#include "lineup/description/lineupFields.h"

#include "lineup/description/values.h"

namespace quiravent::desktop::lineup {

namespace {

using nlohmann::ordered_json;

constexpr uint64_t kLeastPid = 0x20;
constexpr uint64_t kMostPid = kNullPid - 1;
constexpr uint64_t kMostWord = 0xFFFF;

ordered_json textSchema(size_t leastLength) {
    return {{"type", "string"}, {"minLength", leastLength}};
}

template <class Target>
Field<Target> pidField(std::string key, std::string description, Pid Target::*member) {
    return numberField(std::move(key), std::move(description), kLeastPid, kMostPid, member);
}

template <class Target>
Field<Target> nameField(std::string key, std::string description, std::string Target::*member) {
    return readField(std::move(key), std::move(description), "a text without control characters",
                     textSchema(1), readName, member);
}

template <class Target>
Field<Target> languageField(std::string Target::*member) {
    return readField("language", "Language, by ISO 639-2; by default \"por\".",
                     "three small letters of ISO 639-2, as \"por\"",
                     {{"type", "string"}, {"pattern", "^[a-z]{3}$"}}, readLanguage, member);
}

template <class Target, class Time>
Field<Target> timeField(std::string key, std::string description, Time Target::*member) {
    return readField(std::move(key), std::move(description), "seconds from 0 to 86400",
                     {{"type", "number"}, {"minimum", 0}, {"maximum", 86400}}, readTime, member);
}

constexpr const char* kDateRule = "a date as \"2026-11-21T20:00:00-03:00\", of 1970 to 2037";

ordered_json dateSchema() { return {{"type", "string"}, {"format", "date-time"}}; }

std::optional<std::optional<int64_t>> readOptionalDate(const nlohmann::json& value) {
    const std::optional<int64_t> date = readDate(value);
    return date ? std::optional(date) : std::nullopt;
}

std::optional<std::optional<uint16_t>> readWord(const nlohmann::json& value) {
    if (!value.is_number_unsigned() || value.get<uint64_t>() > kMostWord) return std::nullopt;
    return std::optional(value.get<uint16_t>());
}

const Fields<Event>& eventFields() {
    static const Fields<Event> fields{
        numberField("id", "Identifier; by default counted.", 1, kMostWord, &Event::id),
        required(nameField("name", "What is shown as its name.", &Event::name)),
        readField("text", "What it is about.", "a text without control characters", textSchema(0),
                  readText, &Event::text),
        languageField(&Event::language),
        required(readField("start", "When it begins.", kDateRule, dateSchema(), readDate,
                           &Event::start)),
        required(numberField("duration", "For how long, in seconds.", 1, 359999, &Event::duration)),
    };
    return fields;
}

const Fields<Caption>& captionFields() {
    static const Fields<Caption> fields{
        required(timeField("from", "Second of the loop from which it is seen.", &Caption::from)),
        required(timeField("to", "Second of the loop until which it is seen.", &Caption::to)),
        required(readField("text", "The text, with \\n between lines.",
                           "a text with line feeds as the only control characters", textSchema(1),
                           readLines, &Caption::text)),
    };
    return fields;
}

const Fields<Captions>& captionsFields() {
    static const Fields<Captions> fields{
        flagField("cea608", "Whether CEA-608 is written, channel CC1; by default true.",
                  &Captions::cea608),
        flagField("cea708", "Whether CEA-708 is written, service 1; by default true.",
                  &Captions::cea708),
        languageField(&Captions::language),
        required(listField("texts", "The captions, one after the other.", 1, 10000, captionFields(),
                           &Captions::texts)),
    };
    return fields;
}

const Fields<Subtitles>& subtitlesFields() {
    static const Fields<Subtitles> fields{
        pidField("pid", "Packet identifier; by default counted.", &Subtitles::pid),
        languageField(&Subtitles::language),
        required(listField("texts", "The subtitles, one after the other.", 1, 10000,
                           captionFields(), &Subtitles::texts)),
    };
    return fields;
}

template <class Target>
Field<Target> bitRateField(uint64_t least, uint64_t most, uint32_t Target::*member,
                           const char* byDefault) {
    return numberField("bitRate", joined("Bits per second; by default ", byDefault, '.'), least,
                       most, member);
}

const Fields<Video>& videoFields() {
    static const Fields<Video> fields{
        pidField("pid", "Packet identifier; by default counted.", &Video::pid),
        choiceField("codec", "How it is coded; by default \"h264\".", {"h264", "mpeg2"},
                    &Video::codec),
        numberField("width", "Of the picture, in pixels; by default 640.", 128, 1920,
                    &Video::width),
        numberField("height", "Of the picture, in pixels; by default 360.", 96, 1088,
                    &Video::height),
        readField("frameRate", "Pictures per second; by default 25.", kFrameRates,
                  {{"enum", {23.976, 24, 25, 29.97, 30, 50, 59.94, 60}}}, readFrameRate,
                  &Video::rate),
        bitRateField(50000, 30000000, &Video::bitRate, "800000"),
        readField("colour", "Of the test picture; by default one of the service's own.",
                  "a colour as \"#1060A0\"", {{"type", "string"}, {"pattern", "^#[0-9A-Fa-f]{6}$"}},
                  readColour, &Video::colour),
        flagField("copy", "Takes the medium's video as it is coded; by default false.",
                  &Video::copy),
    };
    return fields;
}

const Fields<Audio>& audioFields() {
    static const Fields<Audio> fields{
        pidField("pid", "Packet identifier; by default counted.", &Audio::pid),
        choiceField("codec", "How it is coded; by default \"aac\".", {"aac", "mp2"}, &Audio::codec),
        languageField(&Audio::language),
        bitRateField(64000, 320000, &Audio::bitRate, "96000"),
        readField(
            "tone", "Frequency of the test sound, in Hz; by default one of the service's own.",
            "a number from 20 to 20000", {{"type", "number"}, {"minimum", 20}, {"maximum", 20000}},
            readTone, &Audio::tone),
        numberField("track", "Which of the medium's sound tracks; by default 1.", 1, 32,
                    &Audio::track),
        flagField("copy", "Takes the medium's sound as it is coded; by default false.",
                  &Audio::copy),
    };
    return fields;
}

const Fields<Service>& serviceFields() {
    static const Fields<Service> fields{
        numberField("id", "Identifier of the service, its program number; by default counted.", 1,
                    kMostWord, &Service::id),
        required(nameField("name", "Name of the service.", &Service::name)),
        nameField("provider", "Who sends it; by default \"Quiravent\".", &Service::provider),
        pidField("mapPid", "Packet identifier of its map; by default counted.", &Service::mapPid),
        pidField("pcrPid", "Packet identifier of its clock; by default that of its video.",
                 &Service::pcrPid),
        readField("media", "File with its video and sound; without one, test picture and tone.",
                  "the path of a file, absolute or from this file's folder", textSchema(1),
                  readPath, &Service::media),
        objectField("video", "Its video; null: none.", ", or null for none", videoFields(),
                    &Service::video),
        listField("audio", "Its sound tracks; by default one.", 0, 8, audioFields(),
                  &Service::audio),
        objectField("captions", "Captions that go with the pictures.", "", captionsFields(),
                    &Service::captions),
        objectField("subtitles", "DVB subtitles.", "", subtitlesFields(), &Service::subtitles),
        objectField("present", "What is on.", "", eventFields(), &Service::present),
        objectField("following", "What is on next.", "", eventFields(), &Service::following),
    };
    return fields;
}

}  // namespace

const Fields<Lineup>& lineupFields() {
    static const Fields<Lineup> fields{
        readField("$schema", "Where this schema lies.", "a text", textSchema(0), readText,
                  &Lineup::schema),
        numberField("transportStreamId", "Identifier of the multiplex; by default 1.", 0, kMostWord,
                    &Lineup::transportStreamId),
        numberField("originalNetworkId", "Network that it comes from; by default 1.", 0, kMostWord,
                    &Lineup::originalNetworkId),
        readField("networkId", "Network that sends it; by default the original one.",
                  "a whole number from 0 to 65535",
                  {{"type", "integer"}, {"minimum", 0}, {"maximum", kMostWord}}, readWord,
                  &Lineup::networkId),
        nameField("networkName", "Name of the network.", &Lineup::networkName),
        choiceField("standard",
                    "By which texts and times are written: of Europe, or of Brazil; by default "
                    "\"dvb\".",
                    {"dvb", "isdb"}, &Lineup::standard),
        numberField("bitRate", "Bits per second; by default as few as suffice.", 200000, 80000000,
                    &Lineup::bitRate),
        readField("duration",
                  "Of the loop, in seconds; rounded up so that pictures and sounds fit into it. By "
                  "default 10.",
                  "seconds from 1 to 300", {{"type", "number"}, {"minimum", 1}, {"maximum", 300}},
                  readDuration, &Lineup::duration),
        readField("startTime", "The time that the multiplex tells at its beginning.", kDateRule,
                  dateSchema(), readOptionalDate, &Lineup::startTime),
        readField("font", "TrueType or OpenType font of names and subtitles in pictures.",
                  "the path of a file, absolute or from this file's folder", textSchema(1),
                  readPath, &Lineup::font),
        required(listField("services", "The services, in their order.", 1, 32, serviceFields(),
                           &Lineup::services)),
    };
    return fields;
}

ordered_json lineupSchema() {
    ordered_json schema{{"$schema", "http://json-schema.org/draft-07/schema#"},
                        {"title", "Line-up of a multiplex, for quiravent lineup make"}};
    schema.update(schemaOf(lineupFields()));
    return schema;
}

}  // namespace quiravent::desktop::lineup
