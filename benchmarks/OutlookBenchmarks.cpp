// Decoding Outlook messages, beside copying their files: into a buffer that is there, and into a new one, as
// every attachment is.

#include "MailCore/Outlook/Outlook.h"
#include "benchmarks/Workload.h"
#include "tests/Support/OutlookBuilder.h"

#include <benchmark/benchmark.h>

#include <cstring>

using namespace MailCore;
using namespace MailCore::Testing;

namespace {

/// What makes a message: bytes of HTML and of an attachment.
struct Size {
    std::size_t html;
    std::size_t attachment;
};
constexpr Size letter{3'600, 0};            // 11 KB
constexpr Size newsletter{61'000, 300'000}; // 375 KB
constexpr Size report{61'000, 970'000};     // 1 MiB
constexpr Size album{61'000, 31'200'000};   // 30 MiB

Bytes file(const Size& size) {
    OutlookMail mail =
        OutlookMail()
            .subject("Letters from the harbour, issue 42")
            .from("The harbour", "news@harbour.example")
            .submitted(133'486'317'300'000'000)
            .internetCodepage(65001)
            .plain(std::string(1'000, 'p'))
            .transport("Received: by harbour.example\r\nDate: Tue, 2 Jan 2024 09:15:30 +0800\r\n")
            .html(Workload::Writer(4).newsletter(size.html).substr(0, size.html));
    for (const std::string_view name : {"Ana", "Bo", "Cy"}) mail.recipient(name, "someone@tessel.example");
    if (size.attachment > 0)
        mail.file("album.bin", "application/octet-stream", std::string(size.attachment, 'a'));
    return mail;
}

void perSecond(benchmark::State& state, const Bytes& bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
    state.counters["file"] = static_cast<double>(bytes.size());
}

void outlookDecode(benchmark::State& state, const Size& size) {
    const Bytes bytes = file(size);
    for (auto _ : state) benchmark::DoNotOptimize(Outlook::parse(bytes));
    perSecond(state, bytes);
}

void outlookMemcpy(benchmark::State& state, const Size& size) {
    const Bytes bytes = file(size);
    Bytes target = bytes;
    for (auto _ : state) {
        std::memcpy(target.data(), bytes.data(), bytes.size());
        benchmark::ClobberMemory();
    }
    perSecond(state, bytes);
}

void outlookNewCopy(benchmark::State& state, const Size& size) {
    const Bytes bytes = file(size);
    for (auto _ : state) {
        Bytes target(bytes.size());
        std::memcpy(target.data(), bytes.data(), bytes.size());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    perSecond(state, bytes);
}

BENCHMARK_CAPTURE(outlookDecode, letter, letter);
BENCHMARK_CAPTURE(outlookMemcpy, letter, letter);
BENCHMARK_CAPTURE(outlookNewCopy, letter, letter);
BENCHMARK_CAPTURE(outlookDecode, newsletter, newsletter);
BENCHMARK_CAPTURE(outlookMemcpy, newsletter, newsletter);
BENCHMARK_CAPTURE(outlookNewCopy, newsletter, newsletter);
BENCHMARK_CAPTURE(outlookDecode, report, report);
BENCHMARK_CAPTURE(outlookMemcpy, report, report);
BENCHMARK_CAPTURE(outlookNewCopy, report, report);
BENCHMARK_CAPTURE(outlookDecode, album, album);
BENCHMARK_CAPTURE(outlookMemcpy, album, album);
BENCHMARK_CAPTURE(outlookNewCopy, album, album);

} // namespace
