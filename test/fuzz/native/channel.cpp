// Messages of the service selector pipe: as the module reads them, and as the device writes them.

#include <cstring>

#include "Input.h"
#include "interfaces/ServiceSelectorMessage.h"
#include "platform/ServiceSelectorPipe.h"
#include "support/DeviceError.h"

namespace {

using namespace quiravent;
using desktop::ServiceSelectorPipe;

void read(const std::string& bytes) {
    // Exactly as long as what was read, so that a step beyond is seen.
    std::vector<char> buffer(bytes.begin(), bytes.end());
    buffer.push_back('\0');
    const auto message = ParseServiceSelectorMessage(buffer.data());
    if (!message) return;
    for (const char* text : {message->name, message->value}) {
        fuzz::expect(*text != '\0' && std::strchr(text, '\n') == nullptr);
    }
}

/// What the device lets through has to arrive as it was.
void writeAndRead(const std::string& name, const std::string& value) {
    try {
        std::string bytes = ServiceSelectorPipe::message(name, value);
        fuzz::expect(bytes.size() <= ServiceSelectorPipe::kMessageBytes);
        const auto message = ParseServiceSelectorMessage(bytes.data());
        fuzz::expect(message && message->name == name && message->value == value);
    } catch (const desktop::DeviceError&) {
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string bytes = fuzz::textOf(data, size);
    read(bytes.substr(0, ServiceSelectorPipe::kMessageBytes));
    const size_t middle = bytes.find('\n');
    if (middle != std::string::npos) {
        writeAndRead(bytes.substr(0, middle), bytes.substr(middle + 1));
    }
    return 0;
}
