#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace MailCore {

/// Attributes of an element: lower-case name → value, entities decoded.
using Attributes = std::map<std::string, std::string, std::less<>>;

/// The attributes that rendering looks at, in the order of their names.
enum class AttributeName : std::uint8_t {
    align,
    alt,
    bgcolor,
    border,
    cellpadding,
    cellspacing,
    className,
    color,
    colspan,
    dir,
    face,
    height,
    hidden,
    href,
    id,
    rowspan,
    size,
    span,
    src,
    start,
    style,
    valign,
    value,
    width,
    count,
};

/// The attributes of one element that rendering looks at; all others are not kept. Borrows the text it was
/// made from, and its views live as long as it.
class ElementAttributes {
public:
    /// Reads the first 80 attributes of the inside of a tag, after its name; the first of a name wins.
    explicit ElementAttributes(std::string_view tag);
    /// The same view of attributes already read.
    explicit ElementAttributes(const Attributes& attributes);
    ElementAttributes(const ElementAttributes&) = delete;
    ElementAttributes& operator=(const ElementAttributes&) = delete;

    /// The value with character references decoded.
    std::optional<std::string_view> operator[](AttributeName name) const noexcept {
        return values_[static_cast<std::size_t>(name)];
    }
    bool empty() const noexcept { return empty_; }

private:
    std::array<std::optional<std::string_view>, static_cast<std::size_t>(AttributeName::count)> values_;
    std::forward_list<std::string> decoded_; // values that held references
    bool empty_ = true;
};

} // namespace MailCore
