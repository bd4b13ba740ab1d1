#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quiravent::desktop {

/// Writes a file as a whole: under another name first, so that whoever sees the file sees all of
/// it. Throws DeviceError, and leaves what was there, when it can't be written.
void writeFile(const std::string& path, const std::vector<uint8_t>& bytes);

}  // namespace quiravent::desktop
