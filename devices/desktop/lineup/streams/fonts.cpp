#include "lineup/streams/fonts.h"

#include "graphics/text/FontLoader.h"
#include "support/DeviceError.h"
#include "support/Text.h"

namespace quiravent::desktop::lineup {

std::shared_ptr<Font> openFont(const std::string& file, uint32_t height) {
    Result<std::shared_ptr<Font>> font = loadFont(file, height);
    if (!font) {
        throw DeviceError(e_pl_status_invalid_argument,
                          joined("the font of pictures can't be read: ", font.reason(),
                                 "; name another one as \"font\""));
    }
    return *font;
}

}  // namespace quiravent::desktop::lineup
