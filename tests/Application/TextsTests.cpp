#include "TesselMail/Model/Texts.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/SourceKinds.h"
#include "MailCore/Platform/ASCII.h"

#include <gmock/gmock.h>

#include <regex>
#include <set>
#include <string>

namespace TesselMail {
namespace {

using testing::HasSubstr;
namespace Kinds = MailCore::SourceKinds;

TEST(Texts, NameTheLimitThatHolds) {
    const std::string limit = std::to_string(MailCore::Limits::message / (1'024 * 1'024)) + " MiB";
    for (const Phrase& phrase : {Texts::tooLarge, Texts::tooLargeToPreviewHint}) {
        EXPECT_THAT(std::string(phrase.english), HasSubstr(limit));
        EXPECT_THAT(std::string(phrase.chinese), HasSubstr(limit));
    }
}

TEST(Texts, NameTheKindsOfSourcesThatOpen) {
    std::set<std::string> kinds{std::string(Kinds::maildir)};
    std::set<std::string> extensions;
    for (const MailCore::SourceKind& kind : Kinds::all) {
        // A MIME file is an EML file by another name.
        if (kind.name != "MIME") kinds.emplace(kind.name);
        std::string extension(kind.extension);
        for (char& letter : extension) letter = MailCore::ASCII::uppered(letter);
        extensions.insert(extension);
    }
    for (const Phrase& phrase : {Texts::welcomeFormats, Texts::unsupported}) {
        for (const std::string_view text : {phrase.english, phrase.chinese}) {
            SCOPED_TRACE(text);
            const std::string searched(text);
            const std::regex name("[A-Z]{3,}|Maildir");
            std::set<std::string> named;
            for (std::sregex_iterator at(searched.begin(), searched.end(), name), end; at != end; ++at)
                named.insert(at->str());
            for (const std::string& kind : kinds) EXPECT_TRUE(named.contains(kind)) << kind;
            for (const std::string& one : named)
                EXPECT_TRUE(kinds.contains(one) || extensions.contains(one)) << one;
        }
    }
}

} // namespace
} // namespace TesselMail
