#include "MailCore/Model/SourceKinds.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace MailCore {
namespace {

using testing::HasSubstr;

std::string contents(const std::string& name) {
    std::ifstream file(std::string(TESSEL_SOURCE_DIR) + "/" + name);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// What the first group of `pattern` matches in `text`, one after the other.
std::vector<std::string> found(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    const std::sregex_token_iterator first(text.begin(), text.end(), expression, 1);
    return {first, std::sregex_token_iterator()};
}

TEST(SourceKinds, AreWhatTheDesktopIsToldOf) {
    std::map<std::string, std::set<std::string>> kinds; // media type → its extensions
    for (const SourceKind& kind : SourceKinds::all)
        kinds[std::string(kind.mediaType)].emplace(kind.extension);

    std::map<std::string, std::set<std::string>> installed;
    for (const std::string& type :
         found(contents("packaging/org.tesselmail.TesselMail.xml"), "<mime-type ([^]*?)</mime-type>"))
        for (const std::string& extension : found(type, R"(pattern="\*\.(\w+)\")"))
            installed[found(type, R"(type="([^"]*)\")").at(0)].insert(extension);
    EXPECT_EQ(installed, kinds);

    std::set<std::string> types{"x-scheme-handler/mailto", "inode/directory"}; // a Maildir is a folder
    for (const auto& [type, extensions] : kinds) types.insert(type);
    const std::string entry = contents("packaging/org.tesselmail.TesselMail.desktop");
    const auto opened = found(found(entry, "\nMimeType=([^\n]*)").at(0), "([^;]+)");
    EXPECT_EQ(std::set(opened.begin(), opened.end()), types);
    EXPECT_EQ(opened.size(), types.size());
}

TEST(SourceKinds, AreAllNamedToReaders) {
    const std::string readme = contents("README.md");
    const std::string opens = readme.substr(0, readme.find("\n\n", readme.find("\n\n") + 2));
    for (const SourceKind& kind : SourceKinds::all) EXPECT_THAT(opens, HasSubstr(kind.name));
    EXPECT_THAT(opens, HasSubstr(SourceKinds::maildir));
}

TEST(SourceKinds, AreKnownByTheExtensionInAnyCase) {
    EXPECT_EQ(SourceKinds::of(URL::file("/a/B.MBX"))->name, SourceKinds::mbox);
    EXPECT_EQ(SourceKinds::of(URL::file("/a/letter.txt")), nullptr);
    EXPECT_EQ(SourceKinds::of(URL::file("/a/mbox")), nullptr);
    EXPECT_EQ(SourceKinds::formatIn(URL::file("/a/cur/1704067200.0.host:2,S")), MessageFormat::mime);
    EXPECT_TRUE(SourceKinds::holdsMany(SourceKinds::maildir));
    EXPECT_FALSE(SourceKinds::holdsMany(SourceKinds::attached));
    for (const SourceKind& kind : SourceKinds::all)
        EXPECT_EQ(SourceKinds::holdsMany(kind.name), kind.isArchive) << kind.name;
}

TEST(SourceKinds, AreWhatAttachmentsAreReadAs) {
    struct Case {
        std::string_view type;
        std::string_view name;
        std::optional<MessageFormat> format;
    };
    const Case cases[] = {
        {"Message/RFC822", "x", MessageFormat::mime},
        {"message/global", "x.bin", MessageFormat::mime},
        {"application/octet-stream", "a.MIME", MessageFormat::mime},
        {"application/vnd.ms-outlook", "x", MessageFormat::outlook},
        {"", "x.oft", MessageFormat::outlook},
        {"message/rfc822", "x.msg", MessageFormat::outlook},
        {"application/vnd.ms-outlook", "x.eml", MessageFormat::outlook},
        {"message/rfc822", "x.emlx", MessageFormat::mime}, // without the frame that files have
        {"application/x-emlx", "x.emlx", std::nullopt},
        {"application/mbox", "x.mbox", std::nullopt},
        {"application/x-outlook-template", "x", std::nullopt},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.type) + " " + std::string(c.name));
        EXPECT_EQ(SourceKinds::formatOfAttachment(c.type, c.name), c.format);
    }
}

} // namespace
} // namespace MailCore
