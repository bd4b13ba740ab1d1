#include "resources/Location.h"

#include <gtest/gtest.h>

#include <tuple>

namespace quiravent::desktop {
namespace {

using Kind = Location::Kind;

TEST(LocationTest, TellsPathsFromUrls) {
    const std::tuple<const char*, Kind, const char*> cases[] = {
        {"/a/b.png", Kind::file, "/a/b.png"},
        {"b%20c.png", Kind::file, "b%20c.png"},
        {"a:b.png", Kind::file, "a:b.png"},
        {"1a://b", Kind::file, "1a://b"},
        {"./file:///x", Kind::file, "./file:///x"},
        {"file:///a/b.png", Kind::file, "/a/b.png"},
        {"FILE:///a", Kind::file, "/a"},
        {"file:/a", Kind::file, "/a"},
        {"file://localhost/a", Kind::file, "/a"},
        {"file://LocalHost/a", Kind::file, "/a"},
        {"file:///a%20b%C3%a9%25", Kind::file, "/a b\xC3\xA9%"},
        {"file:///a.png?v=2#x", Kind::file, "/a.png"},
        {"file:///a%3F%23", Kind::file, "/a?#"},
        {"http://h/p?q%20", Kind::http, "http://h/p?q%20"},
        {"HTTPS://h/", Kind::http, "HTTPS://h/"},
    };
    for (const auto& [text, kind, target] : cases) {
        const auto location = parseLocation(text);
        ASSERT_TRUE(location) << text << ": " << location.reason();
        EXPECT_EQ(location->kind, kind) << text;
        EXPECT_EQ(location->target, target) << text;
    }
}

TEST(LocationTest, QuotesOnOneLine) {
    EXPECT_EQ(inQuotes("/a\nb\x7F\xC3\xA9"), "'/a?b?\xC3\xA9'");
    EXPECT_EQ(inQuotes(std::string(1000, 'x')), "'" + std::string(300, 'x') + "...'");
}

}  // namespace
}  // namespace quiravent::desktop
