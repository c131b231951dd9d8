#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace MailCore {

/// The colours of one message's styles. Each becomes a custom property of the page, at most 1,024 of them;
/// later ones fall back to the page's own ink or paper.
class StyleColors {
public:
    /// The values of one custom property in the two themes, as in "rgba(255,0,0,1.0)".
    struct Color {
        std::string light;
        std::string dark;
        bool operator==(const Color&) const = default;
    };

    /// Appends the custom property, or the word, that stands for the colour `value`; false when it is none.
    /// `background` chooses how the dark theme changes it.
    bool append(std::string& out, std::string_view value, bool background);
    /// The custom properties of both themes.
    std::string stylesheet() const;

    const std::vector<Color>& all() const noexcept { return colors_; }

private:
    std::vector<Color> colors_;
    std::unordered_map<std::string, std::size_t> ids_; // light value and kind → place in colors_
};

} // namespace MailCore
