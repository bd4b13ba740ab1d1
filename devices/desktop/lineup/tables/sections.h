#pragma once

#include <vector>

#include "lineup/description/Lineup.h"
#include "lineup/tables/ByteWriter.h"

/// The tables of a multiplex as sections with their checksums (ISO/IEC 13818-1, ETSI EN 300 468).
/// All texts have been checked by completeLineup().
namespace quiravent::desktop::lineup {

using Sections = std::vector<Bytes>;

/// Whether there is a network information table: with a name, or for ISDB, which is known by it.
bool hasNetworkTable(const Lineup& lineup);

/// Program association table.
Sections associationTable(const Lineup& lineup);
/// Program map table.
Sections mapTable(const Service& service);
/// Service description table.
Sections descriptionTable(const Lineup& lineup);
/// Network information table.
Sections networkTable(const Lineup& lineup);
/// Event information table of what is on and what is on next, of all services that tell it.
Sections eventTable(const Lineup& lineup);
/// Time and date table, or time offset table with ISDB. time: seconds since the beginning of 1970,
/// UTC.
Sections timeTable(Standard standard, int64_t time);

}  // namespace quiravent::desktop::lineup
