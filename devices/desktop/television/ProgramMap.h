#pragma once

#include <vector>

#include "television/MultiplexDescription.h"
#include "television/Section.h"

namespace quiravent::desktop {

/// What a program map section tells.
struct ProgramMap {
    Pid pcrPid = kNullPid;
    std::vector<ElementaryStream> streams;
};

ProgramMap parseProgramMap(const Section& section);

}  // namespace quiravent::desktop
