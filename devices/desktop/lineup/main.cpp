// quiravent-lineup: makes multiplexes from descriptions. The launcher's verb `lineup` starts it.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "lineup/check/toJson.h"
#include "lineup/description/lineupFields.h"
#include "lineup/description/readLineup.h"
#include "lineup/makeMultiplex.h"
#include "media/Av.h"
#include "resources/LocalFile.h"
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

/// Prints what a file holds; whether nothing is wrong with it.
bool check(const std::string& path) {
    constexpr size_t kMostBytes = size_t{1} << 30;
    const Result<Bytes> bytes = readLocalFile(path, kMostBytes);
    if (!bytes) {
        throw DeviceError(e_pl_status_io_error, joined(path, " can't be read: ", bytes.reason()));
    }
    const lineup::Inspection inspection = lineup::inspect({bytes->data(), bytes->size()});
    std::puts(lineup::toJson(inspection).dump(2).c_str());
    return inspection.problems.empty();
}

int run(const std::vector<std::string>& words) {
    if (words.size() == 3 && words[0] == "make") {
        make(words[1], words[2]);
    } else if (words.size() == 2 && words[0] == "check") {
        return check(words[1]) ? 0 : 1;
    } else if (words.size() == 1 && words[0] == "schema") {
        std::puts(lineup::lineupSchema().dump(2).c_str());
    } else {
        std::fputs("quiravent-lineup: use 'make FILE.json OUT.ts', 'check FILE.ts' or 'schema'\n",
                   stderr);
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
