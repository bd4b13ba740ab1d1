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

/// The number by which a map tells a codec; that of private data where descriptors have to.
uint8_t streamTypeOf(StreamCodec codec);

}  // namespace quiravent::desktop
