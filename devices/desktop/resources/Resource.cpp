#include "Resource.h"

#include "resources/HttpFetch.h"
#include "resources/LocalFile.h"
#include "resources/Location.h"

namespace quiravent::desktop {

namespace {

Result<Bytes> readFrom(const std::string& text, const ResourceLimits& limits) {
    const Result<Location> location = parseLocation(text);
    if (!location) return Failure{location.reason()};
    Result<Bytes> bytes = location->kind == Location::Kind::file
                              ? readLocalFile(location->target, limits.maxBytes)
                              : fetchHttp(location->target, limits);
    if (bytes && bytes->empty()) return Failure{"it is empty"};
    return bytes;
}

}  // namespace

Result<Bytes> readResource(const std::string& location, const ResourceLimits& limits) {
    Result<Bytes> bytes = readFrom(location, limits);
    if (!bytes) return Failure{"cannot read " + inQuotes(location) + ": " + bytes.reason()};
    return bytes;
}

}  // namespace quiravent::desktop
