#pragma once

#include <optional>
#include <string>

#include "lineup/description/Lineup.h"
#include "lineup/tables/ByteWriter.h"

namespace quiravent::desktop::lineup {

/// A text as a table carries it. DVB: without a mark where it has ASCII characters only, else
/// ISO 8859-15 or, for what that lacks, UTF-8, each with its mark (EN 300 468, annex A). ISDB:
/// ISO 8859-15 without a mark; none for a text with other characters. Text: UTF-8.
std::optional<Bytes> encodeText(Standard standard, const std::string& text);

}  // namespace quiravent::desktop::lineup
