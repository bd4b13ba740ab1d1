#pragma once

#include <map>
#include <string>

#include "display/DisplayInput.h"
#include "sdl/Sdl.h"

namespace quiravent::desktop {

/// Turns what SDL tells of the keyboard into keys that go down and come up.
class Keyboard {
  public:
    /// Both outlive the keyboard.
    Keyboard(const Sdl& sdl, const DisplayInput& input) : m_sdl(sdl), m_input(input) {}

    void handle(const SDL_KeyboardEvent& event);

    /// Lets go of all keys, when nothing more will be heard of them.
    void releaseAll();

  private:
    void press(const SDL_Keysym& key);
    void release(SDL_Scancode place);

    const Sdl& m_sdl;
    const DisplayInput& m_input;
    std::map<SDL_Scancode, std::string> m_held;  ///< the name under which each was pressed
};

}  // namespace quiravent::desktop
