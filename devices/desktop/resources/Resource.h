#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/Result.h"

namespace quiravent::desktop {

using Bytes = std::vector<uint8_t>;

/// What reading one resource may cost.
struct ResourceLimits {
    size_t maxBytes = size_t{64} << 20;

    /// For a transfer over the network as a whole, name look-up and redirects included.
    std::chrono::milliseconds timeout{15000};

    unsigned maxRedirects = 8;

    /// PEM file of who certifies servers; empty: whom the system trusts.
    std::string authorities;
};

/// Reads the whole of what `location` names:
///  - a path, absolute or relative to the working directory;
///  - a `file:` URL, percent-encoded, whose host is empty or "localhost"; query and fragment are
///    ignored;
///  - an `http://` or `https://` URL, redirects (to these two schemes only) followed, the proxy
///    variables of the environment heeded.
///
/// The bytes are never empty. The reason of a failure names the location. Never waits for
/// anything but a disk or, up to the time limit, the network: only regular files are read. May be
/// called from any thread, by several at once.
Result<Bytes> readResource(const std::string& location, const ResourceLimits& limits = {});

}  // namespace quiravent::desktop
