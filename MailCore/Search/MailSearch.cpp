#include "MailCore/Search/MailSearch.h"

#include "MailCore/MIME/MIME.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Search/TextQuery.h"
#include "MailCore/Sources/TextReader.h"

#include <algorithm>
#include <bit>
#include <exception>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace MailCore::MailSearch {

namespace {

constexpr std::size_t entriesBetweenChecks = 128;

void check(const Cancelled& cancelled) {
    if (cancelled()) throw MailError(MailError::cancelled);
}

bool isIn(const MessageEntry& entry, TextQuery& query) {
    return query.isIn(entry.subject) || query.isIn(entry.from) || query.isIn(entry.recipients);
}

bool isIn(const MIME::SearchedTexts& texts, TextQuery& query) {
    return query.isIn(texts.to) || query.isIn(texts.cc) || query.isIn(texts.plain) ||
           (!texts.html.empty() && query.isIn(SafeHTML::searchableText(texts.html)));
}

/// Whether the text of the message contains the query; nothing when there is no way to tell.
std::optional<bool> isInMessage(const MessageEntry& entry, MailReader::TextReader& reader, TextQuery& query) {
    try {
        return isIn(reader.texts(entry), query);
    } catch (const MailError& error) {
        if (error == MailError::sourceChanged || error == MailError::cancelled) throw;
    } catch (const std::exception&) { // of the file system, for the most part
    }
    return std::nullopt;
}

/// What decides the place of an entry. The sort runs over keys that lie side by side: following 200,000
/// handles for each comparison would not fit the processor's cache.
struct Key {
    std::uint64_t rank = std::numeric_limits<std::uint64_t>::max(); // without a date
    std::int64_t id = 0;
    std::size_t position = 0;
    auto operator<=>(const Key&) const = default;
};

/// The timestamp as an integer of the same order; the largest one stands for no timestamp.
std::uint64_t rank(double timestamp, bool newestFirst) noexcept {
    constexpr std::uint64_t sign = std::uint64_t{1} << 63;
    const auto bits =
        std::bit_cast<std::uint64_t>(newestFirst ? 0.0 - timestamp : timestamp + 0.0); // one zero
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

} // namespace

Results scan(std::span<const SharedEntry> entries, std::string_view text, const Cancelled& cancelled,
             CaseFolding::Rules rules) {
    TextQuery query(text, rules);
    if (query.isBlank()) return {.entries = {entries.begin(), entries.end()}};
    MailReader::TextReader reader(cancelled);
    Results results;
    for (const SharedEntry& entry : entries) {
        check(cancelled);
        const std::optional<bool> matches = isIn(*entry, query) ? true : isInMessage(*entry, reader, query);
        if (!matches) ++results.unreadable;
        if (matches.value_or(false)) results.entries.push_back(entry);
    }
    reader.confirm();
    return results;
}

EntryList matching(std::span<const SharedEntry> entries, std::string_view text, const Cancelled& cancelled,
                   CaseFolding::Rules rules) {
    TextQuery query(text, rules);
    if (query.isBlank()) return {entries.begin(), entries.end()};
    EntryList result;
    for (std::size_t at = 0; at < entries.size(); ++at) {
        if (at % entriesBetweenChecks == 0) check(cancelled);
        if (isIn(*entries[at], query)) result.push_back(entries[at]);
    }
    check(cancelled);
    return result;
}

EntryList ordered(EntryList entries, bool newestFirst) {
    std::vector<Key> keys(entries.size());
    for (std::size_t at = 0; at < entries.size(); ++at) {
        const MessageEntry& entry = *entries[at];
        keys[at].id = entry.id;
        keys[at].position = at;
        if (entry.timestamp) keys[at].rank = rank(*entry.timestamp, newestFirst);
    }
    // Archives are mostly in the order of arrival, one way or the other.
    if (std::ranges::is_sorted(keys)) return entries;
    std::ranges::reverse(keys);
    if (!std::ranges::is_sorted(keys)) std::ranges::sort(keys);

    EntryList result;
    result.reserve(entries.size());
    for (const Key& key : keys) result.push_back(std::move(entries[key.position]));
    return result;
}

} // namespace MailCore::MailSearch
