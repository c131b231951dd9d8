#include "Lock/MailSecurity.h"

namespace MailCore::MailSecurity {

namespace {

std::string composed() {
    std::string text = "[";
    for (const std::string_view address : blockedAddresses) {
        if (text.size() > 1) text += ',';
        text += R"({"trigger":{"url-filter":")";
        text += address;
        text += R"("},"action":{"type":"block"}})";
    }
    return text + "]";
}

} // namespace

const std::string& contentRules() {
    static const std::string text = composed();
    return text;
}

} // namespace MailCore::MailSecurity
