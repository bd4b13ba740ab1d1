#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>

#include "drawing/DrawingContext.h"
#include "graphics/KernelSets.h"
#include "graphics/text/Font.h"

// Central scenes of drawing, for counting instructions: scenes NAME FRAMES draws a scene once, then
// FRAMES times within runFrames(), which is what is to be counted. Without arguments it names them.

using namespace quiravent::desktop;

extern "C" __attribute__((noinline)) void runFrames(const std::function<void(uint32_t)>& frame,
                                                    uint32_t count) {
    for (uint32_t i = 1; i <= count; ++i) frame(i);
}

namespace {

constexpr uint32_t kWidth = 1280;
constexpr uint32_t kHeight = 720;
constexpr uint32_t kPictures = 40;

SurfacePool& pool() {
    static SurfacePool made(size_t{256} << 20);
    return made;
}

/// A picture whose alpha falls from left to right, or an opaque one.
std::shared_ptr<Surface> newPicture(uint32_t width, uint32_t height, bool opaque) {
    auto surface = pool().create(width, height);
    for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
            const uint32_t alpha = opaque ? 255 : 230 - x * 200 / width;
            const uint32_t level = (x * 7 + y * 13) % (alpha + 1);
            surface->row(y)[x] = alpha << 24 | level << 16 | (alpha - level) << 8 | level / 2;
        }
    }
    surface->setOpaque(opaque);
    return surface;
}

std::shared_ptr<Font> newFont() {
    std::ifstream file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    auto font = Font::load(std::move(bytes), 24);
    if (!font) {
        std::fprintf(stderr, "DejaVu Sans: %s\n", font.reason().c_str());
        std::exit(1);
    }
    return *font;
}

struct Stage {
    // One thread, since the other's instructions wouldn't be counted.
    std::shared_ptr<CanvasShare> share = std::make_shared<CanvasShare>(size_t{32} << 20, 1);
    DrawingContext context{pool().create(kWidth, kHeight), share};
    Canvas& canvas = context.canvas();
    std::shared_ptr<Font> font = newFont();
    std::shared_ptr<Surface> poster = newPicture(320, 480, true);
    std::shared_ptr<Surface> faded = newPicture(160, 240, false);
    std::shared_ptr<Surface> background = newPicture(kWidth, kHeight, true);
};

uint32_t gridX(uint32_t i, uint32_t width) { return i % 8 * ((kWidth - width) / 7); }
uint32_t gridY(uint32_t i, uint32_t height) { return i / 8 * ((kHeight - height) / 4); }

void writeLines(Stage& stage, const std::string& beginning) {
    for (uint32_t i = 0; i < 60; ++i) {
        const std::string text =
            beginning + "Élève de l’été, où le cœur à la fenêtre " + std::to_string(i);
        stage.context.drawText(i % 2 * 640 + 10, i / 2 * 24 + 20, text);
    }
}

void drawHome(Stage& stage) {
    stage.canvas.compose(*stage.background, 0, 0);
    for (uint32_t i = 0; i < kPictures; ++i) {
        const Rect to{40 + i % 8 * 152, 60 + i / 8 * 126, 144, 96};
        const Rect part{0, i, 320, 213};
        stage.canvas.composeScaled(*stage.poster, to, &part);
        stage.context.drawText(to.x, to.y + 118, "Film no. " + std::to_string(i));
    }
}

using Scene = std::function<void(Stage&, uint32_t frame)>;

const std::map<std::string, Scene>& scenes() {
    static const std::map<std::string, Scene> all = {
        {"fill-half",
         [](Stage& stage, uint32_t) {
             stage.canvas.setColor({40, 80, 120, 128});
             stage.canvas.fillRect({0, 0, kWidth, kHeight});
         }},
        {"rectangles-half",
         [](Stage& stage, uint32_t) {
             stage.canvas.setColor({40, 80, 120, 128});
             for (uint32_t i = 0; i < 200; ++i) {
                 stage.canvas.fillRect({i * 53 % 1220, i * 97 % 680, 60, 40});
             }
         }},
        {"blit-gradient",
         [](Stage& stage, uint32_t) {
             for (uint32_t i = 0; i < kPictures; ++i) {
                 stage.canvas.compose(*stage.faded, gridX(i, 160), gridY(i, 240));
             }
         }},
        {"zoom",
         [](Stage& stage, uint32_t frame) {
             const Rect to{200, 100, 120 + frame * 37 % 181, 180 + frame * 7 % 271};
             stage.canvas.composeScaled(*stage.poster, to);
         }},
        {"rotation",
         [](Stage& stage, uint32_t) {
             stage.canvas.setRotation(28.6);
             stage.canvas.compose(*stage.poster, 480, 120);
         }},
        {"text", [](Stage& stage, uint32_t) { writeLines(stage, "100 "); }},
        {"changing-text",
         [](Stage& stage, uint32_t frame) {
             writeLines(stage, std::to_string(100 + frame) + ' ');
         }},
        {"ellipses",
         [](Stage& stage, uint32_t) {
             for (uint32_t i = 0; i < kPictures; ++i) {
                 const auto style = i % 2 == 0 ? EllipseStyle::fill : EllipseStyle::outline;
                 const bool arc = i % 3 == 0;
                 stage.canvas.drawEllipse(style, 80 + i % 8 * 160, 80 + i / 8 * 140, 40 + i % 5 * 8,
                                          30 + i % 4 * 9, arc ? 30 : 0, arc ? 250 : 360);
             }
         }},
        {"lines",
         [](Stage& stage, uint32_t) {
             for (uint32_t i = 0; i < 200; ++i) {
                 stage.canvas.drawLine(i * 131 % kWidth, i * 71 % kHeight, (i * 257 + 400) % kWidth,
                                       (i * 173 + 300) % kHeight);
             }
         }},
        {"home", [](Stage& stage, uint32_t) { drawHome(stage); }},
    };
    return all;
}

}  // namespace

int main(int count, char** words) {
    if (count != 3 || scenes().count(words[1]) == 0) {
        for (const auto& [name, scene] : scenes()) std::printf("%s\n", name.c_str());
        return count == 1 ? 0 : 2;
    }
    // The same code whatever the machine, so that its count is.
    if (!selectKernels("sse4.1")) return 3;
    Stage stage;
    stage.context.setFont(stage.font);
    const Scene& scene = scenes().at(words[1]);
    for (uint32_t i = 0; i < 3; ++i) scene(stage, i * 1000);
    runFrames([&](uint32_t frame) { scene(stage, frame); },
              static_cast<uint32_t>(std::strtoul(words[2], nullptr, 10)));
    return 0;
}
