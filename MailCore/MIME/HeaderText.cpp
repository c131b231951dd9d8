#include "MailCore/MIME/HeaderText.h"

#include "MailCore/MIME/Base64.h"
#include "MailCore/MIME/HeaderScanner.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/MIME/QuotedPrintable.h"
#include "MailCore/Platform/Text.h"

#include <algorithm>

namespace MailCore::MIME {

namespace {

/// Collects a header's text: plain stretches, and the bytes of words in one charset until another begins.
class WordJoiner {
public:
    void addText(std::string_view text) {
        flush();
        text_ += text;
    }
    void addBytes(ByteView bytes, const std::string& charset) {
        if (charset != charset_) flush();
        charset_ = charset;
        pending_.insert(pending_.end(), bytes.begin(), bytes.end());
    }
    std::string finish() {
        flush();
        return std::move(text_);
    }

private:
    void flush() {
        if (charset_.empty()) return;
        text_ += MailEncoding::decode(pending_, charset_);
        pending_.clear();
        charset_.clear();
    }

    std::string text_;
    Bytes pending_;
    std::string charset_; // of `pending_`; empty when nothing is pending
};

std::optional<Bytes> wordBytes(const EncodedWord& word) {
    if (word.encoding == 'b' || word.encoding == 'B') return Base64::decode(word.encoded);
    return quotedPrintable(bytesOf(word.encoded), true);
}

} // namespace

std::string headerText(std::string_view value) {
    std::optional<EncodedWord> word = nextEncodedWord(value, 0);
    if (!word) return std::string(value);
    WordJoiner joiner;
    std::size_t done = 0;
    bool lastDecoded = false;
    for (; word; word = nextEncodedWord(value, done)) {
        const auto start = static_cast<std::size_t>(word->whole.data() - value.data());
        const std::string_view gap = value.substr(done, start - done);
        const bool joins = lastDecoded && Text::trimmed(gap).empty();
        if (!joins) joiner.addText(gap);
        const std::optional<Bytes> bytes = wordBytes(*word);
        lastDecoded = bytes.has_value();
        if (bytes) {
            joiner.addBytes(*bytes, Text::lowered(word->charset));
        } else {
            joiner.addText(word->whole);
        }
        done = start + word->whole.size();
    }
    joiner.addText(value.substr(done));
    return joiner.finish();
}

std::string_view headerValue(std::string_view name, std::span<const Header> headers) noexcept {
    const auto found = std::ranges::find_if(
        headers, [name](const Header& header) { return Text::equalsIgnoringCase(header.name, name); });
    return found == headers.end() ? std::string_view() : std::string_view(found->value);
}

} // namespace MailCore::MIME
