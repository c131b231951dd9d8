#include "MailCore/Rendering/MailStyles.h"

#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/ElementAttributes.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/NameTable.h"
#include "MailCore/Rendering/ShortestNumber.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <span>
#include <utility>

namespace MailCore {

namespace {

using Markup::isDigit;
using Markup::isHexDigit;
using Markup::isLetter;
using Words = std::span<const std::string_view>;

constexpr auto npos = std::string_view::npos;

constexpr std::size_t sheetLimit = 131'072;
constexpr std::size_t rulesLimit = 512;
constexpr std::size_t ruleBytesLimit = 131'072;
constexpr int depthLimit = 4;
constexpr std::size_t selectorsLimit = 16;
constexpr std::size_t selectorLimit = 300;
constexpr std::size_t blockLimit = 16'384;
constexpr std::size_t declarationsLimit = 100;
constexpr std::size_t valueLimit = 512;
constexpr std::size_t colorsLimit = 1'024;
constexpr std::size_t familiesLimit = 8;
constexpr std::size_t familyLimit = 80;
constexpr std::size_t identifierLimit = 100;
constexpr double longestLength = 4'096;
constexpr double shortestNegative = -100;
constexpr std::string_view scope = ".mail-content";

enum class Syntax : std::uint8_t {
    keyword,
    textColor,
    backgroundColor,
    background,
    fontFamily,
    fontSize,
    lineHeight,
    length,
    signedLength,
    lengths, // one to four
    signedLengths,
    borderStyles, // one to four
    border,
    msoHide,
};

struct Property {
    std::string_view name;
    Syntax syntax;
    Words words = {}; // of a keyword property
};

constexpr std::array<std::string_view, 6> textAlign{"left", "right", "center", "justify", "start", "end"};
constexpr std::array<std::string_view, 8> verticalAlign{"top",      "middle",      "bottom", "baseline",
                                                        "text-top", "text-bottom", "sub",    "super"};
constexpr std::array<std::string_view, 3> fontStyle{"normal", "italic", "oblique"};
constexpr std::array<std::string_view, 13> fontWeight{
    "normal", "bold", "bolder", "lighter", "100", "200", "300", "400", "500", "600", "700", "800", "900"};
constexpr std::array<std::string_view, 4> textDecoration{"none", "underline", "line-through",
                                                         "underline line-through"};
constexpr std::array<std::string_view, 6> whiteSpace{"normal",   "pre",    "pre-wrap",
                                                     "pre-line", "nowrap", "break-spaces"};
constexpr std::array<std::string_view, 4> wordBreak{"normal", "break-all", "keep-all", "break-word"};
constexpr std::array<std::string_view, 3> overflowWrap{"normal", "anywhere", "break-word"};
constexpr std::array<std::string_view, 11> display{
    "none",      "block",      "inline",          "inline-block",       "table",
    "table-row", "table-cell", "table-row-group", "table-header-group", "table-footer-group",
    "flex"};
constexpr std::array<std::string_view, 3> visibility{"visible", "hidden", "collapse"};
constexpr std::array<std::string_view, 2> borderCollapse{"collapse", "separate"};
constexpr std::array<std::string_view, 2> tableLayout{"auto", "fixed"};
constexpr std::array<std::string_view, 2> direction{"ltr", "rtl"};
constexpr std::array<std::string_view, 9> listStyleType{"none",        "disc",        "circle",
                                                        "square",      "decimal",     "lower-alpha",
                                                        "upper-alpha", "lower-roman", "upper-roman"};
constexpr std::array<std::string_view, 2> flexDirection{"row", "column"};
constexpr std::array<std::string_view, 2> flexWrap{"wrap", "nowrap"};
constexpr std::array<std::string_view, 5> alignItems{"start", "end", "center", "stretch", "baseline"};
constexpr std::array<std::string_view, 5> justifyContent{"start", "end", "center", "space-between",
                                                         "space-around"};
constexpr std::array<std::string_view, 6> borderStyles{"solid",  "dashed", "dotted",
                                                       "double", "none",   "hidden"};
constexpr std::array<std::string_view, 8> fontSizes{"small",   "medium",   "large",   "x-small",
                                                    "x-large", "xx-large", "smaller", "larger"};
constexpr std::array<std::string_view, 5> lengthWords{"auto", "inherit", "initial", "normal", "0"};
constexpr std::array<std::string_view, 8> lengthUnits{"px", "pt", "em", "rem", "%", "in", "cm", "mm"};
constexpr std::array<std::string_view, 3> colorWords{"transparent", "currentcolor", "inherit"};
constexpr std::array<int, 7> legacyFontSizes{10, 13, 16, 18, 24, 32, 48}; // pixels of <font size=1…7>

// clang-format off
constexpr auto properties = std::to_array<Property>({
    {"align-items", Syntax::keyword, alignItems},
    {"background", Syntax::background},
    {"background-color", Syntax::backgroundColor},
    {"border", Syntax::border},
    {"border-bottom", Syntax::border},
    {"border-bottom-color", Syntax::textColor},
    {"border-bottom-style", Syntax::borderStyles},
    {"border-bottom-width", Syntax::lengths},
    {"border-collapse", Syntax::keyword, borderCollapse},
    {"border-color", Syntax::textColor},
    {"border-left", Syntax::border},
    {"border-left-color", Syntax::textColor},
    {"border-left-style", Syntax::borderStyles},
    {"border-left-width", Syntax::lengths},
    {"border-radius", Syntax::length},
    {"border-right", Syntax::border},
    {"border-right-color", Syntax::textColor},
    {"border-right-style", Syntax::borderStyles},
    {"border-right-width", Syntax::lengths},
    {"border-spacing", Syntax::lengths},
    {"border-style", Syntax::borderStyles},
    {"border-top", Syntax::border},
    {"border-top-color", Syntax::textColor},
    {"border-top-style", Syntax::borderStyles},
    {"border-top-width", Syntax::lengths},
    {"border-width", Syntax::lengths},
    {"color", Syntax::textColor},
    {"direction", Syntax::keyword, direction},
    {"display", Syntax::keyword, display},
    {"flex-direction", Syntax::keyword, flexDirection},
    {"flex-wrap", Syntax::keyword, flexWrap},
    {"font-family", Syntax::fontFamily},
    {"font-size", Syntax::fontSize},
    {"font-style", Syntax::keyword, fontStyle},
    {"font-weight", Syntax::keyword, fontWeight},
    {"gap", Syntax::lengths},
    {"height", Syntax::length},
    {"justify-content", Syntax::keyword, justifyContent},
    {"letter-spacing", Syntax::length},
    {"line-height", Syntax::lineHeight},
    {"list-style-type", Syntax::keyword, listStyleType},
    {"margin", Syntax::signedLengths},
    {"max-height", Syntax::length},
    {"max-width", Syntax::length},
    {"min-height", Syntax::length},
    {"min-width", Syntax::length},
    {"mso-hide", Syntax::msoHide},
    {"overflow-wrap", Syntax::keyword, overflowWrap},
    {"padding", Syntax::lengths},
    {"table-layout", Syntax::keyword, tableLayout},
    {"text-align", Syntax::keyword, textAlign},
    {"text-decoration", Syntax::keyword, textDecoration},
    {"text-indent", Syntax::signedLength},
    {"vertical-align", Syntax::keyword, verticalAlign},
    {"visibility", Syntax::keyword, visibility},
    {"white-space", Syntax::keyword, whiteSpace},
    {"width", Syntax::length},
    {"word-break", Syntax::keyword, wordBreak},
    {"word-spacing", Syntax::length},
});

struct NamedColor {
    std::string_view name;
    std::string_view digits;
};

constexpr auto namedColors = std::to_array<NamedColor>({
    {"aqua", "00ffff"},   {"black", "000000"},  {"blue", "0000ff"},   {"gray", "808080"},
    {"green", "008000"},  {"grey", "808080"},   {"lime", "00ff00"},   {"maroon", "800000"},
    {"navy", "000080"},   {"olive", "808000"},  {"purple", "800080"}, {"red", "ff0000"},
    {"silver", "c0c0c0"}, {"teal", "008080"},   {"white", "ffffff"},  {"yellow", "ffff00"},
});
// clang-format on
static_assert(std::ranges::is_sorted(properties, {}, &Property::name));
static_assert(std::ranges::is_sorted(namedColors, {}, &NamedColor::name));

constexpr NameTable<properties.size()> propertyTable([](std::size_t index) {
    return properties[index].name;
});

bool contains(Words words, std::string_view word) noexcept {
    return std::ranges::find(words, word) != words.end();
}

std::optional<Property> propertyNamed(std::string_view name) noexcept {
    if (const auto index = propertyTable.find(name)) return properties[*index];
    if (name.starts_with("margin-")) return Property{name, Syntax::signedLengths};
    if (name.starts_with("padding-")) return Property{name, Syntax::lengths};
    return std::nullopt;
}

/// Takes the pieces of a text between separators, empty ones left out.
class Pieces {
public:
    Pieces(std::string_view text, char separator) noexcept : rest_(text), separator_(separator) {}
    std::optional<std::string_view> next() noexcept {
        while (rest_.starts_with(separator_)) rest_.remove_prefix(1);
        if (rest_.empty()) return std::nullopt;
        const std::size_t end = std::min(rest_.find(separator_), rest_.size());
        const std::string_view piece = rest_.substr(0, end);
        rest_.remove_prefix(end);
        return piece;
    }

private:
    std::string_view rest_;
    char separator_;
};

/// Up to five words of `text`, which white space separates: enough to tell four from too many.
struct SpacedWords {
    explicit SpacedWords(std::string_view text) noexcept {
        std::size_t at = Markup::skipSpaces(text, 0);
        while (at < text.size() && count < words.size()) {
            const std::size_t start = at;
            while (at < text.size() && Markup::spaceAt(text, at) == 0) ++at;
            words[count++] = text.substr(start, at - start);
            at = Markup::skipSpaces(text, at);
        }
    }
    Words all() const noexcept { return Words(words).first(count); }
    std::array<std::string_view, 5> words;
    std::size_t count = 0;
};

/// `text` without blanks and tabs at both ends; line breaks stay.
std::string_view trimmedOfSpaces(std::string_view text) noexcept {
    const auto isLineBreak = [](char32_t codePoint) {
        return (codePoint >= '\n' && codePoint <= '\r') || codePoint == 0x85 || codePoint == 0x2028 ||
               codePoint == 0x2029;
    };
    while (const std::size_t length = Markup::spaceAt(text, 0)) {
        std::size_t at = 0;
        if (isLineBreak(Text::next(text, at))) break;
        text.remove_prefix(length);
    }
    while (!text.empty()) {
        std::size_t start = text.size() - 1;
        while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
        std::size_t at = start;
        if (Markup::spaceAt(text, start) == 0 || isLineBreak(Text::next(text, at))) break;
        text.remove_suffix(text.size() - start);
    }
    return text;
}

/// A decimal number that fills the text; too small to tell from zero counts as zero, too large as none.
std::optional<double> number(std::string_view text) noexcept {
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) return std::nullopt;
    if (error == std::errc::result_out_of_range) {
        const std::string_view whole = text.substr(0, text.find('.'));
        if (text.find_first_of("eE") != npos || whole.find_first_of("123456789") != npos) return std::nullopt;
        return 0;
    }
    if (!std::isfinite(value)) return std::nullopt;
    return value;
}

/// `-?(?:[0-9]+(?:\.[0-9]+)?|\.[0-9]+)` at the start of `text`, its length; 0 when it does not match.
std::size_t numberPrefix(std::string_view text) noexcept {
    std::size_t at = text.starts_with('-') ? 1 : 0;
    const std::size_t digits = at;
    while (at < text.size() && isDigit(text[at])) ++at;
    const std::size_t wholeEnd = at;
    if (at < text.size() && text[at] == '.') {
        ++at;
        while (at < text.size() && isDigit(text[at])) ++at;
        if (at > wholeEnd + 1) return at;
    }
    return wholeEnd > digits ? wholeEnd : 0;
}

/// `^-?(?:[0-9]+(?:\.[0-9]+)?|\.[0-9]+)(?:px|pt|em|rem|%|in|cm|mm)$` within the limits, or a keyword.
bool isLength(std::string_view text, bool negative) noexcept {
    if (contains(lengthWords, text)) return true;
    const std::size_t end = numberPrefix(text);
    if (end == 0) return false;
    const std::string_view unit = text.substr(end);
    if (!contains(lengthUnits, unit) && !contains(lengthUnits, Markup::withoutFinalLineEnd(unit)))
        return false;
    const auto value = number(text.substr(0, end));
    return value && *value >= (negative ? shortestNegative : 0) && *value <= longestLength;
}

bool isIdentifier(std::string_view text) noexcept {
    if (text.size() > identifierLimit) return false;
    const std::size_t length = Markup::identifierLength(text);
    return length > 0 && (length == text.size() || length == Markup::withoutFinalLineEnd(text).size());
}

/// Letters, digits, spaces, hyphens and underscores only.
bool isFamily(std::string_view text) noexcept {
    if (text.empty() || text.size() > familyLimit) return false;
    for (std::size_t at = 0; at < text.size();) {
        if (static_cast<unsigned char>(text[at]) < 0x80) {
            const char byte = text[at++];
            if (!isLetter(byte) && !isDigit(byte) && byte != ' ' && byte != '-' && byte != '_') return false;
            continue;
        }
        const auto codePoint = static_cast<UChar32>(Text::next(text, at));
        if ((U_GET_GC_MASK(codePoint) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_ND_MASK)) == 0) return false;
    }
    return true;
}

