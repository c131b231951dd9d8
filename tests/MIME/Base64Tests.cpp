#include "MailCore/MIME/Base64.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

using namespace MailCore;

namespace {

std::optional<std::string> decoded(std::string_view text) {
    const auto bytes = Base64::decode(text);
    return bytes ? std::optional(std::string(charsOf(*bytes))) : std::nullopt;
}

} // namespace

TEST(Base64, SkipsForeignCharactersAndRefusesWhatIsNotWhole) {
    const MailCore::Testing::Case<std::string_view, std::optional<std::string>> cases[] = {
        {"nothing", "", ""},
        {"nothing but foreign characters", " \r\n.", ""},
        {"one padding character", "SGVsbG8=", "Hello"},
        {"two padding characters", "SGVsbA==", "Hell"},
        {"broken into lines", "SG\r\nVs\r\nbG8=\r\n", "Hello"},
        {"foreign bytes inside a group", "S\xC3\xA9G-V_s*bG8!=", "Hello"},
        {"foreign characters between padding", "SGVsbA=\r\n=", "Hell"},
        {"stray bits in the last character", "SGVsbH==", "Hell"},
        {"a lone character", "A", std::nullopt},
        {"a group of three", "SGVsbG8", std::nullopt},
        {"padding in the middle", "SGVsbA==SGVs", std::nullopt},
        {"padding first", "=SGV", std::nullopt},
        {"too much padding", "SGVsbG8==", std::nullopt},
        {"a character with three padding characters", "SGVsA===", std::nullopt},
        {"a group of padding", "SGVs====", std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(decoded(c.given), c.expected);
    }
}

TEST(Base64, GivesBackEveryByteAtEveryLengthWhereverLinesBreak) {
    std::string content;
    for (int length = 0; length < 600; ++length) {
        const std::string text = Base64::encode(bytesOf(content));
        ASSERT_EQ(decoded(text), content);
        std::string broken;
        for (std::size_t at = 0; at < text.size(); at += 7) broken += text.substr(at, 7) + "\r\n";
        ASSERT_EQ(decoded(broken), content);
        content += static_cast<char>(length * 7);
    }
}
