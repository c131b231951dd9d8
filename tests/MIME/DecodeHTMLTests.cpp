#include "MailCore/MIME/DecodeHTML.h"

#include <gtest/gtest.h>

using namespace MailCore;

namespace {

std::string html(std::string_view bytes, const std::optional<std::string>& charset) {
    return MIME::decodeHTML(bytesOf(bytes), charset);
}

} // namespace

TEST(DecodeHTML, ChoosesTheCharsetByMarkThenHeaderThenMeta) {
    struct Row {
        std::string_view name;
        std::string bytes;
        std::optional<std::string> charset;
        std::string_view text;
    };
    const std::string early = "<meta charset=windows-1251>";
    const std::string late = std::string(8'192 - 26, ' ') + early;
    const Row rows[] = {
        {"a UTF-8 mark over the header", "\xEF\xBB\xBF\xC3\xA9", "iso-8859-1", "é"},
        {"a UTF-16 mark",
         std::string("\xFF\xFE"
                     "a\0",
                     4),
         "iso-8859-1", "a"},
        {"a big-endian mark", std::string("\xFE\xFF\0a", 4), std::nullopt, "a"},
        {"the header over meta", early + "\xE9", "iso-8859-1", "<meta charset=windows-1251>é"},
        {"meta", early + "\xE9", std::nullopt, "<meta charset=windows-1251>й"},
        {"meta when the header has blanks only", early + "\xE9", " ", "<meta charset=windows-1251>й"},
        {"meta with a content type", "<META http-equiv=x content=\"text/html; CHARSET = 'koi8-r'\">\xF0",
         std::nullopt, "<META http-equiv=x content=\"text/html; CHARSET = 'koi8-r'\">П"},
        {"nothing", "\xC3\xA9\xE9", std::nullopt, "é\uFFFD"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(html(row.bytes, row.charset), row.text);
    }
    EXPECT_TRUE(html(late + "\xE9", std::nullopt).ends_with("й")) << "inside the first 8,192 bytes";
    EXPECT_FALSE(html(' ' + late + "\xE9", std::nullopt).ends_with("й")) << "cut by them";
}
