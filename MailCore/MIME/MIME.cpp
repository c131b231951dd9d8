#include "MailCore/MIME/MIME.h"

#include "MailCore/MIME/Base64.h"
#include "MailCore/MIME/DecodeHTML.h"
#include "MailCore/MIME/HeaderText.h"
#include "MailCore/MIME/MailEncoding.h"
#include "MailCore/MIME/Parameters.h"
#include "MailCore/MIME/QuotedPrintable.h"
#include "MailCore/Model/ContentBudget.h"
#include "MailCore/Model/Limits.h"
#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/BytePair.h"
#include "MailCore/Platform/HTMLEscape.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace MailCore::MIME {

namespace {

constexpr std::size_t mostHeaders = 2'000;
constexpr int deepest = 16; // level; a message itself is at level 0
constexpr std::int64_t largestSum = 3 * Limits::message;
constexpr std::size_t largestBoundary = 199; // bytes
constexpr std::size_t bytesBetweenChecks = 131'072;

constexpr std::string_view blanks = " \t";
constexpr std::string_view plainSeparator = "\n\n";
constexpr std::string_view htmlSeparator = "\n";

/// What is decoded: the whole message, or its texts alone.
enum class Wanted { everything, texts };

struct DefaultName {
    std::string_view mediaType;
    std::string_view name;
};

constexpr auto defaultNames = std::to_array<DefaultName>({
    // media type → name of a part that has none
    {"application/pdf", "Attachment.pdf"},
    {"image/gif", "Image.gif"},
    {"image/jpeg", "Image.jpg"},
    {"image/png", "Image.png"},
    {"message/global", "Attached message.eml"},
    {"message/rfc822", "Attached message.eml"},
    {"text/calendar", "Calendar.ics"},
    {"text/html", "Attachment.html"},
    {"text/plain", "Attachment.txt"},
});
static_assert(std::ranges::is_sorted(defaultNames, {}, &DefaultName::mediaType));

std::string_view defaultName(std::string_view mediaType) {
    const auto found = std::ranges::lower_bound(defaultNames, mediaType, {}, &DefaultName::mediaType);
    return found != defaultNames.end() && found->mediaType == mediaType ? found->name : "Attachment";
}

// Headers
// ----------------------------------------------------------------------------------------------------

/// The line end that ends the header block, and the one of the blank line after it.
struct BlankLine {
    std::size_t start; // where the header block ends
    std::size_t end;   // where the body begins
};

/// The first CRLF CRLF or LF LF, whichever begins earlier; at the end of `entity` when there is neither.
BlankLine blankLine(std::string_view entity) noexcept {
    // In the order of their first LF the two forms are also in the order of where they begin.
    for (std::size_t at = entity.find('\n'); at != std::string_view::npos; at = entity.find('\n', at + 1)) {
        const std::string_view after = entity.substr(at + 1, 2);
        if (after.starts_with('\n')) return {at, at + 2};
        if (after == "\r\n" && at > 0 && entity[at - 1] == '\r') return {at - 1, at + 3};
    }
    return {entity.size(), entity.size()};
}

bool isFieldName(std::string_view name) noexcept {
    return !name.empty() && std::ranges::all_of(name, [](char byte) { return byte >= 33 && byte <= 126; });
}

/// Whether a field tells anything about the texts of a message.
bool isAboutTexts(std::string_view name) noexcept {
    constexpr std::string_view content = "Content-";
    return Text::equalsIgnoringCase(name.substr(0, content.size()), content) ||
           Text::equalsIgnoringCase(name, "To") || Text::equalsIgnoringCase(name, "Cc");
}

/// The fields of a header block, collected line by line.
class Fields {
public:
    explicit Fields(Wanted wanted) : wanted_(wanted) {}

    void add(std::string_view line) {
        if (line.starts_with(' ') || line.starts_with('\t')) {
            if (isLastKept_) headers_.back().value.append(" ").append(Text::trimmed(line, blanks));
            return;
        }
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || count_ >= mostHeaders) return;
        const std::string_view name = line.substr(0, colon);
        if (!isFieldName(name)) return;
        ++count_;
        isLastKept_ = wanted_ == Wanted::everything || isAboutTexts(name);
        if (!isLastKept_) return;
        headers_.push_back(
            {.name = std::string(name), .value = std::string(Text::trimmed(line.substr(colon + 1), blanks))});
    }

    /// How many there were, wanted or not.
    std::size_t count() const noexcept { return count_; }
    std::vector<Header> take() && { return std::move(headers_); }

private:
    Wanted wanted_;
    std::vector<Header> headers_;
    std::size_t count_ = 0;
    bool isLastKept_ = false; // a continuation belongs to the last of `headers_`
};

