// Prints the JSON schema of the configuration file, as it is kept in quiravent.schema.json.

#include <cstdio>
#include <exception>

#include "config/settings.h"

int main() {
    try {
        return std::puts(quiravent::desktop::configurationSchema().dump(2).c_str()) < 0 ? 1 : 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
