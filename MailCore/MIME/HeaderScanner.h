#pragma once

#include <optional>
#include <string_view>

/// Finds the encoded pieces of header values. Both scanners take UTF-8 text, return views into it, and take
/// time linear in the text when they are called again and again from the end of what they found.
namespace MailCore::MIME {

/// One encoded word (RFC 2047 §2), more liberally than the standard: the encoded text may hold blanks.
struct EncodedWord {
    std::string_view whole;   // from "=?" to "?="
    std::string_view charset; // not empty, without white space
    char encoding = 'q';      // one of b, B, q, Q
    std::string_view encoded; // without "?"
    bool operator==(const EncodedWord&) const = default;
};

/// The first encoded word that begins at `from` or later.
[[nodiscard]] std::optional<EncodedWord> nextEncodedWord(std::string_view text, std::size_t from) noexcept;

/// One parameter of a structured value (RFC 2045 §5.1): `; key = value` or `; key = "quoted value"`, also at
/// the very start of the value and without ";".
struct ScannedParameter {
    std::string_view key;   // ASCII letters, digits, "_", "*", "-"
    std::string_view value; // without the quotes, quoted pairs not undone
    std::size_t end = 0;    // just past the parameter
    bool operator==(const ScannedParameter&) const = default;
};

/// The first parameter that begins at `from` or later. A quoted value that does not end is read as a word
/// that begins with a quote.
[[nodiscard]] std::optional<ScannedParameter> nextParameter(std::string_view text, std::size_t from) noexcept;

} // namespace MailCore::MIME
