#include "platform/ServiceSelectorPipe.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "common/TemporaryFolder.h"
#include "support/DeviceError.h"

namespace quiravent::desktop {
namespace {

template <class Body>
std::string errorOf(Body body) {
    try {
        body();
        return "none";
    } catch (const DeviceError& error) {
        return error.what();
    }
}

TEST(ServiceSelectorPipe, MessageIsNameAndValueOnLinesOfTheirOwn) {
    EXPECT_EQ(ServiceSelectorPipe::message("volume", "very low"), "volume\nvery low\n");
    const std::string longest(ServiceSelectorPipe::kMessageBytes - 3, 'x');
    EXPECT_EQ(ServiceSelectorPipe::message("n", longest).size(),
              ServiceSelectorPipe::kMessageBytes);
    const struct {
        std::string name;
        std::string value;
        std::string error;
    } cases[] = {
        {"", "v", "name is empty; allowed: a text of one line"},
        {"n", "", "value is empty; allowed: a text of one line"},
        {"n\nm", "v", "name is of several lines or holds NUL; allowed: a text of one line"},
        {"n", std::string("v\0w", 3),
         "value is of several lines or holds NUL; allowed: a text of one line"},
        {"nm", longest, "name and value have 1023 bytes; allowed: at most 1022"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(errorOf([&] { (void)ServiceSelectorPipe::message(each.name, each.value); }),
                  each.error);
    }
}

TEST(ServiceSelectorPipe, IsEmptyAgainWhenTheReaderHasTakenAll) {
    const TemporaryFolder folder;
    const std::string path = folder / "pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const FileDescriptor reader(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    const ServiceSelectorPipe pipe(path);
    EXPECT_TRUE(pipe.isEmpty());
    pipe.write("n\nv\n");
    EXPECT_FALSE(pipe.isEmpty());
    char bytes[100];
    EXPECT_EQ(read(reader.number(), bytes, sizeof bytes), 4);
    EXPECT_TRUE(pipe.isEmpty());
}

TEST(ServiceSelectorPipe, SaysWhyItCantBeWritten) {
    const TemporaryFolder folder;
    const std::string unread = folder / "unread";
    ASSERT_EQ(mkfifo(unread.c_str(), 0600), 0);
    std::ofstream(folder / "file") << "text";
    const std::string nobody = ": no application listens; one does after initProperties()";
    const struct {
        std::string path;
        std::string reason;
    } cases[] = {
        {folder / "none", nobody},
        {unread, nobody},
        {folder / "file", ": it isn't a pipe; remove it"},
        {folder.path(), ": Is a directory"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(errorOf([&] { const ServiceSelectorPipe pipe(each.path); }),
                  "the pipe " + each.path + each.reason);
    }
}

}  // namespace
}  // namespace quiravent::desktop
