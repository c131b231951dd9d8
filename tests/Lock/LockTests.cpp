// What keeps a message in, entry by entry against what is meant.
#include "Lock/ContentPolicy.h"
#include "Lock/MailSecurity.h"
#include "Lock/ViewSwitches.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace TesselMail::Testing {
namespace {

// As a browser reads a policy: directives between semicolons, the first of a name counts.
std::map<std::string, std::string> readPolicy(const std::string& text) {
    std::map<std::string, std::string> directives;
    std::istringstream all(text);
    for (std::string one; std::getline(all, one, ';');) {
        std::istringstream words(one);
        std::string name;
        std::string sources;
        words >> name;
        for (std::string word; words >> word;) sources += (sources.empty() ? "" : " ") + word;
        directives.emplace(name, sources);
    }
    return directives;
}

TEST(ContentPolicy, LetsAPageShowItsOwnImagesAndStylesAndNothingElse) {
    const std::map<std::string, std::string> meant = {
        {"default-src", "'none'"},        // fonts, media, workers and what is still to be invented
        {"img-src", "data:"},             // carried by the message
        {"style-src", "'unsafe-inline'"}, // sanitised
        {"script-src", "'none'"},
        {"connect-src", "'none'"},
        {"frame-src", "'none'"},
        {"object-src", "'none'"},
        {"base-uri", "'none'"},    // which default-src does not cover
        {"form-action", "'none'"}, // nor this
    };
    EXPECT_EQ(readPolicy(MailCore::contentPolicyText()), meant);
}

TEST(MailSecurity, BlocksEveryAddressOfANetworkOrAFile) {
    const auto rules = nlohmann::json::parse(MailCore::MailSecurity::contentRules());
    std::vector<std::regex> blocked;
    for (const auto& rule : rules) {
        EXPECT_EQ(rule.at("action"), (nlohmann::json{{"type", "block"}}));
        EXPECT_EQ(rule.at("trigger").size(), 1U) << "a rule for some loads only: " << rule;
        blocked.emplace_back(rule.at("trigger").at("url-filter").get<std::string>());
    }
    const auto isBlocked = [&](const std::string& address) {
        return std::ranges::any_of(blocked,
                                   [&](const std::regex& rule) { return std::regex_search(address, rule); });
    };
    for (const char* const address : {"http://a.example/", "https://a.example/x?y", "ws://a.example/",
                                      "wss://a.example/", "ftp://a.example/f", "file:///etc/passwd"})
        EXPECT_TRUE(isBlocked(address)) << address;
    for (const char* const address : {"about:blank", "data:image/png;base64,AA", "tessel-link://token"})
        EXPECT_FALSE(isBlocked(address)) << address;
}

TEST(ViewSwitches, AreOff) {
    std::set<std::string> off;
    for (const ViewSwitch& entry : viewSwitches) {
        EXPECT_FALSE(entry.on) << entry.name;
        EXPECT_TRUE(off.insert(entry.name).second) << entry.name << " twice";
    }
    EXPECT_THAT(off, testing::IsSupersetOf(
                         {"enable-javascript-markup", "javascript-can-open-windows-automatically",
                          "javascript-can-access-clipboard", "enable-dns-prefetching", "enable-media",
                          "enable-html5-local-storage", "enable-html5-database", "enable-developer-extras"}));
}

} // namespace
} // namespace TesselMail::Testing
