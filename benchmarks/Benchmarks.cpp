// Single operations of the engine, in bytes a second where that means something.

#include "MailCore/Dates/MailDate.h"
#include "MailCore/MIME/Base64.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/MIME.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Search/MailSearch.h"
#include "MailCore/Search/TextQuery.h"
#include "benchmarks/Workload.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>

using namespace MailCore;

namespace {

void perSecond(benchmark::State& state, std::size_t bytes) {
    state.SetBytesProcessed(static_cast<std::int64_t>(bytes) * static_cast<std::int64_t>(state.iterations()));
}

std::string repeated(std::string_view piece, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes) text += piece;
    return text;
}

void renderNewsletter(benchmark::State& state) {
    const MailMessage message{.html = Workload::Writer(1).newsletter(60'000)};
    for (auto _ : state) benchmark::DoNotOptimize(SafeHTML::render(message));
    perSecond(state, message.html.size());
}
BENCHMARK(renderNewsletter);

/// Hostile documents of 4 MiB stay within a small factor of a benign one.
void renderHostile(benchmark::State& state, std::string_view piece) {
    const MailMessage message{.html = piece.empty() ? Workload::Writer(1).newsletter(4'194'304)
                                                    : repeated(piece, 4'194'304)};
    for (auto _ : state) benchmark::DoNotOptimize(SafeHTML::render(message));
    perSecond(state, message.html.size());
}
BENCHMARK_CAPTURE(renderHostile, benign, "");
BENCHMARK_CAPTURE(renderHostile, openTags, "<b>");
BENCHMARK_CAPTURE(renderHostile, openQuotes, "<p title=\"");
BENCHMARK_CAPTURE(renderHostile, svgOpeners, "<svg>");
BENCHMARK_CAPTURE(renderHostile, styleOpeners, "<style>{</style>");
BENCHMARK_CAPTURE(renderHostile, braces, "<style>{{{{{{{{{{{{{{{{{{{{{{{{{</style>");
BENCHMARK_CAPTURE(renderHostile, comments, "<!---->");
BENCHMARK_CAPTURE(renderHostile, entities, "&amp");
BENCHMARK_CAPTURE(renderHostile, attributes, "<p a b c d e f g h i j k l m n o p>");

void searchHostile(benchmark::State& state, std::string_view piece) {
    const std::string html =
        piece.empty() ? Workload::Writer(1).newsletter(4'194'304) : repeated(piece, 4'194'304);
    for (auto _ : state) benchmark::DoNotOptimize(SafeHTML::searchableText(html));
    perSecond(state, html.size());
}
BENCHMARK_CAPTURE(searchHostile, benign, "");
BENCHMARK_CAPTURE(searchHostile, scriptOpeners, "<script>");
BENCHMARK_CAPTURE(searchHostile, openTags, "<");

void parseMixed(benchmark::State& state) {
    Workload::Writer writer(2);
    std::vector<std::string> messages;
    std::size_t bytes = 0;
    for (int index = 0; index < 200; ++index) bytes += messages.emplace_back(writer.mixedMessage()).size();
    for (auto _ : state) {
        for (const std::string& message : messages)
            benchmark::DoNotOptimize(MIME::parse(bytesOf(message), never));
    }
    perSecond(state, bytes);
}
BENCHMARK(parseMixed);

void copyMixed(benchmark::State& state) {
    const std::string source(12'000'000, 'x');
    std::string target(source.size(), ' ');
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), source.size());
        benchmark::ClobberMemory();
    }
    perSecond(state, source.size());
}
BENCHMARK(copyMixed);

void splitSmall(benchmark::State& state) {
    const std::string message = Workload::Writer(3).smallMessage();
    for (auto _ : state) benchmark::DoNotOptimize(MIME::split(bytesOf(message)));
    perSecond(state, message.size());
}
BENCHMARK(splitSmall);

void decodeBase64(benchmark::State& state) {
    const std::string encoded = Base64::encode(Bytes(1'500'000, std::byte{0x5A}));
    std::string lines;
    for (std::size_t at = 0; at < encoded.size(); at += 76) lines.append(encoded, at, 76).append("\r\n");
    for (auto _ : state) benchmark::DoNotOptimize(Base64::decode(lines));
    perSecond(state, lines.size());
}
BENCHMARK(decodeBase64);

