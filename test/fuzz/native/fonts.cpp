// Font files, through the loader of the device, and texts drawn with what is taken for a font.

#include "Input.h"
#include "graphics/text/Font.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace quiravent::desktop;
    const auto font = Font::load(Bytes(data, data + size), 20);
    if (!font) {
        quiravent::fuzz::expect(!font.reason().empty());
        return 0;
    }
    constexpr const char* kText = "AVfi \u00E9\u0416 \u05D0\u0628\u0651 e\u0301";
    (void)(*font)->measure(kText);
    (void)(*font)->layout(kText, {0, 0}, {-100, -100, 500, 100});
    return 0;
}