/// `(?s)/\*.*?\*/` removed.
std::string withoutComments(std::string_view css) {
    std::string kept;
    kept.reserve(css.size());
    std::size_t copied = 0;
    for (std::size_t start = css.find("/*"); start != npos; start = css.find("/*", copied)) {
        const std::size_t end = css.find("*/", start + 2);
        if (end == npos) break;
        kept.append(css, copied, start - copied);
        copied = end + 2;
    }
    kept.append(css, copied);
    return kept;
}

/// Where the brace that closes the one before `at` stands; npos when none does.
std::size_t closingBrace(std::string_view css, std::size_t at) noexcept {
    std::size_t open = 1;
    for (; at < css.size(); ++at) {
        if (css[at] == '{') {
            ++open;
        } else if (css[at] == '}' && --open == 0) {
            return at;
        }
    }
    return npos;
}

/// `^@media\s+(?:only\s+)?(?:screen\s+and\s+)?\((?:max|min)-width:\s*[0-9]{1,4}px\)$`
bool isWidthQuery(std::string_view prelude) noexcept {
    std::size_t at = 0;
    const auto take = [&](std::string_view word) {
        if (!prelude.substr(at).starts_with(word)) return false;
        at += word.size();
        return true;
    };
    const auto takeSpaces = [&] {
        const std::size_t start = at;
        at = Markup::skipSpaces(prelude, at);
        return at > start;
    };
    if (!take("@media") || !takeSpaces()) return false;
    if (take("only") && !takeSpaces()) return false;
    if (take("screen") && !(takeSpaces() && take("and") && takeSpaces())) return false;
    if (!take("(max-width:") && !take("(min-width:")) return false;
    takeSpaces();
    const std::size_t digits = at;
    while (at < prelude.size() && isDigit(prelude[at])) ++at;
    if (at == digits || at - digits > 4 || !take("px)")) return false;
    return at == prelude.size() || at == Markup::withoutFinalLineEnd(prelude).size();
}

