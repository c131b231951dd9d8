// The scanners mean what the regular expressions they stand for mean: random texts over the pieces that
// matter to each expression are read by both.

#include "MailCore/Rendering/Markup.h"

#include "MailCore/Platform/HTMLEscape.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "MailCore/Rendering/HTMLEntities.h"
#include "MailCore/Rendering/MailStyles.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "tests/Support/Patterns.h"

#include <gtest/gtest.h>
#include <unicode/uchar.h>

#include <map>

using namespace MailCore;
using Testing::Pattern;
using Testing::RandomTexts;

namespace {

constexpr int rounds = 20'000;

} // namespace

TEST(Markup, SpacesAreThoseOfThePattern) {
    const Pattern space(R"(^\s$)");
    for (char32_t codePoint = 1; codePoint < 0x11000; ++codePoint) {
        if (codePoint >= 0xD800 && codePoint <= 0xDFFF) continue;
        std::string text;
        Text::append(text, codePoint);
        ASSERT_EQ(Markup::spaceAt(text, 0) == text.size(), space.finds(text))
            << std::hex << unsigned{codePoint};
    }
}

TEST(Markup, NamesFoldAsThePatternFolds) {
    // The characters outside ASCII that stand for one or two letters.
    std::map<std::string, std::vector<std::string>, std::less<>> variants;
    const auto variantsOf = [&](const std::string& letters) -> const std::vector<std::string>& {
        const auto [place, isNew] = variants.try_emplace(letters);
        const Pattern pattern("(?i)^" + letters + "$");
        for (char32_t codePoint = 0x100; isNew && codePoint < 0x11000; ++codePoint) {
            const auto folds =
                u_hasBinaryProperty(static_cast<UChar32>(codePoint), UCHAR_CHANGES_WHEN_CASEFOLDED);
            if (!folds) continue;
            std::string character;
            Text::append(character, codePoint);
            if (pattern.finds(character)) place->second.push_back(character);
        }
        return place->second;
    };
    for (const std::string name :
         {"script", "style", "title", "iframe", "object", "svg", "math", "template", "head"}) {
        for (std::size_t at = 0; at < name.size(); ++at) {
            for (std::size_t length = 1; length <= 2 && at + length <= name.size(); ++length) {
                for (const std::string& variant : variantsOf(name.substr(at, length))) {
                    const std::string text = name.substr(0, at) + variant + name.substr(at + length);
                    EXPECT_EQ(Markup::foldedName(text, 0, name), text.size()) << text;
                }
            }
        }
    }
    EXPECT_EQ(variants["s"].size(), 1U);
    EXPECT_EQ(variants["st"].size(), 2U);
    EXPECT_FALSE(Markup::foldedName("sty", 0, "style"));
    EXPECT_FALSE(Markup::foldedName("\uFB06", 0, "svg"));
}

TEST(Markup, ClosingTagsAreThoseOfThePattern) {
    constexpr std::string_view pieces[] = {"<",       "/",      "</",     "s",    "S",      "\u017F",
                                           "\uFB05",  "\uFB06", "st",     "tyle", "TYLE",   "style",
                                           "</style", ">",      " ",      "\n",   "\u0085", "\u2028",
                                           "\u00A0",  "\u200B", "\u0301", "x",    "<style>"};
    const Pattern pattern(R"((?i)</style\s*>)");
    RandomTexts texts(pieces);
    for (int round = 0; round < rounds; ++round) {
        const std::string text = texts.next(14);
        SCOPED_TRACE(text);
        std::vector<Pattern::Groups> found;
        Markup::ClosingTags closing(text, "style");
        std::size_t at = 0;
        while (const auto range = closing.after(at)) {
            found.push_back({text.substr(range->start, range->end - range->start)});
            at = range->end;
        }
        ASSERT_EQ(found, pattern.matches(text));
    }
}

