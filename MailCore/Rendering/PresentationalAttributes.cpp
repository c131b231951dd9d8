#include "MailCore/Rendering/PresentationalAttributes.h"

#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/PageParts.h"
#include "MailCore/Rendering/StyleProperties.h"
#include "MailCore/Rendering/StyleValues.h"

#include <array>

namespace MailCore::PresentationalAttributes {

namespace {

using StyleValues::appendSeparator;

constexpr std::array<int, 7> legacyFontSizes{10, 13, 16, 18, 24, 32, 48}; // pixels of <font size=1…7>
constexpr std::int64_t mostSpacing = 100;                                 // pixels between cells

/// Writes the declarations of one element.
class Declarations {
public:
    Declarations(std::string& out, StyleColors& colors) : out_(out), start_(out.size()), colors_(colors) {}

    /// One that is written as it stands.
    std::string& add() {
        appendSeparator(out_, start_);
        return out_;
    }
    /// One of a property, when the value is accepted.
    void add(std::string_view property, std::optional<std::string_view> value) {
        if (!value) return;
        const std::size_t before = out_.size();
        add().append(property).append(1, ':');
        if (!StyleProperties::append(out_, property, *value, colors_)) out_.resize(before);
    }
    /// A length, in pixels when it has no unit.
    void addLength(std::string_view property, std::optional<std::string_view> value) {
        if (value && Text::integer(*value)) {
            add(property, std::string(*value) + "px");
        } else {
            add(property, value);
        }
    }

private:
    std::string& out_;
    const std::size_t start_;
    StyleColors& colors_;
};

void addSpacing(Declarations& declarations, std::string_view spacing) {
    const auto pixels = Text::integer(spacing);
    if (!pixels || *pixels > mostSpacing) return;
    declarations.add()
        .append("border-collapse:separate;border-spacing:")
        .append(std::to_string(*pixels))
        .append("px");
}

void addFontSize(Declarations& declarations, std::string_view size) {
    const auto step = Text::integer(size);
    if (!step || *step < 1 || *step > static_cast<std::int64_t>(legacyFontSizes.size())) return;
    declarations.add()
        .append("font-size:calc(")
        .append(std::to_string(legacyFontSizes[static_cast<std::size_t>(*step - 1)]))
        .append("px * var(")
        .append(PageParts::scaleProperty)
        .append("))");
}

} // namespace

void appendStyle(std::string& out, const ElementAttributes& attributes, std::string_view tag,
                 StyleColors& colors) {
    Declarations declarations(out, colors);
    declarations.addLength("width", attributes[AttributeName::width]);
    declarations.addLength("height", attributes[AttributeName::height]);
    if (const auto spacing = attributes[AttributeName::cellspacing]; spacing && tag == "table")
        addSpacing(declarations, *spacing);
    declarations.add("background-color", attributes[AttributeName::bgcolor]);
    declarations.add("color", attributes[AttributeName::color]);
    declarations.add("font-family", attributes[AttributeName::face]);
    if (const auto size = attributes[AttributeName::size]; size && tag == "font")
        addFontSize(declarations, *size);
    declarations.add("text-align", attributes[AttributeName::align]);
    declarations.add("vertical-align", attributes[AttributeName::valign]);
    if (attributes[AttributeName::hidden]) declarations.add().append("display:none!important");
}

} // namespace MailCore::PresentationalAttributes
