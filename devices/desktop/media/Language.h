#pragma once

#include <string>

namespace quiravent::desktop {

/// The ISO 639-2 (terminology) code of a language tag as media carry it: of two letters, of three,
/// or with subtags behind ("en-GB"). "und" for an empty or malformed tag.
std::string languageCode(const char* tag);

}  // namespace quiravent::desktop
