#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "graphics/text/Font.h"

namespace quiravent::test {

/// Of the unit of advances and origins.
constexpr int64_t kPixel = 64;

/// DejaVu Sans, whose measures in font units the tests state.
constexpr double kUnitsPerEm = 2048;

const desktop::Bytes& testFontBytes();

/// Throws when it can't be loaded.
std::shared_ptr<desktop::Font> testFont(uint32_t pixelHeight);

/// What the masks say, in a form that can be compared: place and a hash of the coverage of each.
std::string described(const desktop::GlyphRun& run);

/// The text from (0, 0).
std::string laidOut(desktop::Font& font, const std::string& text);

}  // namespace quiravent::test