struct RGBA {
    double red = 0; // 0 to 255, as are green and blue
    double green = 0;
    double blue = 0;
    double alpha = 1; // 0 to 1
};

/// Three, four, six or eight hexadecimal digits.
std::optional<RGBA> hexadecimalColor(std::string_view digits) noexcept {
    if (!std::ranges::all_of(digits, isHexDigit)) return std::nullopt;
    const bool brief = digits.size() == 3 || digits.size() == 4;
    if (!brief && digits.size() != 6 && digits.size() != 8) return std::nullopt;
    const auto component = [&](std::size_t index) {
        unsigned value = 0;
        const char* start = digits.data() + (brief ? index : index * 2);
        std::from_chars(start, start + (brief ? 1 : 2), value, 16);
        return static_cast<double>(brief ? value * 17 : value);
    };
    const bool hasAlpha = digits.size() == 4 || digits.size() == 8;
    return RGBA{component(0), component(1), component(2), hasAlpha ? component(3) / 255 : 1};
}

/// `^rgba?\([0-9.,%\s]+\)$` with three or four numbers.
std::optional<RGBA> functionColor(std::string_view text) noexcept {
    if (text.starts_with("rgba(")) {
        text.remove_prefix(5);
    } else if (text.starts_with("rgb(")) {
        text.remove_prefix(4);
    } else {
        return std::nullopt;
    }
    if (!text.ends_with(')')) text = Markup::withoutFinalLineEnd(text);
    if (!text.ends_with(')')) return std::nullopt;
    text.remove_suffix(1);

    std::array<double, 4> values{0, 0, 0, 1};
    std::size_t count = 0;
    Pieces pieces(text, ',');
    while (auto piece = pieces.next()) {
        if (count == values.size()) return std::nullopt;
        *piece = trimmedOfSpaces(*piece);
        // The characters the pattern allows, less white space: none is left inside a number.
        if (piece->find_first_not_of("0123456789.%") != npos) return std::nullopt;
        if (count == 3) {
            const auto alpha = number(*piece);
            if (!alpha) return std::nullopt;
            values[count++] = std::clamp(*alpha, 0.0, 1.0);
            continue;
        }
        std::string digits;
        std::ranges::remove_copy(*piece, std::back_inserter(digits), '%');
        const auto value = number(digits);
        if (!value) return std::nullopt;
        values[count++] = std::clamp(piece->ends_with('%') ? *value * 2.55 : *value, 0.0, 255.0);
    }
    if (count < 3) return std::nullopt;
    return RGBA{values[0], values[1], values[2], values[3]};
}

