#include "MailCore/Platform/PercentEncoding.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(PercentEscapes, AreUndoneWholeOrNotAtAll) {
    struct Case {
        std::string_view name;
        std::string_view text;
        std::string_view decoded;
        std::string_view bytes; // where each escape counts by itself
    };
    const Case cases[] = {
        {"digits in both cases", "%c3%A9", "é", "é"},
        {"no escape", "a+b", "a+b", "a+b"},
        {"an escaped percent sign", "%2541", "%41", "%41"},
        {"one that is cut", "%41%4", "%41%4", "A%4"},
        {"a percent sign alone", "%41%", "%41%", "A%"},
        {"no digits", "%41%4G", "%41%4G", "A%4G"},
        {"a sign for a digit", "%+1", "%+1", "%+1"},
        {"two percent signs", "%%41", "%%41", "%A"},
        {"no UTF-8", "a%FF", "a%FF", "a\xFF"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(percentDecoded(c.text), c.decoded);
        EXPECT_EQ(percentDecodedBytes(c.text), c.bytes);
    }
}

TEST(PercentEscapes, BringEveryByteBack) {
    std::string bytes;
    for (int value = 0; value < 256; ++value) bytes += static_cast<char>(value);
    for (const auto& unescaped : {UnescapedBytes::none(), UnescapedBytes::alphanumericsAnd("-._~/")}) {
        const std::string written = percentEncoded(bytes, unescaped);
        EXPECT_EQ(percentDecodedBytes(written), bytes);
        for (std::size_t at = 0; at < written.size(); ++at) {
            if (written[at] != '%') {
                EXPECT_TRUE(unescaped.contain(written[at]));
                continue;
            }
            EXPECT_TRUE(isPercentEscape(written, at));
            at += 2;
        }
    }
    EXPECT_EQ(percentEncoded("a b/\xFF", UnescapedBytes::alphanumericsAnd("/")), "a%20b/%FF");
}

} // namespace
} // namespace MailCore
