#include "MailCore/Platform/URL.h"

#include "MailCore/Platform/Text.h"

#include <glib.h>

#include <cerrno>
#include <climits>
#include <system_error>
#include <unistd.h>

namespace MailCore {

struct URL::Parts {
    std::string text;
    std::string scheme;
    std::optional<std::string> host;
    bool hasUserInfo = false;
    std::string path;
    std::optional<std::string> query;
};

namespace {

struct GUriRelease {
    void operator()(GUri* uri) const noexcept { g_uri_unref(uri); }
};

int hexDigit(char byte) noexcept {
    if (byte >= '0' && byte <= '9') return byte - '0';
    if (byte >= 'a' && byte <= 'f') return byte - 'a' + 10;
    if (byte >= 'A' && byte <= 'F') return byte - 'A' + 10;
    return -1;
}

std::string decoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '%' && text.size() - at > 2) {
            const int high = hexDigit(text[at + 1]);
            const int low = hexDigit(text[at + 2]);
            if (high >= 0 && low >= 0) {
                result += static_cast<char>(static_cast<unsigned char>(high << 4 | low));
                at += 2;
                continue;
            }
        }
        result += text[at];
    }
    return result;
}

/// RFC 3986 §2: unreserved characters and what a path may hold as they are, the rest escaped.
std::string encoded(std::string_view path, std::string_view kept) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(path.size());
    for (const char byte : path) {
        const auto value = static_cast<unsigned char>(byte);
        if ((value < 0x80 && g_ascii_isalnum(byte)) || kept.find(byte) != std::string_view::npos) {
            result += byte;
        } else {
            result += '%';
            result += digits[value >> 4];
            result += digits[value & 15];
        }
    }
    return result;
}

std::string currentFolder() {
    std::string buffer(PATH_MAX, '\0');
    if (::getcwd(buffer.data(), buffer.size()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "getcwd");
    buffer.resize(buffer.find('\0'));
    return buffer;
}

std::string_view lastComponent(std::string_view path) noexcept {
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos || path.size() == 1 ? path : path.substr(slash + 1);
}

} // namespace

const URL::Parts& URL::parts() const noexcept {
    static const Parts none;
    return parts_ ? *parts_ : none;
}

URL URL::file(std::string_view path) {
    std::string absolute(path);
    if (!absolute.starts_with('/')) absolute = currentFolder() + '/' + absolute;
    while (absolute.size() > 1 && absolute.ends_with('/')) absolute.pop_back();
    Parts parts;
    parts.scheme = "file";
    parts.host = "";
    parts.text = "file://" + encoded(absolute, "-._~/!$&'()*+,=@:");
    parts.path = std::move(absolute);
    return URL(std::make_shared<const Parts>(std::move(parts)));
}

std::optional<URL> URL::parse(std::string_view text) {
    if (text.find('\0') != std::string_view::npos) return std::nullopt;
    const std::string terminated(text);
    constexpr auto flags =
        static_cast<GUriFlags>(G_URI_FLAGS_ENCODED | G_URI_FLAGS_PARSE_RELAXED | G_URI_FLAGS_HAS_PASSWORD);
    const std::unique_ptr<GUri, GUriRelease> uri(g_uri_parse(terminated.c_str(), flags, nullptr));
    if (!uri) return std::nullopt;
    Parts parts;
    parts.text = terminated;
    parts.scheme = g_uri_get_scheme(uri.get());
    if (parts.scheme == "file" && text.ends_with('/') &&
        std::string_view(g_uri_get_path(uri.get())).size() > 1)
        return parse(text.substr(0, text.find_last_not_of('/') + 1)); // a folder has one address
    if (const char* host = g_uri_get_host(uri.get())) parts.host = host;
    parts.hasUserInfo = g_uri_get_user(uri.get()) != nullptr || g_uri_get_password(uri.get()) != nullptr;
    parts.path = decoded(g_uri_get_path(uri.get()));
    if (const char* query = g_uri_get_query(uri.get())) parts.query = query;
    return URL(std::make_shared<const Parts>(std::move(parts)));
}

const std::string& URL::text() const noexcept {
    return parts().text;
}

const std::string& URL::scheme() const noexcept {
    return parts().scheme;
}

bool URL::isFile() const noexcept {
    return parts().scheme == "file";
}

const std::optional<std::string>& URL::host() const noexcept {
    return parts().host;
}

bool URL::hasUserInfo() const noexcept {
    return parts().hasUserInfo;
}

const std::string& URL::path() const noexcept {
    return parts().path;
}

const std::optional<std::string>& URL::query() const noexcept {
    return parts().query;
}

std::string URL::lastPathComponent() const {
    return Text::repaired(bytesOf(lastComponent(parts().path)));
}

std::string URL::pathExtension() const {
    return std::string(MailCore::pathExtension(parts().path));
}

URL URL::appending(std::string_view component) const {
    std::string text = parts().text;
    if (!text.ends_with('/')) text += '/';
    return parse(text + encoded(component, "-._~!$&'()*+,=@:")).value_or(URL());
}

std::optional<std::string> percentDecoded(std::string_view text) {
    for (std::size_t at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 3)) {
        if (text.size() - at < 3 || hexDigit(text[at + 1]) < 0 || hexDigit(text[at + 2]) < 0)
            return std::nullopt;
    }
    std::string result = decoded(text);
    if (!Text::isValid(bytesOf(result))) return std::nullopt;
    return result;
}

std::string_view pathExtension(std::string_view name) noexcept {
    const std::string_view last = lastComponent(name);
    const std::size_t dot = last.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {};
    return last.substr(dot + 1);
}

} // namespace MailCore