std::optional<RGBA> parsedColor(std::string_view lowered) noexcept {
    const auto named = std::ranges::lower_bound(namedColors, lowered, {}, &NamedColor::name);
    if (named != namedColors.end() && named->name == lowered) return hexadecimalColor(named->digits);
    if (lowered.starts_with('#')) return hexadecimalColor(lowered.substr(1));
    return functionColor(lowered);
}

void appendNumber(std::string& out, std::size_t value) {
    std::array<char, 20> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    out.append(digits.data(), written.ptr);
}

std::string written(const RGBA& color) {
    std::string text = "rgba(";
    for (const double component : {color.red, color.green, color.blue}) {
        appendNumber(text, static_cast<std::size_t>(std::lround(component)));
        text += ',';
    }
    appendShortest(text, color.alpha);
    text += ')';
    return text;
}

/// How a colour looks in the dark theme: dark text becomes light, a light background dark.
RGBA darkened(const RGBA& color, bool background) noexcept {
    const double luminance = 0.2126 * color.red + 0.7152 * color.green + 0.0722 * color.blue;
    if (background ? luminance <= 65 : luminance >= 180) return color;
    const double factor = background ? 0.12 : 0.4;
    const double base = background ? 24 : 145;
    return {color.red * factor + base, color.green * factor + base, color.blue * factor + base, color.alpha};
}

