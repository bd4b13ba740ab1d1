#include "platform/ServiceSelectorPipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "common/TemporaryFolder.h"
#include "common/errorOf.h"

namespace quiravent::desktop {
namespace {

TEST(ServiceSelectorPipe, MessageIsNameAndValueOnLinesOfTheirOwn) {
    EXPECT_EQ(ServiceSelectorPipe::message("volume", "very low"), "volume\nvery low\n");
    const std::string longest(ServiceSelectorPipe::kMessageBytes - 3, 'x');
    const struct {
        std::string name;
        std::string value;
        std::string error;
    } cases[] = {
        {"n", longest, "none"},
        {"nm", longest, "name and value have 1023 bytes; allowed: at most 1022"},
        {"", "v", "name is empty; allowed: a text of one line"},
        {"n", "", "value is empty; allowed: a text of one line"},
        {"n\nm", "v", "name is of several lines or holds NUL; allowed: a text of one line"},
        {"n", std::string("v\0w", 3),
         "value is of several lines or holds NUL; allowed: a text of one line"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(test::errorOf([&] { ServiceSelectorPipe::message(each.name, each.value); }),
                  each.error);
}

TEST(ServiceSelectorPipe, IsWrittenWhereSomebodyListens) {
    const TemporaryFolder folder;
    const std::string path = folder / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::ofstream(folder / "file") << "text";
    const std::string nobody = ": no application listens; one does after initProperties()";
    const std::pair<std::string, std::string> cases[] = {
        {folder / "none", nobody},
        {path, nobody},
        {folder / "file", ": it isn't a pipe; remove it"},
        {folder.path(), ": Is a directory"},
    };
    for (const auto& [unfit, reason] : cases)
        EXPECT_EQ(test::errorOf([&, place = unfit] { const ServiceSelectorPipe pipe(place); }),
                  "the pipe " + unfit + reason);
    const FileDescriptor reader(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const ServiceSelectorPipe pipe(path);
    EXPECT_TRUE(pipe.isEmpty());
    pipe.write("n\nv\n");
    EXPECT_FALSE(pipe.isEmpty());
    char bytes[100];
    EXPECT_EQ(read(reader.number(), bytes, sizeof bytes), 4);
    EXPECT_TRUE(pipe.isEmpty());
}

}  // namespace
}  // namespace quiravent::desktop
