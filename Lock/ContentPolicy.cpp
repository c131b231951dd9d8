#include "Lock/ContentPolicy.h"

namespace MailCore {

namespace {

std::string composed() {
    std::string text;
    for (const PolicyDirective& directive : contentPolicy) {
        if (!text.empty()) text += "; ";
        text.append(directive.name).append(" ").append(directive.sources);
    }
    return text;
}

} // namespace

const std::string& contentPolicyText() {
    static const std::string text = composed();
    return text;
}

} // namespace MailCore
