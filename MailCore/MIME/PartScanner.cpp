#include "MailCore/MIME/PartScanner.h"

#include "MailCore/Model/MailError.h"
#include "MailCore/Platform/BytePair.h"

#include <algorithm>
#include <utility>

namespace MailCore::MIME {

namespace {

constexpr std::size_t bytesBetweenChecks = 131'072;

enum class Delimiter { none, between, closing };

/// The kind of delimiter line that `line` is, its line end included (RFC 2046 §5.1.1).
Delimiter delimiterKind(std::string_view line, std::string_view delimiter) noexcept {
    if (!line.starts_with(delimiter)) return Delimiter::none;
    const std::string_view rest = line.substr(delimiter.size());
    if (rest.starts_with("--")) return Delimiter::closing;
    return rest.find_first_not_of(" \t\r\n") == std::string_view::npos ? Delimiter::between : Delimiter::none;
}

} // namespace

std::optional<ByteView> PartScanner::next() {
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

/// Passes the lines that cannot be delimiters, which is most of a message. Moves to the start of a line
/// or to the end.
void PartScanner::skipUndashedLines() {
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

std::string_view PartScanner::trimmedPart(std::size_t start, std::size_t end) const noexcept {
    std::string_view part = body_.substr(start, end - start);
    if (part.ends_with('\n')) part.remove_suffix(1);
    if (part.ends_with('\r')) part.remove_suffix(1);
    return part;
}

} // namespace MailCore::MIME
