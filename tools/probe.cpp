// The engine behind one line of JSON: a request per line on standard input, a reply per line on standard
// output. It holds no logic of its own: every operation is a direct call of the engine.

#include "MailCore/Dates/MailDate.h"
#include "MailCore/Links/MailtoCapture.h"
#include "MailCore/MIME/Base64.h"
#include "MailCore/MIME/MIME.h"
#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Model/SafeFilename.h"
#include "MailCore/Outlook/Outlook.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/MailStyles.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Search/MailSearch.h"
#include "MailCore/Sources/MailReader.h"
#include "TesselMail/Model/CapturedMailLink.h"
#include "TesselMail/Model/ErrorText.h"

#include <glib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <fcntl.h>
#include <iostream>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <system_error>

namespace {

using namespace MailCore;
using Json = nlohmann::ordered_json;

/// A request that is not understood.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Requests

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

URL path(const Json& request, const char* name = "path") {
    return URL::file(text(request, name));
}

std::vector<Header> headerList(const Json& request, const char* name) {
    std::vector<Header> headers;
    for (const Json& item : list(request, name)) headers.push_back({text(item, "name"), text(item, "value")});
    return headers;
}

// Replies

Json json(const std::optional<std::string>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json base64(ByteView value) {
    return {{"data64", Base64::encode(value)}};
}

Json json(const std::vector<Header>& headers) {
    Json result = Json::array();
    for (const Header& header : headers) result.push_back({{"name", header.name}, {"value", header.value}});
    return result;
}

std::string sha256(ByteView value) {
    const std::unique_ptr<gchar, decltype(&g_free)> digest(
        g_compute_checksum_for_data(G_CHECKSUM_SHA256, reinterpret_cast<const guchar*>(value.data()),
                                    value.size()),
        &g_free);
    return digest.get();
}

Json json(const MailMessage& message, bool withBytes);

Json json(const MailAttachment& attachment, bool withBytes) {
    Json embedded = Json::array();
    for (const MailMessage& message : attachment.embedded) embedded.push_back(json(message, withBytes));
    Json result = {
        {"name", attachment.name},           {"type", attachment.type},
        {"size", attachment.bytes.size()},   {"sha256", sha256(attachment.bytes)},
        {"contentID", attachment.contentID}, {"available", attachment.available},
        {"isOLE", attachment.isOLE},         {"canPreview", attachment.canPreview()},
        {"embedded", std::move(embedded)},
    };
    if (withBytes) result["data64"] = Base64::encode(attachment.bytes);
    return result;
}

Json json(const MailMessage& message, bool withBytes) {
    Json attachments = Json::array();
    for (const MailAttachment& attachment : message.attachments)
        attachments.push_back(json(attachment, withBytes));
    return {
        {"subject", message.subject},
        {"from", message.from},
        {"to", message.to},
        {"cc", message.cc},
        {"date", message.date},
        {"plain", message.plain},
        {"html", message.html},
        {"summary", message.summary()},
        {"headers", json(message.headers)},
        {"attachments", std::move(attachments)},
    };
}

Json json(const std::optional<FileRevision>& revision) {
    if (!revision) return nullptr;
    return {
        {"device", revision->device},
        {"inode", revision->inode},
        {"size", revision->size},
        {"seconds", revision->seconds},
        {"nanoseconds", revision->nanoseconds},
    };
}

Json json(const MessageEntry& entry) {
    return {
        {"id", entry.id},
        {"subject", entry.subject.view()},
        {"from", entry.from.view()},
        {"date", entry.date.view()},
        {"offset", entry.offset},
        {"length", entry.length},
        {"file", entry.file.path()},
        {"recipients", entry.recipients.view()},
        {"timestamp", entry.timestamp ? Json(*entry.timestamp) : Json(nullptr)},
        {"metadataBytes", entry.metadataBytes()},
        {"revision", json(entry.revision)},
    };
}

Json json(const MailStyles& styles) {
    Json colors = Json::array();
    for (const MailStyles::Color& color : styles.colors()) colors.push_back({color.light, color.dark});
    return colors;
}

Json styled(const MailStyles& styles, const std::string& text) {
    return {{"text", text}, {"colors", json(styles)}};
}

// Operations

void ignoreProgress(std::size_t) {}

void ignoreBatch(std::span<const SharedEntry>) {}

MailCollection collectionAt(const URL& url) {
    return MailReader::collection(url, never, ignoreProgress, {Limits::messages, Limits::indexBytes},
                                  ignoreBatch);
}

SharedEntry entryAt(const Json& request) {
    const std::int64_t id = integer(request, "id");
    const MailCollection collection = collectionAt(path(request));
    if (id < 0 || std::cmp_greater_equal(id, collection.entries.size())) throw UsageError("no such id");
    return collection.entries[static_cast<std::size_t>(id)];
}

Json index(const Json& request) {
    const IndexLimits limits(integerOr(request, "messages", Limits::messages),
                             integerOr(request, "bytes", Limits::indexBytes));
    Json batches = Json::array();
    Json counts = Json::array();
    const auto begin = std::chrono::steady_clock::now();
    const MailCollection collection = MailReader::collection(
        path(request), never, [&](std::size_t count) { counts.push_back(count); }, limits,
        [&](std::span<const SharedEntry> batch) { batches.push_back(batch.size()); });
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    Json entries = Json::array();
    for (const SharedEntry& entry : collection.entries) entries.push_back(json(*entry));
    return {
        {"kind", collection.kind},
        {"url", collection.url.path()},
        {"indexLimitReached", collection.indexLimitReached},
        {"metadataBytes", collection.metadataBytes},
        {"entries", std::move(entries)},
        {"batches", std::move(batches)},
        {"progress", std::move(counts)},
        {"seconds", seconds.count()},
    };
}

Json isCurrent(const Json& request) {
    const MailCollection collection = collectionAt(path(request));
    if (optionalBoolean(request, "touch") && !collection.entries.empty()) {
        const std::string file = collection.entries.front()->file.path();
        if (::utimensat(AT_FDCWD, file.c_str(), nullptr, 0) != 0)
            throw std::system_error(errno, std::generic_category(), "utimensat");
    }
    return MailReader::isCurrent(collection);
}

Json message(const Json& request) {
    return json(MailReader::message(*entryAt(request), never), optionalBoolean(request, "bytes"));
}

Json original(const Json& request) {
    return base64(MailReader::original(*entryAt(request)));
}

Json exportOriginal(const Json& request) {
    MailReader::exportOriginal(*entryAt(request), path(request, "to"), never,
                               integerOr(request, "chunkSize", 131'072));
    return Json::object();
}

Json validateDestination(const Json& request) {
    std::vector<URL> protecting;
    for (const Json& item : list(request, "protecting"))
        protecting.push_back(URL::file(textOf(item, "protecting")));
    MailReader::validateDestination(path(request, "to"), protecting);
    return Json::object();
}

Json parse(const Json& request) {
    return json(MIME::parse(bytes(request, "data64"), never), optionalBoolean(request, "bytes"));
}

/// The bytes that a request carries, or the whole file it names.
Bytes bytesOrFile(const Json& request) {
    if (!isAbsent(request, "data64")) return bytes(request, "data64");
    const FileHandle file = MailReader::openSource(path(request));
    return MailReader::read(file, FileRevision::capture(file).size, never);
}

Json outlook(const Json& request) {
    return json(Outlook::parse(bytesOrFile(request)), optionalBoolean(request, "bytes"));
}

Json compound(const Json& request) {
    const Bytes data = bytesOrFile(request);
    const Compound compound(data);
    Json paths = Json::object();
    for (const auto& [path, index] : compound.paths()) paths[path] = index;
    Json nodes = Json::array();
    for (const Compound::Node& node : compound.nodes())
        nodes.push_back({{"name", node.name}, {"kind", node.kind}, {"size", node.size}});
    return {{"sector", compound.sector()}, {"paths", std::move(paths)}, {"nodes", std::move(nodes)}};
}

Json stream(const Json& request) {
    const Bytes data = bytesOrFile(request);
    const std::optional<Bytes> found = Compound(data).stream(text(request, "name"));
    return found ? base64(*found) : Json(nullptr);
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
    MIME::append(text(request, "text"), target, text(request, "separator"));
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

Json attributes(const Json& request) {
    Json result = Json::object();
    for (const auto& [name, value] : SafeHTML::attributes(text(request, "text"))) result[name] = value;
    return result;
}

Json rasterType(const Json& request) {
    const Bytes data = bytes(request, "data64");
    const std::optional<std::string_view> type = SafeHTML::rasterType(data);
    return type ? Json(*type) : Json(nullptr);
}

MailMessage messageToRender(const Json& request) {
    if (!isAbsent(request, "path")) return MailReader::message(*entryAt(request), never);
    MailMessage message;
    message.html = text(request, "html");
    message.plain = optionalText(request, "plain").value_or("");
    if (!isAbsent(request, "attachments")) {
        for (const Json& item : list(request, "attachments")) {
            MailAttachment attachment;
            attachment.contentID = text(item, "contentID");
            attachment.bytes = bytes(item, "data64");
            message.attachments.push_back(std::move(attachment));
        }
    }
    return message;
}

Json render(const Json& request) {
    const RenderedMail rendered = SafeHTML::render(messageToRender(request));
    Json links = Json::object();
    for (const auto& [token, address] : rendered.links) links[token] = address;
    return {{"body", rendered.body}, {"links", std::move(links)}, {"stylesheet", rendered.stylesheet}};
}

Json styles(const Json& request) {
    MailStyles styles;
    styles.addStylesheet(text(request, "css"), 0);
    return {{"rules", styles.rules()}, {"colors", json(styles)}, {"stylesheet", styles.stylesheet()}};
}

Json declarations(const Json& request) {
    MailStyles styles;
    const std::string result = styles.declarations(text(request, "text"));
    return styled(styles, result);
}

Json inlineStyle(const Json& request) {
    const Json& given = field(request, "attributes");
    if (!given.is_object()) throw UsageError("attributes is not an object");
    Attributes attributes;
    for (const auto& [name, value] : given.items()) attributes[name] = textOf(value, "attributes");
    MailStyles styles;
    const std::string result = styles.inlineStyle(attributes, text(request, "tag"));
    return styled(styles, result);
}

Json color(const Json& request) {
    MailStyles styles;
    const std::optional<std::string> result =
        styles.color(text(request, "text"), boolean(request, "background"));
    return result ? styled(styles, *result) : Json(nullptr);
}

Json page(const Json& request) {
    std::optional<std::uint32_t> background;
    if (!isAbsent(request, "backgroundRGB"))
        background = static_cast<std::uint32_t>(integer(request, "backgroundRGB"));
    const RenderedMail rendered{
        .body = text(request, "body"), .links = {}, .stylesheet = text(request, "stylesheet")};
    return rendered.page(boolean(request, "dark"), number(request, "scale"), background);
}

Json ids(std::span<const SharedEntry> entries) {
    Json result = Json::array();
    for (const SharedEntry& entry : entries) result.push_back(entry->id);
    return result;
}

Json search(const Json& request) {
    const std::string query = text(request, "query");
    const bool newestFirst = boolean(request, "newestFirst");
    const MailCollection collection = collectionAt(path(request));
    const auto begin = std::chrono::steady_clock::now();
    MailSearch::Results found = MailSearch::scan(collection.entries, query, never);
    const EntryList ordered = MailSearch::ordered(std::move(found.entries), newestFirst);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    return {{"entries", ids(ordered)}, {"unreadable", found.unreadable}, {"seconds", seconds.count()}};
}

Json matching(const Json& request) {
    const std::string query = text(request, "query");
    return ids(MailSearch::matching(collectionAt(path(request)).entries, query, never));
}

Json ordered(const Json& request) {
    EntryList entries;
    for (const Json& item : list(request, "entries")) {
        MessageEntry entry{.id = integer(item, "id")};
        if (!isAbsent(item, "timestamp")) entry.timestamp = number(item, "timestamp");
        entries.push_back(std::make_shared<const MessageEntry>(std::move(entry)));
    }
    return ids(MailSearch::ordered(std::move(entries), boolean(request, "newestFirst")));
}

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

using Operation = Json (*)(const Json& request);

const std::map<std::string, Operation, std::less<>>& operations() {
    static const std::map<std::string, Operation, std::less<>> table = {
        {"index", index},
        {"isCurrent", isCurrent},
        {"message", message},
        {"original", original},
        {"export", exportOriginal},
        {"validateDestination", validateDestination},
        {"parse", parse},
        {"outlook", outlook},
        {"compound", compound},
        {"stream", stream},
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
        {"safeFilename", [](const Json& r) -> Json { return safeFilename(text(r, "text")); }},
        {"escape", [](const Json& r) -> Json { return SafeHTML::escape(text(r, "text")); }},
        {"entities", [](const Json& r) -> Json { return SafeHTML::entities(text(r, "text")); }},
        {"searchableText", [](const Json& r) -> Json { return SafeHTML::searchableText(text(r, "text")); }},
        {"safeLink", [](const Json& r) -> Json { return json(SafeHTML::safeLink(text(r, "text"))); }},
        {"attributes", attributes},
        {"rasterType", rasterType},
        {"safeRaster", [](const Json& r) -> Json { return SafeHTML::safeRaster(bytes(r, "data64")); }},
        {"render", render},
        {"styles", styles},
        {"declarations", declarations},
        {"inline", inlineStyle},
        {"color", color},
        {"selector", [](const Json& r) -> Json { return json(MailStyles::selector(text(r, "text"))); }},
        {"identifier", [](const Json& r) -> Json { return json(MailStyles::identifier(text(r, "text"))); }},
        {"length",
         [](const Json& r) -> Json {
             return json(MailStyles::length(text(r, "text"), boolean(r, "negative")));
         }},
        {"page", page},
        {"search", search},
        {"matching", matching},
        {"ordered", ordered},
        {"mailto", mailto},
        {"link", link},
        {"errorText", errorText},
    };
    return table;
}

Json answer(const std::string& line) {
    try {
        const Json request = Json::parse(line);
        if (!request.is_object()) throw UsageError("not an object");
        const auto operation = operations().find(text(request, "op"));
        if (operation == operations().end()) throw UsageError("unknown operation");
        return {{"ok", operation->second(request)}};
    } catch (const MailError& error) {
        return {{"error", error.name()}};
    } catch (const std::system_error& error) {
        return {{"error", std::string("platform: ") + error.what()}};
    } catch (const UsageError& error) {
        return {{"error", std::string("usage: ") + error.what()}};
    } catch (const Json::exception& error) {
        return {{"error", std::string("usage: ") + error.what()}};
    } catch (const std::exception& error) {
        return {{"error", std::string("platform: ") + error.what()}};
    }
}

} // namespace

int main() {
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
        // A path may hold bytes that are no text; JSON may not.
        std::cout << answer(line).dump(-1, ' ', false, Json::error_handler_t::replace) << '\n' << std::flush;
    }
}