bool appendKeyword(std::string& out, Words words, std::string_view value) {
    const auto found = std::ranges::find(words, Text::lowered(value));
    if (found == words.end()) return false;
    out += *found;
    return true;
}

bool appendLength(std::string& out, std::string_view value, bool negative) {
    if (!isLength(value, negative)) return false;
    out += value;
    return true;
}

template <typename Accepts>
bool appendOneToFour(std::string& out, std::string_view value, Accepts accepts) {
    const SpacedWords words(value);
    if (words.count < 1 || words.count > 4) return false;
    std::string_view separator;
    for (const std::string_view word : words.all()) {
        if (!accepts(word)) return false;
        out += separator;
        out += word;
        separator = " ";
    }
    return true;
}

bool appendFamilies(std::string& out, std::string_view value) {
    Pieces pieces(value, ',');
    bool kept = false;
    for (std::size_t count = 0; count < familiesLimit; ++count) {
        const auto piece = pieces.next();
        if (!piece) break;
        const std::string_view family = Text::trimmed(*piece, " \t\"'");
        if (!isFamily(family)) continue;
        out += '\'';
        out += family;
        out += "',";
        kept = true;
    }
    if (kept) out += "-apple-system,sans-serif";
    return kept;
}

bool appendFontSize(std::string& out, std::string_view value) {
    if (contains(fontSizes, value)) {
        out += value;
        return true;
    }
    if (value == "auto" || value == "normal" || value == "initial" || !isLength(value, false)) return false;
    const bool scales = value.ends_with("px") || value.ends_with("pt");
    if (scales) out += "calc(";
    out += value;
    if (scales) out += " * var(--mail-scale))";
    return true;
}

