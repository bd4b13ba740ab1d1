#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "support/IgnoringCase.h"

namespace quiravent::desktop {

/// What the configuration says of keys of a keyboard, by SDL's names for them: the code of the
/// remote key that each stands for, or none.
using KeyBindings = std::map<std::string, std::optional<int32_t>, IgnoringCase>;

/// Which key of the remote control each key of the keyboard stands for.
class KeyMap {
  public:
    /// The bindings of Keys.def with these changes.
    explicit KeyMap(const KeyBindings& changes);

    /// keyboardKey: as SDL names it; the case of its letters makes no difference.
    std::optional<int32_t> codeOf(std::string_view keyboardKey) const;

    /// All keys that are bound, with their codes.
    const std::map<std::string, int32_t, IgnoringCase>& codes() const { return m_codes; }

  private:
    std::map<std::string, int32_t, IgnoringCase> m_codes;
};

}  // namespace quiravent::desktop
