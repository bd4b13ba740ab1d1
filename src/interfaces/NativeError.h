#pragma once

#include <stdexcept>
#include <string>

namespace quiravent {

/// What a native constructor throws when it can't succeed. The text names the class, the place of
/// the check and the reason: "Canvas Canvas.cpp:87 :: Invalid dimensions (...)".
///
/// The line is part of the text and names the check; it stays when the code around it moves.
inline std::runtime_error NativeError(const char* className, int line, const std::string& message) {
    const std::string name = className;
    return std::runtime_error(name + " " + name + ".cpp:" + std::to_string(line) +
                              " :: " + message);
}

}  // namespace quiravent
