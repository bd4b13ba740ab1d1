// quiravent-lineup: makes multiplexes from descriptions. The launcher's verb `lineup` starts it.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "lineup/description/lineupFields.h"
#include "lineup/description/readLineup.h"
#include "lineup/makeMultiplex.h"
#include "media/Av.h"
#include "support/DeviceError.h"
#include "support/Text.h"
#include "support/writeFile.h"

namespace {

using namespace quiravent::desktop;

void make(const std::string& description, const std::string& output) {
    const lineup::Lineup lineup = lineup::readLineup(description);
    const std::vector<uint8_t> multiplex = lineup::makeMultiplex(lineup, description);
    try {
        writeFile(output, multiplex);
    } catch (const DeviceError& error) {
        throw DeviceError(error.status(), joined(output, " can't be written: ", error.what()));
    }
}

int run(const std::vector<std::string>& words) {
    if (words.size() == 3 && words[0] == "make") {
        make(words[1], words[2]);
    } else if (words.size() == 1 && words[0] == "schema") {
        std::puts(lineup::lineupSchema().dump(2).c_str());
    } else {
        std::fputs("quiravent-lineup: use 'make FILE.json OUT.ts' or 'schema'\n", stderr);
        return 2;
    }
    return 0;
}

}  // namespace

int main(int count, char** words) {
    try {
        quietAv();
        return run({words + 1, words + count});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quiravent: lineup: %s\n", error.what());
        return 1;
    }
}