/// The halves of an entity, with the fields that are wanted.
struct CutEntity {
    Split halves;
    std::size_t fieldCount; // wanted or not
};

CutEntity cut(ByteView entity, Wanted wanted) {
    const std::string_view text = charsOf(entity);
    const BlankLine blank = blankLine(text);
    const ByteView bytes = entity.first(std::min(blank.start, static_cast<std::size_t>(Limits::headers)));
    const bool isValid = Text::isValid(bytes);
    const std::string repaired = isValid ? std::string() : Text::repaired(bytes);
    const std::string_view block = isValid ? charsOf(bytes) : repaired;
    Fields fields(wanted);
    for (std::size_t at = 0; at < block.size();) {
        const std::size_t lineFeed = std::min(block.find('\n', at), block.size());
        std::string_view line = block.substr(at, lineFeed - at);
        if (lineFeed < block.size() && line.ends_with('\r')) line.remove_suffix(1);
        fields.add(line);
        at = lineFeed + 1;
    }
    const std::size_t count = fields.count();
    return {{.headers = std::move(fields).take(), .body = entity.subspan(blank.end)}, count};
}

// Leaves
// -----------------------------------------------------------------------------------------------------

/// What the header fields of a part say about its body.
struct Description {
    std::string type; // lower-case media type
    std::string_view contentType;
    std::string transferEncoding; // lower case
    std::string disposition;      // lower case, with its parameters
    std::string filename;         // empty when there is none
    std::string_view contentID;
};

/// The media type of a Content-Type value: its first piece that is not empty, "text/plain" when there is
/// none.
std::string mediaType(std::string_view contentType) {
    const std::size_t start = contentType.find_first_not_of(';');
    if (start == std::string_view::npos) return "text/plain";
    const std::string_view piece = contentType.substr(start, contentType.find(';', start) - start);
    return Text::lowered(Text::trimmed(piece, blanks));
}

/// The views point into `headers`.
Description describe(std::span<const Header> headers) {
    const std::string_view contentType = value("Content-Type", headers);
    return {
        .type = mediaType(contentType),
        .contentType = contentType,
        .transferEncoding = Text::lowered(value("Content-Transfer-Encoding", headers)),
        .disposition = Text::lowered(value("Content-Disposition", headers)),
        .filename = filename(headers),
        .contentID = Text::trimmed(value("Content-ID", headers), "<> "),
    };
}

/// A body without its transfer encoding: the bytes decoded, or where the encoding changes nothing a view.
class Content {
public:
    Content(ByteView body, std::string_view transferEncoding) : bytes_(body) {
        if (transferEncoding == "base64") {
            std::optional<Bytes> decoded = Base64::decode(charsOf(body));
            valid_ = decoded.has_value();
            if (decoded) decoded_ = std::move(*decoded);
        } else if (transferEncoding == "quoted-printable") {
            decoded_ = quotedPrintable(body, false);
        } else {
            isDecoded_ = false;
        }
        if (isDecoded_) bytes_ = decoded_;
    }
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;

    /// False: the encoding was broken, there are no bytes.
    bool isValid() const noexcept { return valid_; }
    ByteView view() const noexcept { return bytes_; }
    Bytes take() && { return isDecoded_ ? std::move(decoded_) : copyOf(bytes_); }

private:
    Bytes decoded_; // empty when the encoding was broken
    bool isDecoded_ = true;
    ByteView bytes_;
    bool valid_ = true;
};

bool isBodyText(const Description& leaf) {
    return leaf.filename.empty() && !leaf.disposition.starts_with("attachment") &&
           (leaf.type == "text/plain" || leaf.type == "text/html" || leaf.type.empty());
}

void addLeaf(const Description& leaf, ByteView body, MailMessage& message, Wanted wanted) {
    const bool isText = isBodyText(leaf);
    if (!isText && wanted == Wanted::texts) return; // nor can what an attachment holds make decoding fail
    Content content(body, leaf.transferEncoding);
    if (isText) {
        if (!content.isValid()) throw MailError(MailError::malformed);
        const std::optional<std::string> charset = parameter("charset", leaf.contentType);
        if (leaf.type == "text/html") {
            append(decodeHTML(content.view(), charset), message.html, htmlSeparator);
        } else {
            append(decode(content.view(), charset.value_or("utf-8")), message.plain, plainSeparator);
        }
        return;
    }
    const bool available = content.isValid();
    message.attachments.push_back({
        .name = leaf.filename.empty() ? std::string(defaultName(leaf.type)) : leaf.filename,
        .type = leaf.type,
        .bytes = std::move(content).take(),
        .contentID = std::string(leaf.contentID),
        .embedded = {},
        .available = available,
    });
}

