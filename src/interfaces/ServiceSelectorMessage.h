#pragma once

#include <optional>

namespace quiravent {

/// What another process tells the application; the texts lie within the bytes that were read.
struct ServiceSelectorMessage {
    const char* name;
    const char* value;
};

/// The first two texts between line feeds, empty ones left out; none when there are fewer.
/// \param bytes end with the first zero byte; they are cut where the texts end
std::optional<ServiceSelectorMessage> ParseServiceSelectorMessage(char* bytes);

}  // namespace quiravent
