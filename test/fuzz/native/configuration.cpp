// The configuration: as a file, and as each of the variables of the environment; with it the map of
// the keyboard, the properties of the platform and the faults of the network.

#include <sys/mman.h>
#include <unistd.h>

#include "Input.h"
#include "config/readConfiguration.h"
#include "config/settings.h"
#include "input/KeyMap.h"
#include "support/DeviceError.h"
#include "support/FileDescriptor.h"

namespace {

using namespace quiravent::desktop;

/// Reads with one variable set; what is refused is told on one line.
void readWith(const std::string& variable, const std::string& value) {
    const auto environment = [&](const char* name) {
        return variable == name ? value.c_str() : nullptr;
    };
    try {
        const Configuration configuration = readConfiguration(environment);
        const KeyMap keys(configuration.input.keyMap);
    } catch (const DeviceError& error) {
        quiravent::fuzz::expect(std::string(error.what()).find('\n') == std::string::npos);
    }
}

void readAsFile(const std::string& bytes) {
    const FileDescriptor file(::memfd_create("configuration", MFD_CLOEXEC));
    const bool isWritten =
        ::write(file.number(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    quiravent::fuzz::expect(isWritten);
    readWith("QUIRAVENT_CONFIG", "/proc/self/fd/" + std::to_string(file.number()));
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes = quiravent::fuzz::textOf(data, size);
    readAsFile(bytes);
    const std::string text = bytes.substr(0, bytes.find('\0'));
    if (text.empty()) return 0;
    const auto& all = settings();
    readWith(all.at(static_cast<uint8_t>(text[0]) % all.size()).place.environment, text.substr(1));
    return 0;
}