TEST(Markup, ClosingTagsLookThroughATextOnce) {
    for (const std::string_view end : {"", "</style>", "</style x"}) {
        std::string text;
        for (int count = 0; count < 1'000; ++count) text += "<style></styl";
        text += end;
        Markup::ClosingTags closing(text, "style");
        for (std::size_t from = 0; from < text.size(); from += 13) closing.after(from);
        EXPECT_LE(closing.searched(), text.size()) << end;
        EXPECT_GE(closing.searched(), text.size() - end.size()) << end;
    }
}

TEST(Markup, AttributesAreThoseOfThePattern) {
    constexpr std::string_view pieces[] = {"a",     "B1",     "x:y-z", "=",      "=",      "\"",     "'",
                                           " ",     "\t",     "\n",    "\u0085", "\u2028", "\u00A0", "<",
                                           ">",     "`",      "/",     "-",      "0",      "\u00E9", "\u017F",
                                           "href=", "=\"v\"", "='w'",  "=v",     "& "};
    const Pattern pattern(
        R"re(([a-zA-Z][a-zA-Z0-9:-]*)(?:\s*=\s*(?:"([^"]*)"|'([^']*)'|([^\s"'=<>`]+)))?)re");
    RandomTexts texts(pieces);
    for (int round = 0; round < rounds; ++round) {
        const std::string text = texts.next(20);
        SCOPED_TRACE(text);
        Markup::AttributeScanner scanner(text);
        for (const Pattern::Groups& groups : pattern.matches(text)) {
            const auto found = scanner.next();
            ASSERT_TRUE(found);
            ASSERT_EQ(found->name, *groups[1]);
            ASSERT_EQ(found->value, groups[2] ? *groups[2] : groups[3] ? *groups[3] : groups[4].value_or(""));
        }
        ASSERT_FALSE(scanner.next());
    }
}

TEST(Markup, ReferencesAreThoseOfThePattern) {
    constexpr std::string_view pieces[] = {
        "&",   "&",   "#",  "x",     "X",      ";", ";",      "0", "1", "41", "D800", "110000", "4294967296",
        "amp", "AMP", "Lt", "notin", "frac12", "a", "\u00E9", " ", "<", "&#", "&#x",  "&lt;"};
    const Pattern pattern(R"(&(?:#(x[0-9a-fA-F]+|[0-9]+)|([a-zA-Z][a-zA-Z0-9]+));)");
    // What a reference on its own becomes is in the tables below; here it is where references begin and end.
    RandomTexts texts(pieces);
    for (int round = 0; round < rounds; ++round) {
        const std::string text = texts.next(16);
        SCOPED_TRACE(text);
        std::string expected;
        std::string_view rest = text;
        for (const Pattern::Groups& groups : pattern.matches(text)) {
            const std::size_t at = rest.find(*groups[0]);
            expected += rest.substr(0, at);
            expected += SafeHTML::entities(*groups[0]);
            rest.remove_prefix(at + groups[0]->size());
        }
        expected += rest;
        ASSERT_EQ(SafeHTML::entities(text), expected);
        // Decoding and escaping at once is decoding, then escaping.
        std::string both;
        Markup::appendDecodedEscaped(both, text);
        ASSERT_EQ(both, SafeHTML::escape(expected));
    }
}

TEST(Markup, SearchableTextIsThatOfThePatterns) {
    constexpr std::string_view pieces[] = {"<",
                                           ">",
                                           "</",
                                           "<script",
                                           "<SCRIPT>",
                                           "</script>",
                                           "</\u017Fcript >",
                                           "<style",
                                           "<\uFB06yle>",
                                           "</style\u0085>",
                                           "<head>",
                                           "</head\n>",
                                           "<header>",
                                           "head",
                                           "a",
                                           "\u0301",
                                           "\u200D",
                                           "\u200B",
                                           "\u00E9",
                                           "_",
                                           "-",
                                           " ",
                                           "\n",
                                           "&lt;",
                                           "&am",
                                           "p;",
                                           "\"",
                                           "=",
                                           "text",
                                           "1"};
    const Pattern removed(R"((?is)<(script|style|head)\b[^>]*>.*?</\1\s*>)");
    const Pattern tags("<[^>]*>");
    RandomTexts texts(pieces);
    for (int round = 0; round < rounds; ++round) {
        const std::string text = texts.next(24);
        SCOPED_TRACE(text);
        ASSERT_EQ(SafeHTML::searchableText(text),
                  SafeHTML::entities(tags.replaced(removed.replaced(text, " "), " ")));
    }
}

TEST(Markup, StylePatternsAreThoseOfTheScanners) {
    constexpr std::string_view pieces[] = {
        "-",  "0",    "1",      "12", ".", "5", "px", "p", "pt", "em",     "rem",  "%",    "in", "cm", "mm",
        "\n", "\r\n", "\u2028", "a",  "Z", "_", " ",  "#", ">",  "\u00E9", "body", "html", "b",  ",",  "*"};
    const Pattern length(R"(^-?(?:[0-9]+(?:\.[0-9]+)?|\.[0-9]+)(?:px|pt|em|rem|%|in|cm|mm)$)");
    const Pattern identifier("^[a-zA-Z_][a-zA-Z0-9_-]*$");
    const Pattern selector("^[a-zA-Z0-9_.#* >+~,-]+$");
    const Pattern names("([.#])([a-zA-Z_][a-zA-Z0-9_-]*)");
    const Pattern body(R"(^(?:html\s+)?body\b)");
    RandomTexts texts(pieces);
    for (int round = 0; round < rounds; ++round) {
        const std::string text = texts.next(7);
        SCOPED_TRACE(text);
        // Numbers beyond the limits are the business of a table.
        const auto number = length.finds(text) ? std::stod(text) : 0;
        if (number >= 0 && number <= 4'096) {
            ASSERT_EQ(MailStyles::length(text, false).has_value(), length.finds(text) || text == "0");
        }
        ASSERT_EQ(MailStyles::identifier(text).has_value(), identifier.finds(text));

        const std::string trimmed(Text::trimmed(text));
        const auto scoped = MailStyles::selector(text);
        ASSERT_EQ(scoped.has_value(), selector.finds(trimmed));
        if (!scoped) continue;
        const std::string prefixed = names.replaced(trimmed, "$1m-$2");
        std::string expected = body.replaced(prefixed, ".mail-content");
        if (prefixed == "html") expected = ".mail-content";
        if (!expected.starts_with(".mail-content")) expected.insert(0, ".mail-content ");
        ASSERT_EQ(*scoped, expected);
    }
}

TEST(Markup, StyleSheetsAreReadAsByThePatterns) {
    constexpr std::string_view media[] = {"@media", "@media ",     "\n",          "\u2028", "only ", "screen",
                                          " and ",  "(max-width:", "(min-width:", "600",    "1",     "px)",
                                          "px",     ")",           " ",           "x"};
    const Pattern query(
        R"(^@media\s+(?:only\s+)?(?:screen\s+and\s+)?\((?:max|min)-width:\s*[0-9]{1,4}px\)$)");
    RandomTexts preludes(media);
    for (int round = 0; round < rounds; ++round) {
        const std::string prelude = "@media " + preludes.next(7);
        SCOPED_TRACE(prelude);
        MailStyles styles;
        styles.addStylesheet(prelude + "{p{width:1px}}", 0);
        ASSERT_EQ(!styles.rules().empty(), query.finds(Text::trimmed(prelude)));
    }
    constexpr std::string_view sheet[] = {"/*", "*/", "/", "*", "p", "{", "}", "{width:1px}", " ", "\n", ","};
    const Pattern comment(R"((?s)/\*.*?\*/)");
    RandomTexts sheets(sheet);
    for (int round = 0; round < rounds; ++round) {
        const std::string css = sheets.next(20);
        const std::string bare = comment.replaced(css, "");
        if (comment.finds(bare)) continue; // what removal put together
        SCOPED_TRACE(css);
        MailStyles styles;
        styles.addStylesheet(css, 0);
        MailStyles bareStyles;
        bareStyles.addStylesheet(bare, 0);
        ASSERT_EQ(styles.rules(), bareStyles.rules());
    }
    constexpr std::string_view colors[] = {"1,",     "2%,", ".5 ,", " 3", "255", "\n",
                                           "\u00A0", ".",   "%",    "x",  ")"};
    const Pattern function(R"(^rgba?\([0-9.,%\s]+\)$)");
    RandomTexts values(colors);
    int accepted = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::string value = "rgb(" + values.next(8) + ")";
        if (!MailStyles().color(value, false)) continue;
        ++accepted;
        ASSERT_TRUE(function.finds(value)) << value;
    }
    EXPECT_GT(accepted, 20);
}

TEST(Markup, DecodesReferences) {
    struct Case {
        std::string_view name, text, decoded;
    };
    const Case cases[] = {
        {"names keep their case", "&Auml;&auml;&AMP;&amp;&aMP;", "\u00C4\u00E4&&&aMP;"},
        {"without a semicolon", "&amp &lt", "&amp &lt"},
        {"no name begins with a digit", "&1a;", "&1a;"},
        {"leading zeros", "&#00000000065;&#x00041;", "AA"},
        {"a capital X", "&#X41;", "&#X41;"},
        {"the highest code point", "&#x10FFFF;", "\U0010FFFF"},
        {"no scalar values", "&#0;&#xD800;&#xdfff;&#x110000;&#4294967361;",
         "&#0;&#xD800;&#xdfff;&#x110000;&#4294967361;"},
        {"once only", "&amp;lt;", "&lt;"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(SafeHTML::entities(c.text), c.decoded);
    }
}
