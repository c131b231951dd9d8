#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace MailCore {

/// An address: of a local file, or any other. Immutable and cheap to copy (one shared handle).
/// Equal when the addresses are the same text.
class URL {
public:
    /// The empty address, which is no file.
    URL() = default;

    /// The file URL of `path`; a relative path is taken from the current folder. Bytes outside the unreserved
    /// set are percent-encoded, so any path the system knows comes back from `path()` unchanged.
    static URL file(std::string_view path);
    /// The address `text` (RFC 3986, as GLib's relaxed parser reads it), or nothing when it is none.
    static std::optional<URL> parse(std::string_view text);

    /// The address as text.
    const std::string& text() const noexcept;
    /// Lower-case scheme, empty when there is none.
    const std::string& scheme() const noexcept;
    bool isFile() const noexcept;
    /// The host as written, absent when the address has no authority.
    const std::optional<std::string>& host() const noexcept;
    bool hasUserInfo() const noexcept;
    /// The path with percent escapes undone (bytes, which may hold U+0000).
    const std::string& path() const noexcept;
    /// The query as it stands, absent when there is none.
    const std::optional<std::string>& query() const noexcept;

    /// The last component of the decoded path, without a trailing slash, as text: file names are bytes, and
    /// what is no UTF-8 in them becomes U+FFFD.
    std::string lastPathComponent() const;
    /// What follows the last dot of the last component; empty when there is none or the name's only dot is
    /// its first character.
    std::string pathExtension() const;
    /// The address with `component`, percent-encoded, added to the path.
    URL appending(std::string_view component) const;

    bool operator==(const URL& other) const noexcept { return text() == other.text(); }
    bool operator<(const URL& other) const noexcept { return text() < other.text(); }

private:
    struct Parts;
    explicit URL(std::shared_ptr<const Parts> parts) : parts_(std::move(parts)) {}
    const Parts& parts() const noexcept;
    std::shared_ptr<const Parts> parts_;
};

/// The text after the last dot of the last component of `name` ("/" separates); empty when there is none,
/// when the name's only dot is its first character, or when nothing follows it, as in "name.".
std::string_view pathExtension(std::string_view name) noexcept;

} // namespace MailCore