bool appendLineHeight(std::string& out, std::string_view value) {
    const auto factor = number(value.starts_with('+') ? value.substr(1) : value);
    if (!factor || *factor < 0.5 || *factor > 5.0) return appendLength(out, value, false);
    out += value;
    return true;
}

/// Begins another declaration of a list that started at `start`.
void appendSeparator(std::string& out, std::size_t start) {
    if (out.size() > start) out += ';';
}

std::optional<std::string> textIf(bool accepted, std::string&& text) {
    if (!accepted) return std::nullopt;
    return std::move(text);
}

} // namespace

void MailStyles::addStylesheet(std::string_view css, int depth) {
    if (depth >= depthLimit || css.size() > sheetLimit || rules_.size() >= rulesLimit) return;
    const std::string text = withoutComments(css);
    css = text;
    std::size_t at = 0;
    while (rules_.size() < rulesLimit && ruleBytes_ < ruleBytesLimit) {
        const std::size_t open = css.find('{', at);
        if (open == npos) break;
        const std::size_t close = closingBrace(css, open + 1);
        if (close == npos) break;
        const std::string_view prelude = Text::trimmed(css.substr(at, open - at));
        const std::string_view block = css.substr(open + 1, close - open - 1);
        at = close + 1;
        if (prelude.starts_with("@media")) {
            addMediaRule(prelude, block, depth);
        } else if (!prelude.starts_with('@')) {
            addRule(prelude, block);
        }
    }
}

void MailStyles::addMediaRule(std::string_view prelude, std::string_view block, int depth) {
    if (!isWidthQuery(prelude)) return;
    const std::size_t before = rules_.size();
    addStylesheet(block, depth + 1);
    if (rules_.size() == before) return;
    std::string rule(prelude);
    rule += '{';
    for (std::size_t index = before; index < rules_.size(); ++index) rule += rules_[index];
    rule += '}';
    rules_.resize(before);
    rules_.push_back(std::move(rule));
}

void MailStyles::addRule(std::string_view prelude, std::string_view block) {
    std::string rule;
    Pieces pieces(prelude, ',');
    for (std::size_t count = 0; count < selectorsLimit; ++count) {
        const auto piece = pieces.next();
        if (!piece) break;
        const auto scoped = selector(*piece);
        if (!scoped) continue;
        if (!rule.empty()) rule += ',';
        rule += *scoped;
    }
    const bool selects = !rule.empty();
    rule += '{';
    const std::size_t start = rule.size();
    appendDeclarations(rule, block); // also when nothing is selected: its colours are numbered all the same
    if (!selects || rule.size() == start) return;
    rule += '}';
    if (rule.size() > ruleBytesLimit - ruleBytes_) return;
    ruleBytes_ += rule.size();
    rules_.push_back(std::move(rule));
}

std::optional<std::string> MailStyles::selector(std::string_view text) {
    text = Text::trimmed(text);
    if (text.empty() || text.size() > selectorLimit) return std::nullopt;
    std::string prefixed;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char byte = text[at];
        if (!isLetter(byte) && !isDigit(byte) && std::string_view("_.#* >+~,-").find(byte) == npos)
            return std::nullopt;
        prefixed += byte;
        if ((byte == '.' || byte == '#') && Markup::identifierLength(text.substr(at + 1)) > 0)
            prefixed += "m-";
    }
    std::string_view rest = prefixed;
    if (rest == "html" || rest == "body" || rest == "html body") return std::string(scope);
    // ^(?:html\s+)?body\b
    if (rest.starts_with("html ")) rest.remove_prefix(rest.find_first_not_of(' ', 4));
    if (rest.starts_with("body")) {
        rest.remove_prefix(4);
        if (rest.empty() || !(isLetter(rest[0]) || isDigit(rest[0]) || rest[0] == '_'))
            return std::string(scope).append(rest);
    }
    return std::string(scope).append(1, ' ').append(prefixed);
}

