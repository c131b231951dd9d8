// tessel-run index|decode|render FILE, tessel-run search FILE QUERY: does the work once and prints seconds,
// messages, peak memory and a figure of its result.

#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Search/MailSearch.h"
#include "MailCore/Sources/MailReader.h"

#include <chrono>
#include <cstdio>
#include <string_view>
#include <sys/resource.h>

using namespace MailCore;

int main(int count, char** arguments) {
    const std::string_view work(count > 1 ? arguments[1] : "");
    if (count != (work == "search" ? 4 : 3)) return 2;
    const auto begin = std::chrono::steady_clock::now();
    const MailCollection collection = MailReader::collection(
        URL::file(arguments[2]), never, [](std::size_t) {}, {Limits::messages, Limits::indexBytes},
        [](std::span<const SharedEntry>) {});
    const auto indexed = std::chrono::steady_clock::now();
    std::size_t bytes = 0;
    if (work == "search") {
        bytes = MailSearch::scan(collection.entries, arguments[3], never).entries.size();
    } else if (work != "index") {
        for (const SharedEntry& entry : collection.entries) {
            const MailMessage message = MailReader::message(*entry, never);
            bytes += message.plain.size() + message.html.size();
            for (const MailAttachment& attachment : message.attachments) bytes += attachment.bytes.size();
            if (work == "render") bytes += SafeHTML::render(message).body.size();
        }
    }
    const auto end = std::chrono::steady_clock::now();
    const std::chrono::duration<double> seconds = work == "index" ? indexed - begin : end - indexed;
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    std::printf("%.3f %zu %ld %zu%s\n", seconds.count(), collection.entries.size(), usage.ru_maxrss, bytes,
                collection.indexLimitReached ? " limit" : "");
}
