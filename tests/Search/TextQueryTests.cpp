#include "MailCore/Search/TextQuery.h"

#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "tests/Search/PlainAlgorithm.h"
#include "tests/Support/Case.h"

#include <gtest/gtest.h>
#include <unicode/locid.h>

#include <random>
#include <ranges>

namespace MailCore {
namespace {

using namespace Testing;
using CaseFolding::Rules;

bool contains(std::string_view text, std::string_view query, Rules rules = Rules::standard) {
    return TextQuery(query, rules).isIn(text);
}

TEST(TextQuery, FindsTextWhateverItsCaseAndEncodingOfAccents) {
    struct Case {
        std::string_view name;
        std::string_view text;
        std::string_view query;
        bool found;
    };
    const Case cases[] = {
        {"another case", "The Minutes of Monday", "mINUTES", true},
        {"with blanks around the query", "The Minutes", " \t\u00A0minutes\r\n", true},
        {"words in another order", "minutes of the day", "day minutes", false},
        {"an upper-case accent", "un élève", "ÉLÈVE", true},
        {"without the accents", "un élève", "eleve", false},
        {"accents the text lacks", "un eleve", "élève", false},
        {"composed in decomposed", "un e\u0301le\u0300ve", "élève", true},
        {"decomposed in composed", "un ÉLÈVE", "e\u0301le\u0300ve", true},
        {"marks in another order", "q\u0307\u0323x", "q\u0323\u0307", true},
        {"a letter that a mark follows", "cafe\u0301", "cafe", false},
        {"a mark by itself", "cafe\u0301", "\u0301", true},
        {"sharp s and two", "Straße", "STRASSE", true},
        {"two and sharp s", "STRASSE", "straße", true},
        {"half a sharp s", "Straße", "stras", false},
        {"an odd count of s", "ßßß", "sssss", false},
        {"long s", "Waſſer", "wasser", true},
        {"kelvin", "300 \u212A", "300 k", true},
        {"a ligature", "eﬃcient", "EFFIC", true},
        {"part of a ligature", "eﬃcient", "eff", false},
        {"final sigma", "ὈΔΥΣΣΕΎΣ", "ὀδυσσεύς", true},
        {"Cyrillic", "ВСТРЕЧА в среду", "встреча В", true},
        {"full width", "ＡＢＣ", "abc", false},
        {"full width in another case", "ＡＢＣ", "ａｂｃ", true},
        {"Chinese", "关于会议纪要的通知", "会议纪要", true},
        {"a compatibility ideograph", "\uF914", "\u6A02", true},
        {"a syllable from its pieces", "\u1112\u1161\u11ABglish", "한", true},
        {"a syllable that goes on", "\u1112\u1161\u11ABglish", "하", false},
        {"another syllable that begins alike", "한글", "하", false},
        {"kana whose mark is apart", "か\u3099く", "が", true},
        {"kana without its mark", "が", "か", false},
        {"dotted capital I", "İstanbul", "istanbul", false},
        {"dotted capital I as written", "İstanbul", "i\u0307STANBUL", true},
        {"dotless i", "ısı", "ISI", false},
        {"one person of a joined emoji", "👩\u200D👧", "👩", false},
        {"an emoji whose skin tone follows", "👩🏽", "👩", false},
        {"a vowel sign beside its letter", "\u0915\u093E", "\u0915", true},
        {"half a conjunct", "\u0915\u094D\u0937", "\u0915\u094D", false},
        {"a character with a variation selector", "\u2764\uFE0F", "\u2764", false},
        {"a cut sequence", "a\xE2\x82", "a", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(contains(c.text, c.query), c.found);
        EXPECT_EQ(isPlainlyIn(c.text, Text::trimmed(c.query), Rules::standard), c.found);
    }
}

TEST(TextQuery, FollowsTheTurkicRules) {
    struct Case {
        std::string_view text;
        std::string_view query;
        bool found;
    };
    const Case cases[] = {
        {"İstanbul", "istanbul", true}, {"I\u0307stanbul", "istanbul", true},
        {"ISI", "ısı", true},           {"ısı", "ISI", true},
        {"title", "TITLE", false},      {"I\u0323\u0307", "ị", true},
        {"title", "TİTLE", true},       {"ÌI", "ı\u0300ı", true},
        {"i\u0307", "i", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(contains(c.text, c.query, Rules::turkic), c.found) << c.text << " | " << c.query;
        EXPECT_EQ(isPlainlyIn(c.text, c.query, Rules::turkic), c.found) << c.text << " | " << c.query;
    }
}

/// Texts and queries of pieces that are likely to be confused with each other.
class Confusion {
public:
    std::string text(std::size_t pieces) {
        std::string result;
        for (std::size_t count = 0; count < pieces; ++count) result += pieces_[below(std::size(pieces_))];
        return result;
    }
    /// Made independently, or of a part of `text` in another form.
    std::string query(std::string_view text) {
        if (below(3) == 0) return this->text(1 + below(3));
        icu::UnicodeString part =
            icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
        if (below(2) == 0) part = Testing::decomposed(part);
        const int32_t length = part.length();
        if (length == 0) return "i";
        const int32_t start =
            part.getChar32Start(static_cast<int32_t>(below(static_cast<std::size_t>(length))));
        const auto size = static_cast<int32_t>(1 + below(5));
        part = icu::UnicodeString(part, start,
                                  part.getChar32Limit(std::min(start + size, length)) - start); // a copy
        if (below(3) == 0) part.toUpper(icu::Locale::getRoot());
        if (below(3) == 0) part.toLower(icu::Locale::getRoot());
        std::string result;
        part.toUTF8String(result);
        return below(2) == 0 ? composed(result) : result;
    }

    std::size_t below(std::size_t bound) { return random_() % bound; }

private:
    static constexpr std::string_view pieces_[] = {
        "i",      "I",      "\u0130",     "\u0131",     "I\u0307", "I\u0323\u0307",
        "\u0307", "\u0323", "\u0301",     "\u0308",     "\u0345",  "ß",
        "ẞ",      "s",      "S",          "ſ",          "ss",      "st",
        "ﬆ",      "ﬅ",      "ﬃ",          "f",          "K",       "k",
        "\u212A", "é",      "e\u0301",    "E",          "É",       "ệ",
        "å",      "\u212B", "ŉ",          "ʼ",          "n",       "ǰ",
        "α",      "ᾳ",      "ᾼ",          "ι",          "Ι",       "σ",
        "ς",      "Σ",      "ΐ",          "\u1FD3",     ";",       "\u037E",
        "`",      "\u1FEF", "\u0344",     "д",          "Д",       "й",
        "Й",      "и",      "ａ",         "Ａ",         "가",      "각",
        "\u1100", "\u1161", "\u11A8",     "ᄀ가",       "\uA960",  "会",
        "議",     "樂",     "\uF914",     "が",         "か",      "\u3099",
        "\u09CB", "\u09C7", "\u09BE",     "\u0958",     "\u0915",  "\u093C",
        "\u094D", "\u0937", "\u200D",     "👩",          "👧",       "\u20E3",
        "\uFE0F", "\u0F73", "\u0F71",     "\u0F72",     " ",       "\n",
        "🇩",      "🇪",      "\U00010400", "\U00010428", "\u13A0",  "\uAB70",
        "\u1E9B", "\u2ADC", "\U0001D15E", "\u302E",     "\u0E33",
    };
    std::mt19937 random_{20'260};
};

TEST(TextQuery, AgreesWithThePlainAlgorithm) {
    Confusion confusion;
    int found = 0;
    for (int round = 0; round < 20'000; ++round) {
        const std::string text = confusion.text(confusion.below(9));
        const std::string query(Text::trimmed(confusion.query(text)));
        const Rules rules = round % 3 == 0 ? Rules::turkic : Rules::standard;
        if (query.empty()) continue;
        TextQuery prepared(query, rules);
        const bool expected = isPlainlyIn(text, query, rules);
        found += expected;
        // The forms differ in the ways that a search takes.
        for (const std::string& form :
             {text, composed(text), Testing::decomposed(text), "xx" + text + "yy"}) {
            const bool wanted = form.starts_with("xx") ? isPlainlyIn(form, query, rules) : expected;
            ASSERT_EQ(prepared.isIn(form), wanted)
                << '"' << form << "\" | \"" << query << '"' << (round % 3 == 0);
            ASSERT_EQ(prepared.isThoroughlyIn(form), wanted) << '"' << form << "\" | \"" << query << '"';
        }
    }
    EXPECT_GT(found, 3'000);
}

TEST(TextQuery, FindsEveryLetterInItsOtherForms) {
    for (const CaseFolding::Variant& variant : CaseFolding::variants()) {
        const std::string letter = [&] {
            std::string text;
            Text::append(text, variant.codePoint);
            return text;
        }();
        std::string folded;
        for (const CaseFolding::Element element : CaseFolding::folded(letter, Rules::standard))
            Text::append(folded, element.value());
        for (const std::string& query : {letter, folded, Testing::decomposed(letter), "b" + folded}) {
            if (Text::trimmed(query).empty()) continue;
            TextQuery prepared(query, Rules::standard);
            for (const std::string& text : {"ab" + letter, letter + "b", "b" + folded + "\u0316"}) {
                ASSERT_EQ(prepared.isIn(text), isPlainlyIn(text, Text::trimmed(query), Rules::standard))
                    << text << " | " << query;
            }
        }
    }
}

TEST(TextQuery, FindsNothingInHostileTexts) {
    constexpr std::size_t size = 1'048'576;
    const auto repeated = [](std::string_view piece, std::size_t bytes) {
        std::string text;
        text.reserve(bytes + piece.size());
        while (text.size() < bytes) text += piece;
        return text;
    };
    const Case<std::string, std::string> cases[] = {
        {"near matches of a long query", repeated(std::string(99, 'a') + "b", size),
         std::string(100'000, 'a') + "c"},
        {"near matches with a common end", repeated(std::string(9'999, 'a') + "b", size),
         "c" + std::string(20'000, 'a') + "b" + std::string(9'000, 'a')},
        {"all the same, with an accent behind", std::string(size, 'a') + "\u0301",
         std::string(size / 4, 'a') + "b"},
        {"a long query", repeated("ab", size), repeated("ab", size / 4) + "a\u0301"},
        {"expansions that are cut", repeated("ß", size), std::string(99'999, 's')},
        {"matches that all go on", repeated("a\u0301", size), "a"},
        {"marks on one letter", "a" + repeated("\u0301\u0323", size), "a\u0301"},
        {"marks in the query", repeated("é", size), "e" + repeated("\u0301\u0323", size / 4)},
        {"pieces of syllables", repeated("\u1100\u1161", size), "가각"},
        {"pieces of one syllable", repeated("\u1100", size), "\u1100\u1100가"},
        {"upper case outside ASCII", repeated("ВСТРЕЧ", size), "встреча"},
        {"joiners", repeated("👩\u200D", size), "👩"},
        {"dotted I", repeated("I\u0323\u0307", size), "ix"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        for (const Rules rules : {Rules::standard, Rules::turkic})
            EXPECT_FALSE(TextQuery(c.expected, rules).isIn(c.given));
    }
}

} // namespace
} // namespace MailCore
