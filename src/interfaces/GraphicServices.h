#pragma once

#include <cstdint>
#include <string>

class Canvas;
class Font;

/// The factory of canvases and fonts. What their constructors throw ends here, as null. Results
/// belong to the caller, but for the target canvas, which lives on.
class GraphicServices {
  public:
    /// Made on first demand, 1280 by 720. Script thread only.
    static Canvas* GetTargetCanvas();
    static Canvas* CreateCanvas(unsigned int width, unsigned int height);
    /// Any thread; may take as long as a file or the network does.
    static Canvas* LoadImage(const std::string& path);
    static Font* LoadFont(const std::string& path, unsigned int size);
    /// Both outputs are 0 unless the device answered. The status 0xFFFF alone is a failure.
    static int32_t GetVRAMStats(int* used, int* free);
};
