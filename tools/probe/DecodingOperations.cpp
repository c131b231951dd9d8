// Messages, headers, charsets and dates.
#include "tools/probe/Probe.h"

#include "MailCore/Dates/MailDate.h"
#include "MailCore/MIME/Base64.h"
#include "MailCore/MIME/Bodies.h"
#include "MailCore/MIME/DecodeHTML.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/MIME.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/MIME/Parameters.h"
#include "MailCore/MIME/QuotedPrintable.h"

#include <algorithm>
#include <utility>

namespace Probe {
namespace {

Json parse(const Json& request) {
    return json(MIME::parse(bytes(request, "data64"), never), optionalBoolean(request, "bytes"));
}

Json split(const Json& request) {
    const Bytes data = bytes(request, "data64");
    const MIME::Split parts = MIME::split(data);
    return {{"headers", json(parts.headers)}, {"body64", Base64::encode(parts.body)}};
}

Json parameters(const Json& request) {
    Json result = Json::object();
    for (const auto& [name, value] : MIME::parameters(text(request, "text"))) result[name] = value;
    return result;
}

Json appended(const Json& request) {
    std::string target = text(request, "target");
    MIME::appendText(text(request, "text"), target, text(request, "separator"));
    return target;
}

Json charset(const Json& request) {
    std::optional<std::uint64_t> codepage;
    if (!isAbsent(request, "codepage")) {
        const Json& value = field(request, "codepage");
        codepage = value.is_number_unsigned()
                       ? value.get<std::uint64_t>()
                       : static_cast<std::uint64_t>(std::max<std::int64_t>(integer(request, "codepage"), 0));
    }
    return json(MailEncoding::charset(codepage));
}

Json decodedBase64(const Json& request) {
    const std::optional<Bytes> decoded = Base64::decode(text(request, "text"));
    return decoded ? base64(*decoded) : Json(nullptr);
}

Json timestamp(const Json& request) {
    const std::optional<double> seconds = MailDate::timestamp(text(request, "text"));
    return seconds ? Json(*seconds) : Json(nullptr);
}

} // namespace

Operations decodingOperations() {
    return {
        {"parse", parse},
        {"split", split},
        {"headerText", [](const Json& r) -> Json { return MIME::headerText(text(r, "text")); }},
        {"parameters", parameters},
        {"filename", [](const Json& r) -> Json { return MIME::filename(headerList(r, "headers")); }},
        {"percentBytes", [](const Json& r) -> Json { return base64(MIME::percentBytes(text(r, "text"))); }},
        {"extendedParameter", [](const Json& r) -> Json { return MIME::extendedParameter(text(r, "text")); }},
        {"append", appended},
        {"decode",
         [](const Json& r) -> Json { return MailEncoding::decode(bytes(r, "data64"), text(r, "charset")); }},
        {"charset", charset},
        {"quotedPrintable",
         [](const Json& r) -> Json {
             return base64(MIME::quotedPrintable(bytes(r, "data64"), boolean(r, "header")));
         }},
        {"base64", decodedBase64},
        {"decodeHTML",
         [](const Json& r) -> Json {
             return MIME::decodeHTML(bytes(r, "data64"), optionalText(r, "charset"));
         }},
        {"timestamp", timestamp},
        {"display",
         [](const Json& r) -> Json { return MailDate::display(text(r, "text"), text(r, "locale")); }},
        {"withoutComments",
         [](const Json& r) -> Json { return json(MailDate::withoutComments(text(r, "text"))); }},
    };
}

} // namespace Probe
