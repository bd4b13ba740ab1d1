#include "FontLoader.h"

#include <utility>

#include "resources/Location.h"

namespace quiravent::desktop {

Result<std::shared_ptr<Font>> loadFont(const std::string& location, uint32_t pixelHeight,
                                       const ResourceLimits& limits) {
    Result<Bytes> bytes = readResource(location, limits);
    if (!bytes) return Failure{bytes.reason()};
    auto font = Font::load(std::move(*bytes), pixelHeight);
    if (!font) return Failure{"cannot load font " + inQuotes(location) + ": " + font.reason()};
    return font;
}

}  // namespace quiravent::desktop
