#pragma once

#include <string_view>

namespace quiravent::desktop {

/// Stands for each maximal part of bytes that isn't well-formed.
constexpr char32_t kReplacementCharacter = 0xFFFD;

/// Takes the first character off `text`, which must not be empty. Bytes that aren't well-formed
/// (stray or missing continuation bytes, overlong forms, surrogates, values above U+10FFFF) give
/// U+FFFD, one for each maximal subpart as the Unicode Standard recommends (section 3.9).
char32_t takeUtf8Character(std::string_view& text);

}  // namespace quiravent::desktop
