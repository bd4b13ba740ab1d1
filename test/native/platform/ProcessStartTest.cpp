#include "platform/ProcessStart.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "common/TemporaryFolder.h"

namespace {

std::string outputOf(const std::string& command) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    for (int byte = std::fgetc(pipe.get()); byte != EOF; byte = std::fgetc(pipe.get())) {
        output += static_cast<char>(byte);
    }
    return output;
}

TEST(ProcessStart, IsRepeatedWhateverTheProcessHasMadeOfItself) {
    const TemporaryFolder folder;
    const std::string output =
        outputOf("cd " + folder.path() + " && QUIRAVENT_PROBE=kept '" QUIRAVENT_RESTART_PROBE "' " +
                 (folder / "marker") + " 'two words' '' ä 2>&1");
    EXPECT_EQ(output, "before, [two words][][ä] in " +
                          std::filesystem::canonical(folder.path()).string() +
                          ", kept 0, blocked 0, ignored 0, file 3 0, non-blocking 0\n");
}

}  // namespace
