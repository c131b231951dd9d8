// Links and sentences, which need no window.
#include "tools/probe/Probe.h"

#include "MailCore/Links/MailtoCapture.h"
#include "MailCore/Model/MailError.h"
#include "TesselMail/Model/CapturedMailLink.h"
#include "TesselMail/Model/ErrorText.h"

#include <exception>
#include <utility>

namespace Probe {
namespace {

Json mailto(const Json& request) {
    const MailtoCapture capture(text(request, "text"));
    return {{"to", capture.to},           {"cc", capture.cc},     {"bcc", capture.bcc},
            {"subject", capture.subject}, {"body", capture.body}, {"original", capture.original},
            {"text", capture.text()}};
}

Json link(const Json& request) {
    const auto link = TesselMail::CapturedMailLink::of(text(request, "text"), boolean(request, "chinese"));
    if (!link) return nullptr;
    Json fields = Json::array();
    for (const auto& field : link->fields)
        fields.push_back({{"id", field.id}, {"label", field.label}, {"value", field.value}});
    return {{"title", link->title},         {"symbol", link->symbol},       {"fields", std::move(fields)},
            {"copyLabel", link->copyLabel}, {"copyValue", link->copyValue}, {"height", link->height()}};
}

Json errorText(const Json& request) {
    const std::string name = text(request, "error");
    std::exception_ptr error;
    for (const MailError::Case which :
         {MailError::tooLarge, MailError::malformed, MailError::unsupported, MailError::tooMany,
          MailError::cancelled, MailError::sourceChanged, MailError::unsafeDestination})
        if (MailError(which).name() == name) error = std::make_exception_ptr(MailError(which));
    if (name == "other") error = std::make_exception_ptr(std::runtime_error(name));
    if (!error) throw UsageError("no such error");
    return std::string(TesselMail::errorText(error).in(boolean(request, "chinese")));
}

} // namespace

Operations linkOperations() {
    return {
        {"mailto", mailto},
        {"link", link},
        {"errorText", errorText},
    };
}

} // namespace Probe
