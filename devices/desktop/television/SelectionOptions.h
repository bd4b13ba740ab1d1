#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quiravent::desktop {

/// Options of a selection, by their names. What is wrong with them is thrown as TunerError, with
/// the code for a wrong parameter.
class SelectionOptions {
  public:
    /// Adds those of a text as "name=value; name=value". Between them there may be spaces, commas,
    /// semicolons and ampersands. Names are told apart without regard to case. One that was there
    /// before is replaced.
    void add(const std::string& text);
    void set(const std::string& name, const std::string& value);

    // Takes an option out; none when it isn't there.
    std::optional<std::string> takeText(const std::string& name);
    std::optional<uint64_t> takeNumber(const std::string& name, uint64_t least, uint64_t most);
    /// The index of the value in the choices.
    std::optional<size_t> takeChoice(const std::string& name,
                                     const std::vector<std::string>& choices);

    /// All that may be there has been taken: refuses what is left.
    void expectEmpty() const;

  private:
    std::map<std::string, std::string> m_values;
    std::vector<std::string> m_taken;  ///< what has been asked for
};

}  // namespace quiravent::desktop
