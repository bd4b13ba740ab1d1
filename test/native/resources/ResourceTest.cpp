#include "resources/Resource.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <utility>

#include "common/ConnectionServer.h"
#include "common/ServerConnection.h"
#include "common/TemporaryFolder.h"
#include "support/FileDescriptor.h"

namespace quiravent::desktop {
namespace {

using std::chrono::milliseconds;
using test::ServerConnection;

const Bytes kContent{'c', 0, 'n', 255};
const std::string kContentText(kContent.begin(), kContent.end());

std::string failureOf(const std::string& location, const ResourceLimits& limits = {}) {
    const auto bytes = readResource(location, limits);
    return bytes ? "read " + std::to_string(bytes->size()) + " bytes" : bytes.reason();
}

std::string expectedFailure(const std::string& location, const std::string& why) {
    return "cannot read '" + location + "': " + why;
}

TEST(ResourceFileTest, ReadsUpToTheLimit) {
    const TemporaryFolder folder;
    const std::string path = folder.write("x", Bytes(5000, 7));
    ResourceLimits limits;
    limits.maxBytes = 5000;
    EXPECT_EQ(failureOf(path, limits), "read 5000 bytes");
    limits.maxBytes = 4999;
    // The size of the second isn't known beforehand.
    for (const std::string& large : {path, std::string("/proc/self/smaps")})
        EXPECT_EQ(failureOf(large, limits),
                  expectedFailure(large, "it is larger than the limit of 4999 bytes"));
    EXPECT_NE(failureOf("/proc/self/smaps").find("read "), std::string::npos);
}

/// Makes a socket of that path.
void makeSocket(const std::string& path) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(::bind(socket.number(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
}

TEST(ResourceFileTest, NamesWhatIsWrong) {
    const TemporaryFolder folder;
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    makeSocket(folder / "socket");
    const std::pair<std::string, const char*> cases[] = {
        {folder / "missing", "no such file"},
        {folder / "", "it is a directory"},
        {folder.write("empty", {}), "it is empty"},
        {folder.write("plain", kContent) + "/x", "Not a directory"},
        {pipe, "it is not a regular file"},
        {folder / "socket", "No such device or address"},
        {"/dev/zero", "it is not a regular file"},
        {"/proc/self/mem", "Input/output error"},  // opens, and fails to read
        {"ftp://h/p", "the scheme 'ftp' is none of file, http and https"},
        {"", "the location is empty"},
        {"file://other/a", "a file URL can't name another host"},
        {"file://", "the file URL has no path"},
        {"file://localhost", "the file URL has no path"},
        {"file:///a%", "the file URL is not properly percent-encoded"},
        {"file:///a%2", "the file URL is not properly percent-encoded"},
        {"file:///a%g0", "the file URL is not properly percent-encoded"},
        {"file:///a%00", "the file URL is not properly percent-encoded"},
    };
    for (const auto& [location, why] : cases)
        EXPECT_EQ(failureOf(location), expectedFailure(location, why));
    EXPECT_EQ(failureOf(std::string("/a\0b", 4)),
              expectedFailure("/a?b", "the location contains a NUL"));
}

std::string answer(const std::string& status, const std::string& headers, const std::string& body) {
    return "HTTP/1.1 " + status + "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

std::string redirectTo(const std::string& location) {
    return answer("302 Found", "Location: " + location + "\r\n", "");
}

void serve(int socket) {
    const std::map<std::string, std::string> answers{
        {"/ok", answer("200 OK", "", kContentText)},
        {"/empty", answer("200 OK", "Content-Length: 0\r\n", "")},
        {"/short", answer("200 OK", "Content-Length: 9\r\n", kContentText)},
        {"/stalled", answer("200 OK", "Content-Length: 9\r\n", kContentText)},
        {"/huge", answer("200 OK", "Content-Length: 99999999999\r\n", "x")},
        {"/endless", answer("200 OK", "", std::string(1000000, 'x'))},
        {"/missing", answer("404 Not Found", "", kContentText)},
        {"/broken", answer("500 Broken", "", "")},
        {"/moved", redirectTo("/moved-again")},
        {"/moved-again", redirectTo("/ok")},
        {"/circle", redirectTo("/circle")},
        {"/to-file", redirectTo("file:///proc/self/maps")},
    };
    ServerConnection exchange(socket, nullptr);
    const std::string request = exchange.readRequest();
    if (request.empty()) return;
    const std::string path = request.substr(4, request.find(' ', 4) - 4);
    if (path == "/agent") exchange.send(answer("200 OK", "", request));
    if (answers.count(path) != 0) exchange.send(answers.at(path));
    if (path == "/silent" || path == "/stalled") exchange.waitUntilClientLeaves();
}

class ResourceHttpTest : public testing::Test {
  protected:
    static void SetUpTestSuite() { ::setenv("no_proxy", "127.0.0.1", 1); }

    std::string url(const char* path) const { return m_server.url("http", path + 1); }

    test::ConnectionServer m_server{serve};
};

TEST_F(ResourceHttpTest, ReadsTheBodyAndFollowsRedirects) {
    for (const char* path : {"/ok", "/moved"}) {
        const auto bytes = readResource(url(path));
        ASSERT_TRUE(bytes) << bytes.reason();
        EXPECT_EQ(*bytes, kContent) << path;
    }
    const auto request = readResource(url("/agent"));
    ASSERT_TRUE(request) << request.reason();
    EXPECT_NE(std::string(request->begin(), request->end()).find("User-Agent: quiravent\r\n"),
              std::string::npos);
}

TEST_F(ResourceHttpTest, NamesWhatIsWrong) {
    ResourceLimits limits;
    limits.maxBytes = 100000;
    limits.maxRedirects = 3;
    const std::pair<const char*, const char*> cases[] = {
        {"/missing", "the server answered with status 404"},
        {"/broken", "the server answered with status 500"},
        {"/empty", "it is empty"},
        {"/endless", "it is larger than the limit of 100000 bytes"},
        {"/huge", "it is larger than the limit of 100000 bytes"},
        {"/circle", "more than 3 redirects"},
    };
    for (const auto& [path, why] : cases)
        EXPECT_EQ(failureOf(url(path), limits), expectedFailure(url(path), why));
    const auto gone = std::make_unique<test::ConnectionServer>([](int) {})->url("http", "");
    for (const std::string& wrong : {url("/short"), url("/to-file"), url("/nothing-at-all"), gone})
        EXPECT_EQ(failureOf(wrong, limits).find(expectedFailure(wrong, "")), 0U) << wrong;
}

TEST_F(ResourceHttpTest, GivesUpAfterTheTimeLimit) {
    ResourceLimits limits;
    limits.timeout = milliseconds(100);
    for (const std::string& slow : {url("/silent"), url("/stalled")})
        EXPECT_EQ(failureOf(slow, limits), expectedFailure(slow, "not received within 100 ms"));
}

}  // namespace
}  // namespace quiravent::desktop
