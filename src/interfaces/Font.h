#pragma once

#include <cstdint>
#include <mutex>
#include <set>
#include <string>

class Canvas;

/// One loaded font of the porting layer. As with Canvas, a class-wide registry tells by address
/// which fonts exist. Made on any thread, destroyed on the script thread.
class Font {
  public:
    /// \param path what it names is the device's affair
    /// \param size in the device's unit; the device gets its low 8 bits
    /// \throws std::runtime_error when the device refuses
    Font(const std::string& path, unsigned int size);

    /// Takes the font away from every canvas that has any font bound, this one or another: the
    /// registry of bound canvases doesn't say which font it is. Deliberate; a script sets a font
    /// again to see text. Then releases the handle.
    ~Font();

    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /// Safe on a pointer to a font that is gone: only the address is looked at.
    bool IsInvalid() const;
    uint32_t Handle() const { return m_handle; }

    void BindCanvas(Canvas* canvas);
    void UnbindCanvas(Canvas* canvas);

    /// Deletes every font.
    static void CleanUp();

  private:
    uint32_t m_handle = 0;
    [[maybe_unused]] uint32_t m_size;

    static std::set<const Font*> s_set;
    static std::recursive_mutex s_set_mutex;
    static std::set<Canvas*> s_set_canvas;
    static std::recursive_mutex s_set_canvas_mutex;
};
