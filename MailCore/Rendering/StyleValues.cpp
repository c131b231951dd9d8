#include "MailCore/Rendering/StyleValues.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "MailCore/Rendering/PageParts.h"

#include <unicode/uchar.h>

#include <charconv>
#include <cmath>

namespace MailCore::StyleValues {

namespace {

using ASCII::isDigit;

constexpr auto npos = std::string_view::npos;

constexpr std::size_t mostFamilies = 8;
constexpr std::size_t largestFamily = 80;
constexpr std::size_t largestIdentifier = 100;
constexpr double mostUnits = 4'096; // of a length
constexpr double leastUnits = -100;

constexpr std::array<std::string_view, 8> fontSizes{"small",   "medium",   "large",   "x-small",
                                                    "x-large", "xx-large", "smaller", "larger"};
constexpr std::array<std::string_view, 5> lengthWords{"auto", "inherit", "initial", "normal", "0"};
constexpr std::array<std::string_view, 8> lengthUnits{"px", "pt", "em", "rem", "%", "in", "cm", "mm"};

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

/// Letters, digits, spaces, hyphens and underscores only.
bool isFamily(std::string_view text) noexcept {
    if (text.empty() || text.size() > largestFamily) return false;
    for (std::size_t at = 0; at < text.size();) {
        if (isASCII(text[at])) {
            const char byte = text[at++];
            if (!ASCII::isAlphanumeric(byte) && byte != ' ' && byte != '-' && byte != '_') return false;
            continue;
        }
        const auto codePoint = static_cast<UChar32>(Text::next(text, at));
        if ((U_GET_GC_MASK(codePoint) & (U_GC_L_MASK | U_GC_M_MASK | U_GC_ND_MASK)) == 0) return false;
    }
    return true;
}

} // namespace

std::string_view trimmedOfBlanks(std::string_view text) noexcept {
    return Text::trimmedOf(text, [](char32_t codePoint) {
        return Text::isWhitespace(codePoint) && !Text::isLineBreak(codePoint);
    });
}

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

bool isLength(std::string_view text, bool negative) noexcept {
    if (contains(lengthWords, text)) return true;
    const std::size_t end = numberPrefix(text);
    if (end == 0) return false;
    const std::string_view unit = text.substr(end);
    if (!contains(lengthUnits, unit) && !contains(lengthUnits, Markup::withoutFinalLineEnd(unit)))
        return false;
    const auto value = number(text.substr(0, end));
    return value && *value >= (negative ? leastUnits : 0) && *value <= mostUnits;
}

bool isWidth(std::string_view text) noexcept {
    return isLength(text, false) && (text == "0" || !contains(lengthWords, text));
}

bool isIdentifier(std::string_view text) noexcept {
    if (text.size() > largestIdentifier) return false;
    const std::size_t length = Markup::identifierLength(text);
    return length > 0 && (length == text.size() || length == Markup::withoutFinalLineEnd(text).size());
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

bool appendFamilies(std::string& out, std::string_view value) {
    Pieces pieces(value, ',');
    bool kept = false;
    for (std::size_t count = 0; count < mostFamilies; ++count) {
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
    if (scales) out.append(" * var(").append(PageParts::scaleProperty).append("))");
    return true;
}

bool appendLineHeight(std::string& out, std::string_view value) {
    const auto factor = number(value.starts_with('+') ? value.substr(1) : value);
    if (!factor || *factor < 0.5 || *factor > 5.0) return appendLength(out, value, false);
    out += value;
    return true;
}

} // namespace MailCore::StyleValues
