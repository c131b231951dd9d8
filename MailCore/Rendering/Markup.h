#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Scanners for markup and style text. Each finds what the regular expression it names would find (ICU syntax
/// and case folding, first match), in time linear in the text over all calls together.
namespace MailCore::Markup {

/// Length in bytes of the `\s` at `at`, 0 when there is none.
std::size_t spaceAt(std::string_view text, std::size_t at) noexcept;
/// Past `\s*` at `at`.
std::size_t skipSpaces(std::string_view text, std::size_t at) noexcept;
/// `text` without the line end that `$` looks over at the end of a text.
std::string_view withoutFinalLineEnd(std::string_view text) noexcept;
/// `^[a-zA-Z_][a-zA-Z0-9_-]*`, up to where it ends; 0 when it does not match.
std::size_t identifierLength(std::string_view text) noexcept;

/// A run of bytes of a text.
struct Range {
    std::size_t start;
    std::size_t end;
    bool operator==(const Range&) const = default;
};

/// Past `(?i)name` at `at`, nothing when it does not match. `name` is one of the element names used here: of
/// their letters only "s" (long s) and "st" (two ligatures) have case variants outside ASCII.
std::optional<std::size_t> foldedName(std::string_view text, std::size_t at, std::string_view name) noexcept;

/// Matches of `(?i)</name\s*>` in one text.
class ClosingTags {
public:
    /// Borrows both.
    ClosingTags(std::string_view text, std::string_view name) noexcept : text_(text), name_(name) {}
    /// The first match at or after `from`, which never decreases from call to call.
    std::optional<Range> after(std::size_t from) noexcept;
    /// Whether it is known that no match follows any more.
    bool exhausted() const noexcept { return isKnown_ && !found_; }
    std::string_view name() const noexcept { return name_; }
    /// How many bytes were looked through so far: those of the text, each once.
    std::size_t searched() const noexcept { return searched_; }

private:
    std::string_view text_;
    std::string_view name_;
    std::size_t searched_ = 0;
    bool isKnown_ = false;
    std::optional<Range> found_; // the last answer, good until a call begins behind it
};

/// One attribute as written; both point into the text scanned.
struct RawAttribute {
    std::string_view name;
    std::string_view value; // without quotes, character references not decoded
};

/// Matches of `([a-zA-Z][a-zA-Z0-9:-]*)(?:\s*=\s*(?:"([^"]*)"|'([^']*)'|([^\s"'=<>`]+)))?` in one text.
class AttributeScanner {
public:
    explicit AttributeScanner(std::string_view text) noexcept : text_(text) {}
    std::optional<RawAttribute> next() noexcept;

private:
    std::string_view text_;
    std::size_t at_ = 0;
};

/// Calls `visit(attribute)` for the first 80 attributes of `tag`, the inside of a tag after its name.
template <typename Visit>
void visitAttributes(std::string_view tag, Visit visit) {
    constexpr int mostAttributes = 80;
    AttributeScanner scanner(tag);
    for (int count = 0; count < mostAttributes; ++count) {
        const std::optional<RawAttribute> found = scanner.next();
        if (!found) return;
        visit(*found);
    }
}

/// Appends `text` with its character references decoded,
/// `&(?:#(x[0-9a-fA-F]+|[0-9]+)|([a-zA-Z][a-zA-Z0-9]+));`.
void appendDecoded(std::string& out, std::string_view text);
/// Appends `text` decoded, then escaped for HTML content and double-quoted attribute values.
void appendDecodedEscaped(std::string& out, std::string_view text);

} // namespace MailCore::Markup
