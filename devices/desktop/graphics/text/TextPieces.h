#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quiravent::desktop {

/// Longest text, in characters, that is shaped at once.
constexpr size_t kMaxPieceLength = 4096;

/// Takes the next piece off `text`: all of it if it is short enough, else up to and with the last
/// space that a piece can hold, else a piece's full length. Decoded from UTF-8, with every control
/// character and line separator turned into a space.
std::u32string takePiece(std::string_view& text);

}  // namespace quiravent::desktop
