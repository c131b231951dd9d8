#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/PercentEncoding.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/URL.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/SafeHTML.h"

#include <unicode/bytestream.h>
#include <unicode/idna.h>

#include <algorithm>
#include <array>
#include <memory>

namespace MailCore::SafeHTML {

namespace {

constexpr std::size_t largestLink = 8'192;
constexpr auto npos = std::string_view::npos;

constexpr auto schemes = std::to_array<std::string_view>({"http", "https", "mailto", "sms", "tel"});

// RFC 3986 §2 and §3: unreserved characters and sub-delimiters, and what may stand behind the host besides.
constexpr auto hostBytes = UnescapedBytes::alphanumericsAnd("-._~!$&'()*+,;=");
constexpr auto pathBytes = UnescapedBytes::alphanumericsAnd("-._~!$&'()*+,;=:@/?[]");

/// The lower-case scheme of an address; empty when it does not begin with one.
std::string schemeOf(std::string_view address) {
    const std::size_t colon = address.find(':');
    if (colon == npos || !ASCII::isLetter(address[0])) return {};
    const std::string_view scheme = address.substr(0, colon);
    const bool valid = std::ranges::all_of(scheme, [](char byte) {
        return ASCII::isAlphanumeric(byte) || byte == '+' || byte == '-' || byte == '.';
    });
    return valid ? Text::lowered(scheme) : std::string();
}

/// The ASCII form of a host with other letters (UTS #46, non-transitional); empty when it is no valid one.
std::string asciiHost(std::string_view host) {
    constexpr std::uint32_t options =
        UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ | UIDNA_NONTRANSITIONAL_TO_ASCII;
    static const std::unique_ptr<const icu::IDNA> mapping = [] {
        UErrorCode status = U_ZERO_ERROR;
        return std::unique_ptr<const icu::IDNA>(icu::IDNA::createUTS46Instance(options, status));
    }();
    std::string result;
    if (!mapping) return result;
    icu::StringByteSink<std::string> sink(&result);
    icu::IDNAInfo info;
    UErrorCode status = U_ZERO_ERROR;
    mapping->nameToASCII_UTF8({host.data(), static_cast<std::int32_t>(host.size())}, sink, info, status);
    if (U_FAILURE(status) || info.hasErrors()) result.clear();
    return result;
}

/// `host[:port]` as it is kept, nothing when it holds what no host may. The URL parser checks the port and an
/// address in brackets.
std::optional<std::string> keptAuthority(std::string_view authority) {
    if (authority.starts_with('[')) {
        if (authority.find_first_not_of("[]:.%0123456789abcdefABCDEF") != npos) return std::nullopt;
        return std::string(authority);
    }
    const std::size_t colon = std::min(authority.find(':'), authority.size());
    std::string host(authority.substr(0, colon));
    if (!isASCII(host)) {
        host = asciiHost(host);
        if (host.empty()) return std::nullopt;
    }
    for (std::size_t at = 0; at < host.size(); ++at) {
        if (!hostBytes.contain(host[at]) && !isPercentEscape(host, at)) return std::nullopt;
    }
    const std::string_view port = authority.substr(colon);
    if (!port.empty() && port.find_first_not_of("0123456789", 1) != npos) return std::nullopt;
    return host.append(port);
}

/// Appends path, query and fragment with what they may not hold percent-encoded; escapes stay. Brackets stay
/// too, as they do in every browser.
void appendEncoded(std::string& out, std::string_view text) {
    bool inFragment = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char byte = text[at];
        const bool startsFragment = byte == '#' && !inFragment;
        inFragment = inFragment || startsFragment;
        if (pathBytes.contain(byte) || startsFragment || isPercentEscape(text, at)) {
            out += byte;
        } else {
            appendPercentEscape(out, byte);
        }
    }
}

} // namespace

std::optional<std::string> safeLink(std::string_view value) {
    const auto isControl = [](char byte) { return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F; };
    if (value.empty() || value.size() > largestLink || std::ranges::any_of(value, isControl))
        return std::nullopt;
    const std::string scheme = schemeOf(value);
    if (std::ranges::find(schemes, scheme) == schemes.end()) return std::nullopt;

    std::string address(value.substr(0, scheme.size() + 1));
    std::string_view rest = value.substr(scheme.size() + 1);
    if (rest.starts_with("//")) {
        const std::size_t end = std::min(rest.find_first_of("/?#", 2), rest.size());
        const std::string_view authority = rest.substr(2, end - 2);
        if (authority.find('@') != npos) return std::nullopt; // user name or password
        const auto kept = keptAuthority(authority);
        if (!kept) return std::nullopt;
        address.append("//").append(*kept);
        rest.remove_prefix(end);
    }
    appendEncoded(address, rest);

    const auto url = URL::parse(address);
    if (!url || url->hasUserInfo()) return std::nullopt;
    const bool isWeb = scheme == "http" || scheme == "https";
    if (isWeb && (!url->host() || url->host()->empty())) return std::nullopt;
    return url->text();
}

} // namespace MailCore::SafeHTML
