#include "MailCore/Rendering/LinkText.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/URL.h"

#include <unicode/uidna.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>

namespace MailCore {
namespace {

constexpr std::size_t largestText = 2'048; // bytes
constexpr std::size_t largestHost = 253;   // RFC 1035 §2.3.4

// What a bare word has to end with to be read as a domain, beside the codes of countries.
constexpr auto genericDomains = std::to_array<std::string_view>(
    {"app", "biz", "cloud",  "club", "com",  "dev",  "edu",  "gov",   "info", "int", "live",
     "mil", "net", "online", "org",  "page", "shop", "site", "store", "top",  "vip", "xyz"});
// The codes of countries (ISO 3166-1, and .eu, .su, .uk), each with a blank behind it; without those better
// known as the ends of file names: ai cc md pl ps py rs sh so.
constexpr std::string_view countryDomains =
    "ad ae af ag al am ao aq ar as at au aw ax az ba bb bd be bf bg bh bi bj bl bm bn bo bq br bs "
    "bt bv bw by bz ca cd cf cg ch ci ck cl cm cn co cr cu cv cw cx cy cz de dj dk dm do dz ec ee "
    "eg eh er es et eu fi fj fk fm fo fr ga gb gd ge gf gg gh gi gl gm gn gp gq gr gs gt gu gw gy "
    "hk hm hn hr ht hu id ie il im in io iq ir is it je jm jo jp ke kg kh ki km kn kp kr kw ky kz "
    "la lb lc li lk lr ls lt lu lv ly ma mc me mf mg mh mk ml mm mn mo mp mq mr ms mt mu mv mw mx "
    "my mz na nc ne nf ng ni nl no np nr nu nz om pa pe pf pg ph pk pm pn pr pt pw qa re ro ru rw "
    "sa sb sc sd se sg si sj sk sl sm sn sr ss st su sv sx sy sz tc td tf tg th tj tk tl tm tn to "
    "tr tt tv tw tz ua ug uk um us uy uz va vc ve vg vi vn vu wf ws ye yt za zm zw ";

bool separatesWords(char byte) {
    return static_cast<unsigned char>(byte) <= ' ' ||
           std::string_view("<>()[]{}\"'`|,;!*").find(byte) != std::string_view::npos;
}

// The host as names are looked up, in lower case and without "www."; the text itself where it is none.
std::string lookedUp(std::string_view host) {
    std::string name = Text::lowered(host);
    if (!std::ranges::all_of(name, [](char byte) { return isASCII(byte); })) {
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<UIDNA, decltype(&uidna_close)> mapping(uidna_openUTS46(UIDNA_DEFAULT, &status),
                                                                     &uidna_close);
        std::array<char, largestHost + 1> mapped{};
        UIDNAInfo details = UIDNA_INFO_INITIALIZER;
        const std::int32_t length = uidna_nameToASCII_UTF8(
            mapping.get(), name.data(), static_cast<std::int32_t>(name.size()), mapped.data(),
            static_cast<std::int32_t>(mapped.size()), &details, &status);
        if (U_SUCCESS(status)) name.assign(mapped.data(), static_cast<std::size_t>(length));
    }
    while (name.ends_with('.')) name.pop_back();
    if (name.starts_with("www.")) name.erase(0, 4);
    return name;
}

std::string_view upTo(std::string_view text, std::string_view ends) {
    return text.substr(0, text.find_first_of(ends));
}

bool isDomain(std::string_view word) {
    const std::size_t dot = word.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || word.find("..") != std::string_view::npos) return false;
    const auto inName = [](char byte) {
        return ASCII::isLetter(byte) || ASCII::isDigit(byte) || byte == '-' || byte == '.' || !isASCII(byte);
    };
    if (!std::ranges::all_of(word, inName)) return false;
    const std::string end = Text::lowered(word.substr(dot + 1));
    if (std::ranges::find(genericDomains, end) != genericDomains.end()) return true;
    return end.size() == 2 && ASCII::isLetter(end[0]) && ASCII::isLetter(end[1]) &&
           countryDomains.find(end + ' ') != std::string_view::npos;
}

// The host that a word of the text names.
std::optional<std::string> namedBy(std::string_view word) {
    const std::size_t scheme = word.find("://");
    if (scheme != std::string_view::npos) {
        std::string_view authority = upTo(word.substr(scheme + 3), "/?#\\");
        authority.remove_prefix(authority.rfind('@') + 1); // npos + 1 is 0
        const std::string_view host = upTo(authority, ":");
        return host.empty() ? std::nullopt : std::optional(lookedUp(host));
    }
    std::string_view host = upTo(word, "/?#:\\");
    while (host.ends_with('.')) host.remove_suffix(1); // of the sentence
    if (host.size() > largestHost || host.find('@') != std::string_view::npos) return std::nullopt;
    const bool declared = Text::equalsIgnoringCase(host.substr(0, 4), "www.") && host.size() > 4;
    return declared || isDomain(host) ? std::optional(lookedUp(host)) : std::nullopt;
}

// The host an address leads to; empty when it has none.
std::string hostOf(std::string_view address) {
    const std::optional<URL> url = URL::parse(address);
    if (!url) return {};
    if (url->host()) return lookedUp(*url->host());
    const std::size_t at = url->scheme() == "mailto" ? url->path().rfind('@') : std::string::npos;
    return at == std::string::npos ? std::string() : lookedUp(std::string_view(url->path()).substr(at + 1));
}

bool isBelow(std::string_view host, std::string_view domain) {
    return domain.find('.') != std::string_view::npos && host.size() > domain.size() &&
           host.ends_with(domain) && host[host.size() - domain.size() - 1] == '.';
}

} // namespace

bool leadsElsewhere(std::string_view visible, std::string_view address) {
    visible = visible.substr(0, largestText);
    std::optional<std::string> target;
    for (std::size_t at = 0; at < visible.size();) {
        const std::size_t start = at;
        while (at < visible.size() && !separatesWords(visible[at])) ++at;
        const std::optional<std::string> named = namedBy(visible.substr(start, at - start));
        if (at == start) ++at;
        if (!named) continue;
        if (!target) target = hostOf(address);
        if (*named == *target || isBelow(*target, *named) || isBelow(*named, *target)) return false;
    }
    return target.has_value();
}

} // namespace MailCore
