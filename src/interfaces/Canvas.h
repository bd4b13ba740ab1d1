#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include "porting/pl_gfx.h"

class Font;

inline bool IsSame(const s_pl_gfx_color& one, const s_pl_gfx_color& other) {
    return one.r == other.r && one.g == other.g && one.b == other.b && one.a == other.a;
}

inline bool IsSame(const s_pl_gfx_rect& one, const s_pl_gfx_rect& other) {
    return one.x == other.x && one.y == other.y && one.w == other.w && one.h == other.h;
}

enum e_GraphicServices_CanvasType : uint32_t {
    e_GraphicServices_CanvasType_Target = 0,     ///< the screen; there is one at most
    e_GraphicServices_CanvasType_Adopted = 1,    ///< over a handle that the device already made
    e_GraphicServices_CanvasType_Offscreen = 2,  ///< made by pl_gfx_CreateCanvas
};

/// A drawing surface: one canvas handle of the porting layer, with a filter that keeps back calls
/// which would change nothing.
///
/// A class-wide registry knows every live object, and every operation first asks it, by address
/// alone, whether the object still exists. So a stale pointer may be asked anything: a canvas that
/// is gone or released does nothing, answers status 1 and gives zeros.
///
/// Coordinates and sizes are pixels and are passed on as they are. A status is the device's own,
/// 0 for success.
///
/// Threads: canvases are made on any thread, and used, released and destroyed on the script thread
/// alone. The locks of this class and of Font are taken in opposite orders by the two classes,
/// which is safe only because they nest on no other thread.
class Canvas {
  public:
    /// Adopts `handle`, or asks the device for one if it is 0: the screen for the target type, a
    /// new canvas otherwise.
    /// \throws std::runtime_error when width times height is 0 in 32 bits, or the device refuses
    Canvas(unsigned int width, unsigned int height, e_GraphicServices_CanvasType type,
           unsigned int handle);

    /// Unbinds the font, releases the handle and leaves the registry.
    ~Canvas();

    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    bool IsTarget() const;
    bool IsInvalid() const;

    /// The queries zero their outputs first and ask the device, never the filter.
    int32_t GetSize(unsigned int* w, unsigned int* h) const;
    int32_t GetColor(unsigned char* r, unsigned char* g, unsigned char* b, unsigned char* a) const;
    int32_t GetClip(unsigned int* x, unsigned int* y, unsigned int* w, unsigned int* h) const;
    /// Zero without a font or for an empty text.
    int32_t MeasureText(const std::string& text, unsigned int* w, unsigned int* h) const;

    void SetColor(unsigned char r, unsigned char g, unsigned char b, unsigned char a);
    /// A name of the colour table, "#RGB", "#RRGGBB" or "#RRGGBBAA"; any other text is white.
    /// \throws std::invalid_argument for a hexadecimal pair without a digit; nothing has changed
    void SetColor(const std::string& text);

    int32_t FillRect(unsigned int x, unsigned int y, unsigned int w, unsigned int h);
    int32_t ClearRect(unsigned int x, unsigned int y, unsigned int w, unsigned int h);
    int32_t DrawRect(unsigned int x, unsigned int y, unsigned int w, unsigned int h);
    int32_t DrawLine(unsigned int x1, unsigned int y1, unsigned int x2, unsigned int y2);
    void SetClip(unsigned int x, unsigned int y, unsigned int w, unsigned int h);
    int32_t SetRotation(double value);
    int32_t SetOpacity(double value);

    /// Null unbinds the font, which the device isn't told. A font that is gone changes nothing.
    void SetFont(Font* font);
    int32_t DrawText(const std::string& text, unsigned int x, unsigned int y);
    /// Words: "left", "center", "right" and "baseline", "top", "middle", "bottom"; any other word
    /// counts as the first of its row. Without a font nothing happens.
    int32_t SetTextAlign(const std::string& h, const std::string& v);

    int32_t Compose(Canvas* source, unsigned int x, unsigned int y);
    int32_t Compose(Canvas* source, unsigned int sx, unsigned int sy, unsigned int sw,
                    unsigned int sh, unsigned int x, unsigned int y);
    int32_t ComposeScaled(Canvas* source, unsigned int dx, unsigned int dy, unsigned int dw,
                          unsigned int dh, unsigned int sx, unsigned int sy, unsigned int sw,
                          unsigned int sh);
    int32_t Flush();
    int32_t Flush(unsigned int x, unsigned int y, unsigned int w, unsigned int h);
    /// Modes: "outline"; any other word fills.
    int32_t DrawEllipse(const std::string& mode, unsigned int xc, unsigned int yc,
                        unsigned int radiusx, unsigned int radiusy, double ang_start,
                        double ang_end);
    /// A name of the blend table; any other text is mode 0.
    int32_t SetPorterDuff(const std::string& name);

    /// Gives the handle back; the object stays, invalid for good.
    void Release();

    /// Deletes every canvas, the target too.
    static void CleanUp();

    /// The target canvas, or null. Read on the script thread only.
    static Canvas* s_target;

  private:
    uint32_t m_handle = 0;
    [[maybe_unused]] uint32_t m_width;
    [[maybe_unused]] uint32_t m_height;
    e_GraphicServices_CanvasType m_type;
    Font* m_font = nullptr;
    std::string m_color_name;
    // The start values of colour and clip mean that nothing has been applied yet.
    s_pl_gfx_color m_color = {0xAB, 0xBA, 0x57, 0x00};
    s_pl_gfx_rect m_clip = {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF};
    std::string m_align_h;
    std::string m_align_v;

    static const std::map<std::string, uint32_t> s_colors;
    static const std::map<std::string, e_pl_fgx_porter_duff> s_porter_duff_modes;
    static std::set<const Canvas*> s_set;
    static std::recursive_mutex s_set_mutex;
};
