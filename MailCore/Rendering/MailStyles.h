#pragma once

#include "MailCore/Rendering/ElementAttributes.h"
#include "MailCore/Rendering/StyleColors.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace MailCore {

/// Keeps what is safe of a message's CSS and makes its colours follow the light and dark themes. One object
/// lives for the rendering of one message, on one thread. Whatever is not accepted is dropped: a declaration,
/// a selector or a rule at a time; nothing is thrown.
///
/// Every colour becomes a custom property of the page, at most 1,024 of them; later ones fall back to the
/// page's own ink or paper. An operation that is given the same text again gives the same result again.
class MailStyles {
public:
    using Color = StyleColors::Color;

    /// Adds the acceptable rules of one style sheet, scoped under PageParts::contentSelector; `depth` counts
    /// the @media blocks around it, from 0 to 3. A text over 131,072 bytes is ignored; 512 rules or 131,072
    /// bytes of them are kept of all sheets together.
    void addStylesheet(std::string_view css, int depth);
    /// The declarations for an element's style attribute: those its presentational attributes stand for, then
    /// those of its own style attribute; joined by ";", empty when nothing is kept. `tag` is in lower case.
    std::string inlineStyle(const Attributes& attributes, std::string_view tag);
    /// The two parts of it, appended.
    void appendPresentation(std::string& out, const ElementAttributes& attributes, std::string_view tag);
    void appendDeclarations(std::string& out, std::string_view text);

    /// A declaration block (what stands between braces or in a style attribute), sanitised: at most 16,384
    /// bytes and 100 declarations, without escapes and comments; a block that has them gives the empty text.
    std::string declarations(std::string_view text);
    /// The value of one declaration, `name` in lower case and `value` trimmed. For "background" and
    /// "mso-hide" it is a whole declaration.
    std::optional<std::string> declaration(std::string_view name, std::string_view value);
    /// The custom property, or word, that stands for a colour. `background` chooses how the dark theme
    /// changes it.
    std::optional<std::string> color(std::string_view value, bool background);
    /// One selector of at most 300 bytes, made of types, classes, ids and combinators only, its names
    /// prefixed with "m-", scoped under PageParts::contentSelector.
    static std::optional<std::string> selector(std::string_view text);
    /// A keyword or a number with a unit, up to 4,096 and, when `negative`, from -100, else from 0.
    static std::optional<std::string> length(std::string_view text, bool negative);
    /// A name as of a class or an id, at most 100 bytes.
    static std::optional<std::string> identifier(std::string_view text);
    /// The finished style sheet: the colours of both themes, then the rules.
    std::string stylesheet() const;

    const std::vector<std::string>& rules() const noexcept { return rules_; }
    const std::vector<Color>& colors() const noexcept { return colors_.all(); }

private:
    void addMediaRule(std::string_view prelude, std::string_view block, int depth);
    void addRule(std::string_view prelude, std::string_view block);

    std::vector<std::string> rules_;
    StyleColors colors_;
    std::size_t ruleBytes_ = 0;
};

} // namespace MailCore
