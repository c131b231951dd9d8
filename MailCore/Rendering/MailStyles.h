#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace MailCore {

/// Attributes of an element: lower-case name → value, entities decoded.
using Attributes = std::map<std::string, std::string, std::less<>>;

/// Keeps what is safe of a message's CSS and makes its colours follow the light and dark themes. One object
/// lives for the rendering of one message, on one thread.
class MailStyles {
public:
    struct Color {
        std::string light;
        std::string dark;
        bool operator==(const Color&) const = default;
    };

    void addStylesheet(std::string_view css, int depth);
    std::string inlineStyle(const Attributes& attributes, std::string_view tag);
    std::string declarations(std::string_view text);
    std::optional<std::string> declaration(std::string_view name, std::string_view value);
    std::optional<std::string> color(std::string_view value, bool background);
    static std::optional<std::string> selector(std::string_view text);
    static std::optional<std::string> length(std::string_view text, bool negative);
    static std::optional<std::string> identifier(std::string_view text);
    std::string stylesheet() const;

    const std::vector<std::string>& rules() const noexcept { return rules_; }
    const std::vector<Color>& colors() const noexcept { return colors_; }

private:
    std::vector<std::string> rules_;
    std::vector<Color> colors_;
    std::unordered_map<std::string, std::size_t> colorIDs_;
    std::size_t ruleBytes_ = 0;
};

} // namespace MailCore