void MailStyles::appendDeclarations(std::string& out, std::string_view text) {
    if (text.size() > blockLimit || text.find_first_of("\\<") != npos || text.find("/*") != npos) return;
    const std::size_t start = out.size();
    Pieces pieces(text, ';');
    for (std::size_t count = 0; count < declarationsLimit; ++count) {
        const auto piece = pieces.next();
        if (!piece) break;
        const std::size_t colon = piece->find(':');
        if (colon == npos) continue;
        const std::string name = Text::lowered(Text::trimmed(piece->substr(0, colon)));
        if (!std::ranges::all_of(name, [](char byte) { return isLetter(byte) || byte == '-'; })) continue;
        std::string_view value = Text::trimmed(piece->substr(colon + 1));
        constexpr std::string_view importantMark = "!important";
        const bool important =
            value.size() >= importantMark.size() &&
            Text::equalsIgnoringCase(value.substr(value.size() - importantMark.size()), importantMark);
        if (important) value = trimmedOfSpaces(value.substr(0, value.size() - importantMark.size()));
        if (value.size() > valueLimit) continue;

        const std::size_t before = out.size();
        appendSeparator(out, start);
        if (name != "background" && name != "mso-hide") out.append(name).append(1, ':');
        if (!appendDeclaration(out, name, value)) {
            out.resize(before);
            continue;
        }
        if (important) out += importantMark;
    }
}

std::string MailStyles::declarations(std::string_view text) {
    std::string result;
    appendDeclarations(result, text);
    return result;
}

bool MailStyles::appendDeclaration(std::string& out, std::string_view name, std::string_view value) {
    const auto property = propertyNamed(name);
    if (!property) return false;
    const auto isSignedLength = [](std::string_view word) { return isLength(word, true); };
    const auto isUnsignedLength = [](std::string_view word) { return isLength(word, false); };
    switch (property->syntax) {
    case Syntax::keyword: return appendKeyword(out, property->words, value);
    case Syntax::textColor: return appendColor(out, value, false);
    case Syntax::backgroundColor: return appendColor(out, value, true);
    case Syntax::background: out += "background-color:"; return appendColor(out, value, true);
    case Syntax::fontFamily: return appendFamilies(out, value);
    case Syntax::fontSize: return appendFontSize(out, value);
    case Syntax::lineHeight: return appendLineHeight(out, value);
    case Syntax::length: return appendLength(out, value, false);
    case Syntax::signedLength: return appendLength(out, value, true);
    case Syntax::lengths: return appendOneToFour(out, value, isUnsignedLength);
    case Syntax::signedLengths: return appendOneToFour(out, value, isSignedLength);
    case Syntax::borderStyles:
        return appendOneToFour(out, value,
                               [](std::string_view word) { return contains(borderStyles, word); });
    case Syntax::border: return appendBorder(out, value);
    case Syntax::msoHide: out += "display:none"; return value == "all";
    }
    return false;
}

std::optional<std::string> MailStyles::declaration(std::string_view name, std::string_view value) {
    std::string result;
    const bool accepted = appendDeclaration(result, name, value);
    return textIf(accepted, std::move(result));
}

bool MailStyles::appendBorder(std::string& out, std::string_view value) {
    if (value == "0" || value == "none") {
        out += '0';
        return true;
    }
    const SpacedWords words(value);
    if (words.count < 1 || words.count > 3) return false;
    std::string_view separator;
    for (const std::string_view word : words.all()) {
        out += separator;
        separator = " ";
        const bool isWidth = isLength(word, false) && (word == "0" || !contains(lengthWords, word));
        if (contains(borderStyles, word) || isWidth) {
            out += word;
        } else if (!appendColor(out, word, false)) {
            return false;
        }
    }
    return true;
}

std::optional<std::string> MailStyles::length(std::string_view text, bool negative) {
    return textIf(isLength(text, negative), std::string(text));
}

std::optional<std::string> MailStyles::identifier(std::string_view text) {
    if (!isIdentifier(text)) return std::nullopt;
    return std::string(text);
}