// Multiparts
// -------------------------------------------------------------------------------------------------

enum class Delimiter { none, between, closing };

/// The kind of delimiter line that `line` is, its line end included (RFC 2046 §5.1.1).
Delimiter delimiterKind(std::string_view line, std::string_view delimiter) noexcept {
    if (!line.starts_with(delimiter)) return Delimiter::none;
    const std::string_view rest = line.substr(delimiter.size());
    if (rest.starts_with("--")) return Delimiter::closing;
    return rest.find_first_not_of(" \t\r\n") == std::string_view::npos ? Delimiter::between : Delimiter::none;
}

/// Finds the parts of a multipart body one after the other.
class PartScanner {
public:
    PartScanner(std::string_view body, std::string_view boundary, Wanted wanted, const Cancelled& cancelled)
        : body_(body), delimiter_("--" + std::string(boundary)), wanted_(wanted), cancelled_(cancelled) {}
    PartScanner(std::string_view, std::string_view, Wanted, Cancelled&&) = delete;

    /// The next part, without the line end that belongs to the delimiter after it; points into the body.
    std::optional<ByteView> next() {
        while (at_ < body_.size()) {
            if (cancelled_()) throw MailError(MailError::cancelled);
            if (wanted_ == Wanted::texts) skipUndashedLines();
            if (at_ == body_.size()) break;
            const std::size_t start = at_;
            const std::size_t lineFeed = body_.find('\n', start);
            at_ = lineFeed == std::string_view::npos ? body_.size() : lineFeed + 1;
            const Delimiter kind = delimiterKind(body_.substr(start, at_ - start), delimiter_);
            if (kind == Delimiter::none) continue;
            const std::optional<std::size_t> partStart = std::exchange(partStart_, at_);
            if (kind == Delimiter::closing) {
                body_ = body_.substr(0, at_); // what follows is no part of the message
                partStart_.reset();
            }
            if (partStart && *partStart < start) return bytesOf(trimmedPart(*partStart, start));
        }
        const std::optional<std::size_t> last = std::exchange(partStart_, std::nullopt);
        if (!last || *last >= body_.size()) return std::nullopt;
        return bytesOf(body_.substr(*last));
    }

private:
    /// Passes the lines that cannot be delimiters, which is most of a message. Moves to the start of a line
    /// or to the end.
    void skipUndashedLines() {
        constexpr BytePair lineStart({0, '\n', 0}, {1, '-', 0});
        if (body_[at_] == '-') return;
        while (body_.size() - at_ > 1) {
            if (cancelled_()) throw MailError(MailError::cancelled);
            const std::size_t count = std::min(body_.size() - at_ - 1, bytesBetweenChecks);
            std::size_t found = 0;
            const auto isFirst = [&found](std::size_t place) {
                found = place + 1;
                return true;
            };
            if (lineStart.any(body_.substr(at_), count, isFirst)) {
                at_ += found;
                return;
            }
            at_ += count;
        }
        at_ = body_.size();
    }

    std::string_view trimmedPart(std::size_t start, std::size_t end) const noexcept {
        std::string_view part = body_.substr(start, end - start);
        if (part.ends_with('\n')) part.remove_suffix(1);
        if (part.ends_with('\r')) part.remove_suffix(1);
        return part;
    }

    std::string_view body_;
    std::string delimiter_;
    Wanted wanted_;
    const Cancelled& cancelled_;
    std::size_t at_ = 0;                   // the start of the next line
    std::optional<std::size_t> partStart_; // once a delimiter has been seen
};

std::string preformatted(std::string_view plain) {
    return "<div style=\"white-space:pre-wrap\">" + SafeHTML::escape(plain) + "</div>";
}

/// The richest form the reader can show comes last (RFC 2046 §5.1.4).
void replaceBodies(MailMessage& message, MailMessage&& alternative) {
    if (!alternative.html.empty()) message.html = std::move(alternative.html);
    if (!alternative.plain.empty()) message.plain = std::move(alternative.plain);
}

/// Once one part has HTML, all texts are in `html`; `plain` has only what came as plain text.
void appendBodies(MailMessage& message, const MailMessage& child) {
    if (!child.html.empty()) {
        if (message.html.empty() && !message.plain.empty()) message.html = preformatted(message.plain);
        append(child.html, message.html, htmlSeparator);
    } else if (!child.plain.empty() && !message.html.empty()) {
        append(preformatted(child.plain), message.html, htmlSeparator);
    }
    append(child.plain, message.plain, plainSeparator);
}

