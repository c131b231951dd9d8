#pragma once

#include "MailCore/Model/MailCollection.h"
#include "MailCore/Model/MailMessage.h"
#include "MailCore/Rendering/MailStyles.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// What the operations of the probe share: reading a request, writing a reply.
namespace Probe {

using namespace MailCore;
using Json = nlohmann::ordered_json;

/// A request that is not understood.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

using Operation = Json (*)(const Json& request);
using Operations = std::map<std::string, Operation, std::less<>>;

// The operations by the room of the engine that they call

Operations sourceOperations();
Operations outlookOperations();
Operations decodingOperations();
Operations renderingOperations();
Operations searchOperations();
Operations linkOperations();

// Requests: a field that is missing or of another kind is a UsageError

const Json& field(const Json& request, const char* name);
bool isAbsent(const Json& request, const char* name);
std::string textOf(const Json& value, const char* name);
std::string text(const Json& request, const char* name);
std::optional<std::string> optionalText(const Json& request, const char* name);
bool boolean(const Json& request, const char* name);
bool optionalBoolean(const Json& request, const char* name);
std::int64_t integer(const Json& request, const char* name);
std::int64_t integerOr(const Json& request, const char* name, std::int64_t otherwise);
double number(const Json& request, const char* name);
const Json& list(const Json& request, const char* name);
Bytes bytes(const Json& request, const char* name);
URL path(const Json& request, const char* name = "path");
std::vector<Header> headerList(const Json& request, const char* name);

/// The bytes that a request carries as "data64", or the whole file it names as "path".
Bytes bytesOrFile(const Json& request);
/// The index of a source.
MailCollection collectionAt(const URL& url);
/// The entry "id" of the source at "path".
SharedEntry entryAt(const Json& request);

// Replies

Json json(const std::optional<std::string>& value);
Json base64(ByteView value);
Json json(const std::vector<Header>& headers);
Json json(const MailAttachment& attachment, bool withBytes);
Json json(const MailMessage& message, bool withBytes);
Json json(const std::optional<FileRevision>& revision);
Json json(const MessageEntry& entry);
Json json(const MailStyles& styles);
Json styled(const MailStyles& styles, const std::string& text);

} // namespace Probe
