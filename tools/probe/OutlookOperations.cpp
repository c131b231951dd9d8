// Outlook messages and their containers.
#include "tools/probe/Probe.h"

#include "MailCore/Outlook/Outlook.h"

#include <utility>

namespace Probe {
namespace {

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

} // namespace

Operations outlookOperations() {
    return {
        {"outlook", outlook},
        {"compound", compound},
        {"stream", stream},
    };
}

} // namespace Probe
