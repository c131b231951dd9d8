#include "MailCore/MIME/Entity.h"

#include "MailCore/Model/Limits.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"

#include <algorithm>
#include <string_view>

namespace MailCore::MIME {

namespace {

constexpr std::size_t mostHeaders = 2'000;
constexpr std::string_view blanks = " \t";

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

} // namespace

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

Split split(ByteView entity) {
    return cut(entity, Wanted::everything).halves;
}

} // namespace MailCore::MIME