void headerText(benchmark::State& state, std::string_view value) {
    for (auto _ : state) benchmark::DoNotOptimize(MIME::headerText(value));
    perSecond(state, value.size());
}
BENCHMARK_CAPTURE(headerText, plain, "Re: the minutes of yesterday's meeting");
BENCHMARK_CAPTURE(headerText, utf8, "=?utf-8?B?5Lit5paH5Lit5paH?= =?utf-8?Q?caf=C3=A9?=");
BENCHMARK_CAPTURE(headerText, gb2312, "=?gb2312?B?1tDOxNbQzsQ=?=");

void timestamp(benchmark::State& state, std::string_view text) {
    for (auto _ : state) benchmark::DoNotOptimize(MailDate::timestamp(text));
}
BENCHMARK_CAPTURE(timestamp, usual, "Tue, 2 Jan 2024 09:15:30 +0800 (CST)");
BENCHMARK_CAPTURE(timestamp, shortYear, "Tue, 2 Jan 96 09:15:30 +0000");
BENCHMARK_CAPTURE(timestamp, unreadable, "Tue, 2 Jan 2024 09:15:30 EST");

/// As many entries as an index takes, with texts of usual length and dates in no order.
const EntryList& entries() {
    static const EntryList made = [] {
        Workload::Writer writer(4);
        std::mt19937 random(4);
        EntryList list;
        for (std::int64_t id = 0; id < 200'000; ++id) {
            list.push_back(std::make_shared<const MessageEntry>(
                MessageEntry{.id = id,
                             .subject = writer.prose(40),
                             .from = writer.prose(20) + "<someone@example.org>",
                             .recipients = writer.prose(20) + "<reader@example.net>, other@example.com",
                             .timestamp = static_cast<double>(random())}));
        }
        return list;
    }();
    return made;
}

/// 200,000 entries, none of which matches.
void matching(benchmark::State& state, std::string_view query) {
    const EntryList& list = entries();
    for (auto _ : state)
        benchmark::DoNotOptimize(MailSearch::matching(list, query, never, CaseFolding::Rules::standard));
}
BENCHMARK_CAPTURE(matching, words, "quarterly zebra")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(matching, oneLetter, "ü")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(matching, Cyrillic, "встреча")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(matching, Chinese, "纪要")->Unit(benchmark::kMillisecond);

void ordered(benchmark::State& state) {
    const EntryList& list = entries();
    for (auto _ : state) benchmark::DoNotOptimize(MailSearch::ordered(list, true));
}
BENCHMARK(ordered)->Unit(benchmark::kMillisecond);

/// A text of 4 MiB without the query. Every search of a text in which a letter could stand for a part of the
/// query has to fold it all.
void findInText(benchmark::State& state, std::string_view piece, std::string_view query) {
    const std::string text =
        piece.empty() ? Workload::Writer(5).prose(4'194'304) : repeated(piece, 4'194'304);
    TextQuery prepared(query, CaseFolding::Rules::standard);
    for (auto _ : state) benchmark::DoNotOptimize(prepared.isIn(text));
    perSecond(state, text.size());
}
BENCHMARK_CAPTURE(findInText, words, "", "quarterly zebra");
BENCHMARK_CAPTURE(findInText, wordsWithSharpS, "", "quarterly assessment");
BENCHMARK_CAPTURE(findInText, accents, "", "Übergrößenträger");
BENCHMARK_CAPTURE(findInText, Cyrillic, "Встреча перенесена на вторник. ", "протокол");
BENCHMARK_CAPTURE(findInText, Chinese, "关于召开年度工作会议的通知，", "会议纪要");
BENCHMARK_CAPTURE(findInText, Korean, "회의가 화요일로 연기되었습니다. ", "회의록");
BENCHMARK_CAPTURE(findInText, nearMatches, "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab",
                  "aaaaaaaaaaaaaaaaaaaaaaaac");
BENCHMARK_CAPTURE(findInText, marks, "e\u0301\u0323", "e\u0301");

} // namespace
