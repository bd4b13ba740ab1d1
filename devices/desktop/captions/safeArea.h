#pragma once

namespace quiravent::desktop {

// The part of the picture that every screen shows, in parts of a side of the picture; captions are
// laid out in its rows.
constexpr double kSafeMargin = 0.1;
constexpr double kSafeSide = 0.8;
constexpr double kRowHeight = kSafeSide / 15;

}  // namespace quiravent::desktop
