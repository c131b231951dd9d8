#include "MailCore/Rendering/StyleColors.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/ShortestNumber.h"
#include "MailCore/Rendering/StyleValues.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

namespace MailCore {

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t mostColors = 1'024;
constexpr std::array<std::string_view, 3> colorWords{"transparent", "currentcolor", "inherit"};

struct NamedColor {
    std::string_view name;
    std::string_view digits;
};

// clang-format off
constexpr auto namedColors = std::to_array<NamedColor>({
    {"aqua", "00ffff"},   {"black", "000000"},  {"blue", "0000ff"},   {"gray", "808080"},
    {"green", "008000"},  {"grey", "808080"},   {"lime", "00ff00"},   {"maroon", "800000"},
    {"navy", "000080"},   {"olive", "808000"},  {"purple", "800080"}, {"red", "ff0000"},
    {"silver", "c0c0c0"}, {"teal", "008080"},   {"white", "ffffff"},  {"yellow", "ffff00"},
});
// clang-format on
static_assert(std::ranges::is_sorted(namedColors, {}, &NamedColor::name));

struct RGBA {
    double red = 0; // 0 to 255, as are green and blue
    double green = 0;
    double blue = 0;
    double alpha = 1; // 0 to 1
};

/// Three, four, six or eight hexadecimal digits.
std::optional<RGBA> hexadecimalColor(std::string_view digits) noexcept {
    if (!std::ranges::all_of(digits, ASCII::isHexDigit)) return std::nullopt;
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
    StyleValues::Pieces pieces(text, ',');
    while (auto piece = pieces.next()) {
        if (count == values.size()) return std::nullopt;
        *piece = StyleValues::trimmedOfBlanks(*piece);
        // The characters the pattern allows, less white space: none is left inside a number.
        if (piece->find_first_not_of("0123456789.%") != npos) return std::nullopt;
        if (count == 3) {
            const auto alpha = StyleValues::number(*piece);
            if (!alpha) return std::nullopt;
            values[count++] = std::clamp(*alpha, 0.0, 1.0);
            continue;
        }
        std::string digits;
        std::ranges::remove_copy(*piece, std::back_inserter(digits), '%');
        const auto value = StyleValues::number(digits);
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

} // namespace

bool StyleColors::append(std::string& out, std::string_view value, bool background) {
    const std::string lowered = Text::lowered(value);
    if (StyleValues::contains(colorWords, lowered)) {
        out += lowered;
        return true;
    }
    const auto parsed = parsedColor(lowered);
    if (!parsed) return false;
    std::string key = written(*parsed);
    key += background ? 'b' : 'f';
    const auto known = ids_.find(key);
    if (known == ids_.end() && colors_.size() >= mostColors) {
        out += background ? "var(--paper)" : "var(--ink)";
        return true;
    }
    std::size_t index = colors_.size();
    if (known != ids_.end()) {
        index = known->second;
    } else {
        colors_.push_back({key.substr(0, key.size() - 1), written(darkened(*parsed, background))});
        ids_.emplace(std::move(key), index);
    }
    out += "var(--mail-color-";
    appendNumber(out, index);
    out += ')';
    return true;
}

std::string StyleColors::stylesheet() const {
    std::string light;
    std::string dark;
    for (std::size_t index = 0; index < colors_.size(); ++index) {
        for (std::string* variables : {&light, &dark}) {
            StyleValues::appendSeparator(*variables, 0);
            *variables += "--mail-color-";
            appendNumber(*variables, index);
            *variables += ':';
            *variables += variables == &light ? colors_[index].light : colors_[index].dark;
        }
    }
    return ":root{" + light + "}:root[data-theme=dark]{" + dark + "}";
}

} // namespace MailCore
