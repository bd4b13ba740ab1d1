// Colour texts, blend names and the other words of a canvas, over a device that does nothing.

#include <stdexcept>

#include "Input.h"
#include "interfaces/Canvas.h"

namespace {

/// A hexadecimal colour without digits is thrown out of the module, by design.
void setColor(Canvas& canvas, const std::string& text) {
    try {
        canvas.SetColor(text);
    } catch (const std::invalid_argument&) {
        quiravent::fuzz::expect(!text.empty() && text[0] == '#');
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Canvas& canvas = *new Canvas(8, 8, e_GraphicServices_CanvasType_Offscreen, 0);
    const std::string text = quiravent::fuzz::textOf(data, size);
    setColor(canvas, text);
    // Texts end at their first NUL when they come from a script.
    setColor(canvas, "#" + text.substr(0, text.find('\0')));
    canvas.SetPorterDuff(text);
    canvas.SetTextAlign(text, text);
    canvas.DrawEllipse(text, 1, 2, 3, 4, 5, 6);
    return 0;
}
