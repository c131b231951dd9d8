#include "MailCore/Rendering/ElementAttributes.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/NameTable.h"

#include <algorithm>

namespace MailCore {

namespace {

constexpr auto names = std::to_array<std::string_view>({
    // in the order of AttributeName
    "align",   "alt",  "bgcolor", "border", "cellpadding", "cellspacing", "class", "color",
    "colspan", "dir",  "face",    "height", "hidden",      "href",        "id",    "rowspan",
    "size",    "span", "src",     "start",  "style",       "valign",      "value", "width",
});
static_assert(names.size() == static_cast<std::size_t>(AttributeName::count));
static_assert(std::ranges::is_sorted(names));

constexpr NameTable<names.size()> nameTable([](std::size_t index) { return names[index]; });
constexpr std::size_t largestName = std::ranges::max_element(names, {}, &std::string_view::size)->size();

/// The place in `names` of a name in any case.
std::optional<std::size_t> indexOf(std::string_view name) noexcept {
    std::array<char, largestName> buffer{};
    if (name.size() > buffer.size()) return std::nullopt;
    std::ranges::transform(name, buffer.begin(), ASCII::lowered);
    const std::string_view lowered(buffer.data(), name.size());
    return nameTable.find(lowered);
}

} // namespace

ElementAttributes::ElementAttributes(std::string_view tag) {
    Markup::visitAttributes(tag, [this](const Markup::RawAttribute& found) {
        const auto index = indexOf(found.name);
        if (!index || values_[*index]) return;
        std::string_view value = found.value;
        if (value.find('&') != std::string_view::npos) {
            Markup::appendDecoded(decoded_.emplace_front(), value);
            value = decoded_.front();
        }
        values_[*index] = value;
        empty_ = false;
    });
}

ElementAttributes::ElementAttributes(const Attributes& attributes) {
    for (std::size_t index = 0; index < names.size(); ++index) {
        const auto found = attributes.find(names[index]);
        if (found == attributes.end()) continue;
        values_[index] = found->second;
        empty_ = false;
    }
}

} // namespace MailCore
