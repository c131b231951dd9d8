#include "MailCore/Platform/URL.h"

#include "MailCore/Platform/PercentEncoding.h"
#include "MailCore/Platform/UTF8.h"

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

// RFC 3986 §3.3: what a path, or one component of it, may hold as it is.
constexpr auto pathBytes = UnescapedBytes::alphanumericsAnd("-._~/!$&'()*+,=@:");
constexpr auto componentBytes = UnescapedBytes::alphanumericsAnd("-._~!$&'()*+,=@:");

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
    parts.text = "file://" + percentEncoded(absolute, pathBytes);
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
    parts.path = percentDecodedBytes(g_uri_get_path(uri.get()));
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
    return parse(text + percentEncoded(component, componentBytes)).value_or(URL());
}

std::string_view pathExtension(std::string_view name) noexcept {
    const std::string_view last = lastComponent(name);
    const std::size_t dot = last.rfind('.');
    if (dot == std::string_view::npos || dot == 0) return {};
    return last.substr(dot + 1);
}

} // namespace MailCore
