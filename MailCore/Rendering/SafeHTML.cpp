#include "MailCore/Rendering/SafeHTML.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/ImageHeader.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Platform/UTF8.h"
#include "MailCore/Rendering/Markup.h"

#include <unicode/uchar.h>

namespace MailCore::SafeHTML {

namespace {

using Markup::ClosingTags;

constexpr std::size_t largestSearched = 4'194'304; // bytes
constexpr std::uint32_t mostPixelsPerSide = 8'192; // pixels
constexpr std::uint64_t mostPixels = 12'000'000;
constexpr auto npos = std::string_view::npos;

/// `\b` at `at`, which stands behind a letter: whether what follows is no part of the word (ICU's simple word
/// boundaries: marks and format characters belong to what they follow).
bool wordEnds(std::string_view text, std::size_t at) noexcept {
    if (at == text.size()) return true;
    const auto codePoint = static_cast<UChar32>(Text::next(text, at));
    constexpr std::uint32_t wordCategories = U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK | U_GC_CF_MASK;
    return (U_GET_GC_MASK(codePoint) & wordCategories) == 0 &&
           !u_hasBinaryProperty(codePoint, UCHAR_ALPHABETIC) &&
           !u_hasBinaryProperty(codePoint, UCHAR_GRAPHEME_EXTEND);
}

/// Collects text given in pieces, each `<[^>]*>` replaced by a space and references decoded. A tag may reach
/// over several pieces, a reference may not.
class TextBetweenTags {
public:
    explicit TextBetweenTags(std::size_t expectedSize) { text_.reserve(expectedSize); }

    void add(std::string_view piece) {
        for (;;) {
            if (inTag_) {
                const std::size_t end = piece.find('>');
                if (end == npos) break;
                text_.resize(tagStart_);
                text_ += ' ';
                inTag_ = false;
                piece.remove_prefix(end + 1);
            }
            const std::size_t open = std::min(piece.find('<'), piece.size());
            Markup::appendDecoded(text_, piece.substr(0, open));
            if (open == piece.size()) return;
            piece.remove_prefix(open);
            tagStart_ = text_.size();
            inTag_ = true;
        }
        text_ += piece; // stays when the tag never ends
    }

    std::string finish() {
        if (inTag_) {
            const std::string rest = text_.substr(tagStart_);
            text_.resize(tagStart_);
            Markup::appendDecoded(text_, rest);
        }
        return std::move(text_);
    }

private:
    std::string text_;
    std::size_t tagStart_ = 0;
    bool inTag_ = false;
};

/// The end of the match of `(?is)<(script|style|head)\b[^>]*>.*?</\1\s*>` at `at`, where "<" stands, with the
/// one name that `closing` looks for; 0 when there is none. A ">" follows somewhere.
std::size_t unsearchedEnd(std::string_view html, std::size_t at, ClosingTags& closing) noexcept {
    if (closing.exhausted()) return 0; // so that at most one search for ">" is in vain
    const auto nameEnd = Markup::foldedName(html, at + 1, closing.name());
    if (!nameEnd || !wordEnds(html, *nameEnd)) return 0;
    const auto found = closing.after(html.find('>', *nameEnd) + 1);
    return found ? found->end : 0;
}

/// Whether the name of a script, style or head may begin with `byte`: its letters in either case, or a
/// variant of "s" outside ASCII.
constexpr bool mayBeginUnsearched(char byte) noexcept {
    return byte == 's' || byte == 'S' || byte == 'h' || byte == 'H' || !isASCII(byte);
}

std::string textOf(std::string_view html) {
    TextBetweenTags text(html.size());
    ClosingTags closings[] = {{html, "script"}, {html, "style"}, {html, "head"}};
    const std::size_t lastEnd = html.rfind('>');
    std::size_t copied = 0;
    for (std::size_t at = html.find('<'); at < lastEnd && lastEnd != npos; at = html.find('<', at)) {
        std::size_t end = 0;
        if (mayBeginUnsearched(html[at + 1])) { // there is a ">" behind
            for (ClosingTags& closing : closings) {
                if (end == 0) end = unsearchedEnd(html, at, closing);
            }
        }
        if (end == 0) {
            ++at;
            continue;
        }
        text.add(html.substr(copied, at - copied));
        text.add(" ");
        copied = at = end;
    }
    text.add(html.substr(copied));
    return text.finish();
}

} // namespace

std::string searchableText(std::string_view html) {
    if (html.size() <= largestSearched) return textOf(html);
    return textOf(Text::repaired(bytesOf(html.substr(0, largestSearched))));
}

std::string entities(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    Markup::appendDecoded(result, text);
    return result;
}

Attributes attributes(std::string_view text) {
    Attributes result;
    Markup::visitAttributes(text, [&result](const Markup::RawAttribute& found) {
        const auto [place, isFirst] = result.try_emplace(Text::lowered(found.name));
        if (isFirst) Markup::appendDecoded(place->second, found.value);
    });
    return result;
}

std::optional<std::string_view> rasterType(ByteView data) noexcept {
    const std::string_view bytes = charsOf(data);
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) return "image/png";
    if (bytes.starts_with("\xFF\xD8\xFF")) return "image/jpeg";
    if (bytes.starts_with("GIF8")) return "image/gif";
    return std::nullopt;
}

bool safeRaster(ByteView data) noexcept {
    const auto header = imageHeader(data);
    if (!header || header->frames != 1) return false;
    if (header->width < 1 || header->width > mostPixelsPerSide) return false;
    if (header->height < 1 || header->height > mostPixelsPerSide) return false;
    return std::uint64_t{header->width} * header->height <= mostPixels;
}

} // namespace MailCore::SafeHTML
