#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "television/FileSource.h"
#include "television/NetworkSource.h"
#include "television/TransportSource.h"
#include "television/adapter/FrontEnd.h"

namespace quiravent::desktop {

struct AdapterRequest {
    unsigned adapter = 0;
    unsigned frontEnd = 0;
    Tuning tuning;
};

/// What is to be received.
struct TuneRequest {
    std::variant<FileRequest, NetworkRequest, AdapterRequest> source;
    std::optional<uint16_t> program;  ///< without which the multiplex isn't the one that is meant
};

std::unique_ptr<TransportSource> makeSource(const TuneRequest& request);

/// Reads the two texts of a selection, as docs/television.md tells. lineUp: path of the file with
/// the names of multiplexes; empty: none. Throws TunerError.
TuneRequest parseSelection(const std::string& selector, const std::string& option,
                           const std::string& lineUp);

}  // namespace quiravent::desktop