bool MailStyles::appendColor(std::string& out, std::string_view value, bool background) {
    const std::string lowered = Text::lowered(value);
    if (contains(colorWords, lowered)) {
        out += lowered;
        return true;
    }
    const auto parsed = parsedColor(lowered);
    if (!parsed) return false;
    std::string key = written(*parsed);
    key += background ? 'b' : 'f';
    const auto known = colorIDs_.find(key);
    if (known == colorIDs_.end() && colors_.size() >= colorsLimit) {
        out += background ? "var(--paper)" : "var(--ink)";
        return true;
    }
    std::size_t index = colors_.size();
    if (known != colorIDs_.end()) {
        index = known->second;
    } else {
        colors_.push_back({key.substr(0, key.size() - 1), written(darkened(*parsed, background))});
        colorIDs_.emplace(std::move(key), index);
    }
    out += "var(--mail-color-";
    appendNumber(out, index);
    out += ')';
    return true;
}

std::optional<std::string> MailStyles::color(std::string_view value, bool background) {
    std::string result;
    const bool accepted = appendColor(result, value, background);
    return textIf(accepted, std::move(result));
}

void MailStyles::appendPresentation(std::string& out, const ElementAttributes& attributes,
                                    std::string_view tag) {
    const std::size_t start = out.size();
    // Appends "name:" and what `append` gives, or nothing.
    const auto append = [&](std::string_view name, auto&& appendValue) {
        const std::size_t before = out.size();
        appendSeparator(out, start);
        out.append(name).append(1, ':');
        if (!appendValue()) out.resize(before);
    };
    for (const auto& [attribute, name] : {std::pair(AttributeName::width, std::string_view("width")),
                                          std::pair(AttributeName::height, std::string_view("height"))}) {
        const auto value = attributes[attribute];
        if (!value) continue;
        append(name, [&] {
            if (!Text::integer(*value)) return appendLength(out, *value, false);
            return appendLength(out, std::string(*value) + "px", false);
        });
    }
    if (const auto spacing = attributes[AttributeName::cellspacing]; spacing && tag == "table") {
        if (const auto pixels = Text::integer(*spacing); pixels && *pixels <= 100) {
            appendSeparator(out, start);
            out.append("border-collapse:separate;border-spacing:")
                .append(std::to_string(*pixels))
                .append("px");
        }
    }
    if (const auto value = attributes[AttributeName::bgcolor])
        append("background-color", [&] { return appendColor(out, *value, true); });
    if (const auto value = attributes[AttributeName::color])
        append("color", [&] { return appendColor(out, *value, false); });
    if (const auto value = attributes[AttributeName::face])
        append("font-family", [&] { return appendFamilies(out, *value); });
    if (const auto size = attributes[AttributeName::size]; size && tag == "font") {
        if (const auto step = Text::integer(*size); step && *step >= 1 && *step <= 7) {
            appendSeparator(out, start);
            out += "font-size:calc(";
            out += std::to_string(legacyFontSizes[static_cast<std::size_t>(*step - 1)]);
            out += "px * var(--mail-scale))";
        }
    }
    if (const auto value = attributes[AttributeName::align])
        append("text-align", [&] { return appendKeyword(out, textAlign, *value); });
    if (const auto value = attributes[AttributeName::valign])
        append("vertical-align", [&] { return appendKeyword(out, verticalAlign, *value); });
    if (attributes[AttributeName::hidden]) {
        appendSeparator(out, start);
        out += "display:none!important";
    }
}

std::string MailStyles::inlineStyle(const Attributes& attributes, std::string_view tag) {
    const ElementAttributes known(attributes);
    std::string result;
    appendPresentation(result, known, tag);
    if (const auto style = known[AttributeName::style]) {
        const std::string own = declarations(*style);
        if (!own.empty()) {
            appendSeparator(result, 0);
            result += own;
        }
    }
    return result;
}

std::string MailStyles::stylesheet() const {
    std::string light;
    std::string dark;
    for (std::size_t index = 0; index < colors_.size(); ++index) {
        for (std::string* variables : {&light, &dark}) {
            appendSeparator(*variables, 0);
            *variables += "--mail-color-";
            appendNumber(*variables, index);
            *variables += ':';
            *variables += variables == &light ? colors_[index].light : colors_[index].dark;
        }
    }
    std::string text = ":root{" + light + "}:root[data-theme=dark]{" + dark + "}";
    std::size_t size = text.size();
    for (const std::string& rule : rules_) size += rule.size();
    text.reserve(size);
    for (const std::string& rule : rules_) text += rule;
    return text;
}

} // namespace MailCore
