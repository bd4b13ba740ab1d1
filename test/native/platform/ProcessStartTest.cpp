#include "platform/ProcessStart.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "common/TemporaryFolder.h"

namespace {

TEST(ProcessStart, IsRepeatedWhateverTheProcessHasMadeOfItself) {
    const TemporaryFolder folder;
    const std::string command = "cd " + folder.path() +
                                " && QUIRAVENT_PROBE=kept '" QUIRAVENT_RESTART_PROBE "' " +
                                (folder / "marker") + " 'two words' '' ä > output 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::ifstream file(folder / "output");
    const std::string output(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(output, "before, [two words][][ä] in " +
                          std::filesystem::canonical(folder.path()).string() +
                          ", kept 0, blocked 0, ignored 0, file 3 0, non-blocking 0\n");
}

}  // namespace
