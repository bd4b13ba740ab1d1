#pragma once

#include <string>

#include "television/text/broadcastText.h"

namespace quiravent::desktop {

/// The text of ARIB STD-B24's 8-bit codes (part 2, 7.2), whose sets may be switched within it.
/// coding: which sets it begins with.
std::u32string isdbText(ByteView text, TextCoding coding);

}  // namespace quiravent::desktop
