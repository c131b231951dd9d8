// What a request says.
#include "tools/probe/Probe.h"

#include "MailCore/MIME/Base64.h"
#include "MailCore/Model/Limits.h"
#include "MailCore/Sources/MailReader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace Probe {

const Json& field(const Json& request, const char* name) {
    const auto found = request.find(name);
    if (found == request.end()) throw UsageError(std::string("missing field ") + name);
    return *found;
}

bool isAbsent(const Json& request, const char* name) {
    const auto found = request.find(name);
    return found == request.end() || found->is_null();
}

std::string textOf(const Json& value, const char* name) {
    if (!value.is_string()) throw UsageError(std::string(name) + " is not a text");
    return value.get<std::string>();
}

std::string text(const Json& request, const char* name) {
    return textOf(field(request, name), name);
}

std::optional<std::string> optionalText(const Json& request, const char* name) {
    if (isAbsent(request, name)) return std::nullopt;
    return text(request, name);
}

bool boolean(const Json& request, const char* name) {
    const Json& value = field(request, name);
    if (!value.is_boolean()) throw UsageError(std::string(name) + " is not a boolean");
    return value.get<bool>();
}

bool optionalBoolean(const Json& request, const char* name) {
    return !isAbsent(request, name) && boolean(request, name);
}

std::int64_t integer(const Json& request, const char* name) {
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    const Json& value = field(request, name);
    if (value.is_number_unsigned()) // a larger one is as good as the largest
        return static_cast<std::int64_t>(std::min<std::uint64_t>(value.get<std::uint64_t>(), largest));
    if (value.is_number_integer()) return value.get<std::int64_t>();
    const double number = value.is_number() ? value.get<double>() : 0.5;
    if (std::trunc(number) != number || std::abs(number) > 9e15)
        throw UsageError(std::string(name) + " is not an integer");
    return static_cast<std::int64_t>(number);
}

std::int64_t integerOr(const Json& request, const char* name, std::int64_t otherwise) {
    return isAbsent(request, name) ? otherwise : integer(request, name);
}

double number(const Json& request, const char* name) {
    const Json& value = field(request, name);
    if (!value.is_number()) throw UsageError(std::string(name) + " is not a number");
    return value.get<double>();
}

const Json& list(const Json& request, const char* name) {
    const Json& value = field(request, name);
    if (!value.is_array()) throw UsageError(std::string(name) + " is not a list");
    return value;
}

Bytes bytes(const Json& request, const char* name) {
    std::optional<Bytes> decoded = Base64::decode(text(request, name));
    if (!decoded) throw UsageError(std::string(name) + " is not base64");
    return *std::move(decoded);
}

URL path(const Json& request, const char* name) {
    return URL::file(text(request, name));
}

std::vector<Header> headerList(const Json& request, const char* name) {
    std::vector<Header> headers;
    for (const Json& item : list(request, name)) headers.push_back({text(item, "name"), text(item, "value")});
    return headers;
}

Bytes bytesOrFile(const Json& request) {
    if (!isAbsent(request, "data64")) return bytes(request, "data64");
    const FileHandle file = MailReader::openSource(path(request));
    return MailReader::read(file, FileRevision::capture(file).size, never);
}

MailCollection collectionAt(const URL& url) {
    return MailReader::collection(
        url, never, [](std::size_t) {}, {Limits::messages, Limits::indexBytes},
        [](std::span<const SharedEntry>) {});
}

SharedEntry entryAt(const Json& request) {
    const std::int64_t id = integer(request, "id");
    const MailCollection collection = collectionAt(path(request));
    if (id < 0 || std::cmp_greater_equal(id, collection.entries.size())) throw UsageError("no such id");
    return collection.entries[static_cast<std::size_t>(id)];
}

} // namespace Probe
