// Texts that applications and settings give: places of files, faults, keys, texts that are drawn.

#include <string_view>

#include "Input.h"
#include "graphics/text/Utf8.h"
#include "input/Keys.h"
#include "media/FaultList.h"
#include "resources/Location.h"

namespace {

void takeCharacters(std::string_view text) {
    while (!text.empty()) {
        const size_t before = text.size();
        quiravent::fuzz::expect(quiravent::desktop::takeUtf8Character(text) <= 0x10FFFF);
        quiravent::fuzz::expect(text.size() < before);
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quiravent::desktop;
    const std::string text = quiravent::fuzz::textOf(data, size);
    const auto location = parseLocation(text);
    if (location) {
        quiravent::fuzz::expect(location->target.find('\0') == std::string::npos);
    }
    quiravent::fuzz::expect(inQuotes(text).find('\n') == std::string::npos);
    (void)parseFaults(text);
    (void)remoteKeyCode(text);
    takeCharacters(text);
    return 0;
}
