#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "lineup/description/Lineup.h"

/// Values of the file that JSON has no type for. Each reader gives none for what isn't allowed.
namespace quiravent::desktop::lineup {

/// A text without control characters.
std::optional<std::string> readText(const nlohmann::json& value);
/// The same with at least one character.
std::optional<std::string> readName(const nlohmann::json& value);
/// The same with line feeds.
std::optional<std::string> readLines(const nlohmann::json& value);
/// Three small letters of ISO 639-2.
std::optional<std::string> readLanguage(const nlohmann::json& value);
/// A path without NUL.
std::optional<std::string> readPath(const nlohmann::json& value);
/// "#RRGGBB".
std::optional<std::optional<uint32_t>> readColour(const nlohmann::json& value);
/// Seconds from 0 to a day, in milliseconds.
std::optional<int64_t> readTime(const nlohmann::json& value);
/// Seconds from 1 to 300, in milliseconds.
std::optional<int64_t> readDuration(const nlohmann::json& value);
/// A frequency of 20 to 20000 Hz.
std::optional<double> readTone(const nlohmann::json& value);
/// One of the frame rates of television: see kFrameRates.
std::optional<FrameRate> readFrameRate(const nlohmann::json& value);
constexpr const char* kFrameRates = "23.976, 24, 25, 29.97, 30, 50, 59.94, 60";
/// A date with time and zone as "2026-11-21T20:00:00-03:00" or "2026-11-21T23:00:00Z", in seconds
/// since the beginning of 1970, UTC.
std::optional<int64_t> readDate(const nlohmann::json& value);

}  // namespace quiravent::desktop::lineup
