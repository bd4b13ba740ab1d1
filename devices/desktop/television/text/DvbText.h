#pragma once

#include <string>

#include "television/ByteReader.h"

namespace quiravent::desktop {

/// The text of ETSI EN 300 468, annex A: the first bytes tell the character set.
std::u32string dvbText(ByteView text);

}  // namespace quiravent::desktop