std::optional<std::string> multipartBoundary(const Description& entity) {
    if (!entity.type.starts_with("multipart/")) return std::nullopt;
    std::optional<std::string> boundary = parameter("boundary", entity.contentType);
    if (!boundary || boundary->empty() || boundary->size() > largestBoundary) return std::nullopt;
    return boundary;
}

/// Adds what the entities of one message contain to what is made of it.
class ContentReader {
public:
    ContentReader(ContentBudget& budget, Wanted wanted, const Cancelled& cancelled)
        : budget_(budget), wanted_(wanted), cancelled_(cancelled) {}
    ContentReader(ContentBudget&, Wanted, Cancelled&&) = delete;

    void add(ByteView entity, MailMessage& message) {
        const ContentBudget::Level level = enter(entity.size());
        addHalves(cut(entity, wanted_).halves, message);
    }
    /// An entity of `size` bytes that is cut into `halves` already.
    void add(std::size_t size, const Split& halves, MailMessage& message) {
        const ContentBudget::Level level = enter(size);
        addHalves(halves, message);
    }

private:
    ContentBudget::Level enter(std::size_t size) {
        if (cancelled_()) throw MailError(MailError::cancelled);
        budget_.charge(size);
        budget_.countPart();
        return budget_.deeper();
    }

    void addHalves(const Split& halves, MailMessage& message) {
        const Description description = describe(halves.headers);
        const std::optional<std::string> boundary = multipartBoundary(description);
        if (!boundary) {
            addLeaf(description, halves.body, message, wanted_);
            return;
        }
        const bool isAlternative = description.type == "multipart/alternative";
        PartScanner parts(charsOf(halves.body), *boundary, wanted_, cancelled_);
        while (const std::optional<ByteView> part = parts.next()) {
            MailMessage child;
            add(*part, child);
            std::ranges::move(child.attachments, std::back_inserter(message.attachments));
            if (isAlternative) {
                replaceBodies(message, std::move(child));
            } else {
                appendBodies(message, child);
            }
        }
    }

    ContentBudget& budget_;
    Wanted wanted_;
    const Cancelled& cancelled_;
};

/// The halves of a whole message, which is neither too large nor without any field.
Split splitMessage(ByteView data, Wanted wanted, const Cancelled& cancelled) {
    if (cancelled()) throw MailError(MailError::cancelled);
    if (data.size() > static_cast<std::size_t>(Limits::message)) throw MailError(MailError::tooLarge);
    CutEntity message = cut(data, wanted);
    if (message.fieldCount == 0) throw MailError(MailError::malformed);
    return std::move(message.halves);
}

/// Adds the bodies, and when they are wanted the attachments, of the message `data` cut into `halves`.
void addContents(ByteView data, const Split& halves, MailMessage& message, Wanted wanted,
                 const Cancelled& cancelled) {
    ContentBudget budget({.bytes = largestSum, .parts = Limits::parts, .levels = deepest + 1});
    ContentReader(budget, wanted, cancelled).add(data.size(), halves, message);
}

} // namespace

Split split(ByteView entity) {
    return cut(entity, Wanted::everything).halves;
}

void part(ByteView entity, int depth, int& count, std::int64_t& budget, MailMessage& message,
          const Cancelled& cancelled) {
    BorrowedBudget left(budget, count, Limits::parts, depth, deepest);
    ContentReader(left, Wanted::everything, cancelled).add(entity, message);
}

MailMessage parse(ByteView data, const Cancelled& cancelled) {
    Split halves = splitMessage(data, Wanted::everything, cancelled);
    MailMessage message;
    message.subject = headerText(value("Subject", halves.headers));
    message.from = headerText(value("From", halves.headers));
    message.to = headerText(value("To", halves.headers));
    message.cc = headerText(value("Cc", halves.headers));
    message.date = value("Date", halves.headers);
    addContents(data, halves, message, Wanted::everything, cancelled);
    message.headers = std::move(halves.headers);
    return message;
}

Texts texts(ByteView data, const Cancelled& cancelled) {
    const Split halves = splitMessage(data, Wanted::texts, cancelled);
    MailMessage message;
    addContents(data, halves, message, Wanted::texts, cancelled);
    return {
        .to = headerText(value("To", halves.headers)),
        .cc = headerText(value("Cc", halves.headers)),
        .plain = std::move(message.plain),
        .html = std::move(message.html),
    };
}

} // namespace MailCore::MIME
