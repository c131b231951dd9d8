#include "MailCore/Rendering/StyleProperties.h"

#include "MailCore/Rendering/NameTable.h"
#include "MailCore/Rendering/StyleValues.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace MailCore::StyleProperties {

namespace {

using namespace StyleValues;

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

// clang-format on
static_assert(std::ranges::is_sorted(properties, {}, &Property::name));

constexpr NameTable<properties.size()> propertyTable([](std::size_t index) {
    return properties[index].name;
});

std::optional<Property> propertyNamed(std::string_view name) noexcept {
    if (const auto index = propertyTable.find(name)) return properties[*index];
    if (name.starts_with("margin-")) return Property{name, Syntax::signedLengths};
    if (name.starts_with("padding-")) return Property{name, Syntax::lengths};
    return std::nullopt;
}

bool appendBorder(std::string& out, std::string_view value, StyleColors& colors) {
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
        if (contains(borderStyles, word) || isWidth(word)) {
            out += word;
        } else if (!colors.append(out, word, false)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool append(std::string& out, std::string_view name, std::string_view value, StyleColors& colors) {
    const auto property = propertyNamed(name);
    if (!property) return false;
    const auto isSignedLength = [](std::string_view word) { return isLength(word, true); };
    const auto isUnsignedLength = [](std::string_view word) { return isLength(word, false); };
    switch (property->syntax) {
    case Syntax::keyword: return appendKeyword(out, property->words, value);
    case Syntax::textColor: return colors.append(out, value, false);
    case Syntax::backgroundColor: return colors.append(out, value, true);
    case Syntax::background: out += "background-color:"; return colors.append(out, value, true);
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
    case Syntax::border: return appendBorder(out, value, colors);
    case Syntax::msoHide: out += "display:none"; return value == "all";
    }
    return false;
}

} // namespace MailCore::StyleProperties
