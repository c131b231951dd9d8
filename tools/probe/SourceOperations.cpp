// Opening, reading and exporting.
#include "tools/probe/Probe.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/SafeFilename.h"
#include "MailCore/Sources/MailReader.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace Probe {
namespace {

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

} // namespace

Operations sourceOperations() {
    return {
        {"index", index},
        {"isCurrent", isCurrent},
        {"message", message},
        {"original", original},
        {"export", exportOriginal},
        {"validateDestination", validateDestination},
        {"safeFilename", [](const Json& r) -> Json { return safeFilename(text(r, "text")); }},
    };
}

} // namespace Probe
