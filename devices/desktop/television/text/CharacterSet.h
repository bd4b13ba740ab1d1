#pragma once

#include <iconv.h>

#include <string>

#include "television/ByteReader.h"

namespace quiravent::desktop {

/// A character set that the C library knows.
class CharacterSet {
  public:
    /// name: as iconv_open() takes it. A set that this machine lacks decodes ASCII only.
    explicit CharacterSet(const char* name);
    ~CharacterSet();
    CharacterSet(const CharacterSet&) = delete;
    CharacterSet& operator=(const CharacterSet&) = delete;

    /// Each byte that begins no character of the set becomes U+FFFD.
    std::u32string decode(ByteView bytes) const;

  private:
    iconv_t m_converter;
};

constexpr char32_t kUnknownCharacter = 0xFFFD;

std::string toUtf8(const std::u32string& text);

}  // namespace quiravent::desktop
