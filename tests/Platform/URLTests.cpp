#include "MailCore/Platform/URL.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(URLs, BringOddPathsBackUnchanged) {
    for (const std::string_view path :
         {"/a/b c.eml", "/100%/x", "/?#[]/;", "/中文.eml", "/\xFF\xFE", "/a\nb", "/a%20b"})
        EXPECT_EQ(URL::parse(URL::file(path).text()).value().path(), path) << path;
    EXPECT_EQ(URL::file("/a/b/").path(), "/a/b");
    EXPECT_EQ(URL::file("/a/b/"), URL::file("/a/b"));
    EXPECT_EQ(URL::parse("file:///a/b//"), URL::file("/a/b"));
    EXPECT_EQ(URL::parse("file:///").value().path(), "/");
    EXPECT_TRUE(URL::file("relative").path().starts_with('/'));
}

TEST(URLs, TellTheirParts) {
    const URL url = URL::parse("https://user:pw@Host.example:8080/a%2Fb?q=1#f").value();
    EXPECT_EQ(url.scheme(), "https");
    EXPECT_EQ(url.host(), "Host.example");
    EXPECT_TRUE(url.hasUserInfo());
    EXPECT_EQ(url.path(), "/a/b");
    EXPECT_EQ(url.query(), "q=1");
    EXPECT_EQ(URL::parse("MAILTO:a@b").value().scheme(), "mailto");
    EXPECT_FALSE(URL::parse("mailto:a").value().host());
    EXPECT_FALSE(URL::parse("no address"));
    EXPECT_FALSE(URL::parse(std::string_view("a:b\0c", 5)));
    EXPECT_EQ(URL::parse("x://1").value().appending("a b.eml").text(), "x://1/a%20b.eml");
}

TEST(URLs, TellNamesAndExtensions) {
    struct Case {
        std::string_view path;
        std::string_view name;
        std::string_view extension;
    };
    const Case cases[] = {
        {"/a/Letter.EML", "Letter.EML", "EML"},
        {"/a/.hidden", ".hidden", ""},
        {"/a/.hidden.eml", ".hidden.eml", "eml"},
        {"/a/name.", "name.", ""},
        {"/a.b/name", "name", ""},
        {"/a/x.tar.gz", "x.tar.gz", "gz"},
        {"/a/caf\xE9.eml", "caf\uFFFD.eml", "eml"},
        {"/", "/", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(URL::file(c.path).lastPathComponent(), c.name);
        EXPECT_EQ(URL::file(c.path).pathExtension(), c.extension);
    }
}

} // namespace
} // namespace MailCore
