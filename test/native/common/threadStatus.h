#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace quiravent::test {

/// What the kernel tells of a thread in the file `stat` of its folder, from its state on; nothing
/// once it is gone.
inline std::vector<std::string> threadStatus(const std::filesystem::path& folder) {
    std::ifstream file(folder / "stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    // Its name, in parentheses, may hold any character.
    const size_t nameEnd = text.rfind(')');
    if (nameEnd == std::string::npos) return {};
    std::istringstream rest(text.substr(nameEnd + 1));
    return {std::istream_iterator<std::string>(rest), {}};
}

}  // namespace quiravent::test
