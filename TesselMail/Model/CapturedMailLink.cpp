#include "TesselMail/Model/CapturedMailLink.h"

#include "MailCore/Links/MailtoCapture.h"
#include "MailCore/Platform/Characters.h"
#include "MailCore/Platform/PercentEncoding.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/URL.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "TesselMail/Model/Texts.h"

#include <algorithm>
#include <array>
#include <utility>

namespace TesselMail {

using MailCore::URL;

namespace {

// What a tel: or sms: address calls: all between the scheme and the query.
std::string calledNumber(std::string_view address) {
    constexpr std::size_t scheme = 4;
    return MailCore::percentDecoded(address.substr(scheme, address.find('?') - scheme));
}

// The first item of the query whose name is "body".
std::string bodyItem(const URL& url) {
    if (!url.query()) return {};
    for (std::string_view rest = *url.query(); !rest.empty();) {
        const std::string_view item = rest.substr(0, rest.find('&'));
        rest.remove_prefix(std::min(item.size() + 1, rest.size()));
        const std::string_view name = item.substr(0, item.find('='));
        if (MailCore::Text::lowered(MailCore::percentDecoded(name)) != "body") continue;
        return MailCore::percentDecoded(item.substr(std::min(name.size() + 1, item.size())));
    }
    return {};
}

// Makes the panels of links in one language.
class LinkPanels {
public:
    explicit LinkPanels(bool chinese) : chinese_(chinese) {}

    CapturedMailLink mail(const std::string& address) const {
        const MailCore::MailtoCapture capture(address);
        const auto candidates = std::to_array<std::pair<const Phrase&, const std::string&>>({
            {Texts::to, capture.to},
            {Texts::cc, capture.cc},
            {Texts::bcc, capture.bcc},
            {Texts::subject, capture.subject},
            {Texts::messageBody, capture.body},
        });
        CapturedMailLink link = panel(Texts::emailLink, "envelope");
        for (int id = 0; const auto& [label, value] : candidates) {
            if (!value.empty()) link.fields.push_back(field(id, label, value));
            ++id;
        }
        const bool addressOnly =
            capture.cc.empty() && capture.bcc.empty() && capture.subject.empty() && capture.body.empty();
        if (addressOnly) return copying(std::move(link), Texts::copyAddress, capture.to);
        return copying(std::move(link), Texts::copyMessage, capture.text());
    }

    CapturedMailLink telephone(const std::string& address) const {
        const std::string number = calledNumber(address);
        CapturedMailLink link = panel(Texts::telephone, "phone");
        link.fields = {field(0, Texts::number, number)};
        return copying(std::move(link), Texts::copyNumber, number);
    }

    CapturedMailLink textMessage(const std::string& address, const URL& url) const {
        const std::string number = calledNumber(address);
        CapturedMailLink link = panel(Texts::textMessage, "message");
        link.fields = {field(0, Texts::to, number)};
        const std::string body = bodyItem(url);
        if (body.empty()) return copying(std::move(link), Texts::copyNumber, number);
        link.fields.push_back(field(1, Texts::textMessageBody, body));
        return copying(std::move(link), Texts::copyTextMessage, "To: " + number + "\n\n" + body);
    }

    CapturedMailLink web(const std::string& address) const {
        CapturedMailLink link = panel(Texts::link, "link");
        link.fields = {field(0, Texts::linkAddress, address)};
        return copying(std::move(link), Texts::copyLink, address);
    }

private:
    CapturedMailLink panel(const Phrase& title, std::string_view symbol) const {
        CapturedMailLink link;
        link.title = title.in(chinese_);
        link.symbol = symbol;
        return link;
    }
    CapturedMailLink::Field field(int id, const Phrase& label, std::string value) const {
        return {id, std::string(label.in(chinese_)), std::move(value)};
    }
    CapturedMailLink copying(CapturedMailLink link, const Phrase& label, std::string value) const {
        link.copyLabel = label.in(chinese_);
        link.copyValue = std::move(value);
        return link;
    }

    bool chinese_;
};

} // namespace

std::optional<CapturedMailLink> CapturedMailLink::of(std::string_view link, bool chinese) {
    const std::optional<std::string> address = MailCore::SafeHTML::safeLink(link);
    if (!address) return std::nullopt;
    const std::optional<URL> url = URL::parse(*address);
    if (!url) return std::nullopt;
    const LinkPanels panels(chinese);
    const std::string scheme = MailCore::Text::lowered(url->scheme());
    if (scheme == "mailto") return panels.mail(*address);
    if (scheme == "tel") return panels.telephone(*address);
    if (scheme == "sms") return panels.textMessage(*address, *url);
    return panels.web(*address);
}

int CapturedMailLink::height() const {
    constexpr int lineLength = 40; // characters
    constexpr int mostLines = 8;
    int sum = 0;
    for (const Field& field : fields) {
        std::string_view rest = field.value;
        int lines = 0;
        for (; !rest.empty() && lines < mostLines; ++lines)
            rest.remove_prefix(MailCore::Text::prefix(rest, lineLength).size());
        sum += 32 + 20 * lines;
    }
    return std::clamp(sum, 48, 220);
}

} // namespace TesselMail
