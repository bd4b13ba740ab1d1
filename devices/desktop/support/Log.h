#pragma once

#include <array>
#include <string_view>

#include "support/Text.h"

/// The device's own messages: one line each on standard error, as "quiravent: warning: TEXT".
/// Callable from every thread, also before the configuration is read and while the process ends;
/// never throws.
namespace quiravent::desktop::log {

/// In order of rising chattiness. A message is written when its level is at most the one set;
/// `silent` is for setting only.
enum class Level { silent, error, warning, info, debug };

/// Names of the levels, in their order: as they are configured, and as they stand in a line.
inline constexpr std::array<const char*, 5> kLevelNames{"silent", "error", "warning", "info",
                                                        "debug"};

/// At the start: Level::warning.
void setLevel(Level level) noexcept;
bool isEnabled(Level level) noexcept;

/// Control characters of the message are written as \n, \t or \xNN, so that it stays one line.
void write(Level level, std::string_view message) noexcept;

/// Writes the parts, joined, if the level is enabled; see joined() for what a part may be.
template <class... Parts>
void error(const Parts&... parts) {
    if (isEnabled(Level::error)) write(Level::error, joined(parts...));
}
template <class... Parts>
void warning(const Parts&... parts) {
    if (isEnabled(Level::warning)) write(Level::warning, joined(parts...));
}
template <class... Parts>
void info(const Parts&... parts) {
    if (isEnabled(Level::info)) write(Level::info, joined(parts...));
}
template <class... Parts>
void debug(const Parts&... parts) {
    if (isEnabled(Level::debug)) write(Level::debug, joined(parts...));
}

}  // namespace quiravent::desktop::log
