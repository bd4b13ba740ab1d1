#include "display/window/Keyboard.h"

namespace quiravent::desktop {

void Keyboard::handle(const SDL_KeyboardEvent& event) {
    if (event.type == SDL_KEYUP) {
        release(event.keysym.scancode);
    } else if (event.repeat == 0) {
        press(event.keysym);
    }
}

/// A key is known by what the keyboard's layout makes of it, or else by its place: on a French
/// keyboard the digits are had with Shift only, and the key is "&" where others have the 1.
void Keyboard::press(const SDL_Keysym& key) {
    if (m_held.count(key.scancode) != 0) return;
    for (const char* name : {m_sdl.GetKeyName(key.sym), m_sdl.GetScancodeName(key.scancode)}) {
        if (name[0] == '\0' || !m_input.key(name, true)) continue;
        m_held.emplace(key.scancode, name);
        return;
    }
}

void Keyboard::release(SDL_Scancode place) {
    const auto held = m_held.find(place);
    if (held == m_held.end()) return;
    m_input.key(held->second.c_str(), false);
    m_held.erase(held);
}

void Keyboard::releaseAll() {
    while (!m_held.empty()) release(m_held.begin()->first);
}

}  // namespace quiravent::desktop
