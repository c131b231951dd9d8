#include "MailCore/Platform/Text.h"

#include "MailCore/Platform/LittleEndian.h"

#include <unicode/brkiter.h>
#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <charconv>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>

namespace MailCore::Text {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

struct Sequence {
    std::size_t length; // bytes of the sequence, or of its maximal valid beginning (at least 1)
    bool valid;
};

/// The sequence at the start of `bytes`, which is not empty (Unicode §3.9, table 3-7).
Sequence sequence(const unsigned char* bytes, std::size_t count) noexcept {
    const unsigned char lead = bytes[0];
    if (lead < 0x80) return {1, true};
    if (lead < 0xC2 || lead > 0xF4) return {1, false};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead == 0xE0) low = 0xA0;
    if (lead == 0xED) high = 0x9F;
    if (lead == 0xF0) low = 0x90;
    if (lead == 0xF4) high = 0x8F;
    for (std::size_t index = 1; index < length; ++index) {
        if (index >= count || bytes[index] < low || bytes[index] > high) return {index, false};
        low = 0x80;
        high = 0xBF;
    }
    return {length, true};
}

/// How many leading bytes of `bytes` are ASCII.
std::size_t asciiRun(const unsigned char* bytes, std::size_t count) noexcept {
    std::size_t at = 0;
    while (count - at >= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes + at, 8);
        if ((word & 0x8080808080808080U) != 0) break;
        at += 8;
    }
    while (at < count && bytes[at] < 0x80) ++at;
    return at;
}

/// How many leading bytes of `bytes` are well formed.
std::size_t validRun(const unsigned char* bytes, std::size_t count) noexcept {
    std::size_t at = 0;
    while (at < count) {
        at += asciiRun(bytes + at, count - at);
        if (at == count) break;
        const Sequence found = sequence(bytes + at, count - at);
        if (!found.valid) break;
        at += found.length;
    }
    return at;
}

bool isASCII(std::string_view text) noexcept {
    return asciiRun(reinterpret_cast<const unsigned char*>(text.data()), text.size()) == text.size();
}

using TextHandle = std::unique_ptr<UText, decltype(&utext_close)>;

/// The calling thread's break iterator: ICU's are not shared between threads.
icu::BreakIterator& characterIterator() {
    thread_local const std::unique_ptr<icu::BreakIterator> iterator = [] {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::BreakIterator> made(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        if (U_FAILURE(status)) throw std::runtime_error("no character break rules");
        return made;
    }();
    return *iterator;
}

constexpr std::size_t largestWindow = 16'384;

/// Moves `size` forward to the end of the code point that it cuts.
std::size_t toCodePointEnd(std::string_view text, std::size_t size) {
    while (size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) ++size;
    return size;
}

/// How much of `text` the iterator has to see: up to the first letter of a longer ASCII run, or a window.
std::size_t windowOf(std::string_view text) {
    constexpr std::size_t longRun = 16;
    const auto* data = reinterpret_cast<const unsigned char*>(text.data());
    std::size_t at = 0;
    while (at < std::min(text.size(), largestWindow)) {
        const std::size_t run = asciiRun(data + at, std::min(text.size() - at, longRun));
        if (run == longRun) return at + 1;
        at += std::max<std::size_t>(run, 1);
    }
    return toCodePointEnd(text, std::min(at, text.size()));
}

/// Passes the ASCII text at `at`, where a character begins: but for CR LF each byte is one, save the last,
/// which what follows may extend. Counts down `count`.
std::size_t skipASCII(std::string_view text, std::size_t at, std::size_t& count) {
    const std::size_t run =
        asciiRun(reinterpret_cast<const unsigned char*>(text.data()) + at, text.size() - at);
    const std::size_t end = at + (at + run == text.size() ? run : run - std::min<std::size_t>(run, 1));
    while (at < end && count > 0) {
        const bool isPair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
        at += isPair ? 2 : 1;
        --count;
    }
    return at;
}

/// Walks whole characters of `text` from its start; stops after `count` of them. The result is the end in
/// bytes. The iterator sees only what is not ASCII, a window at a time: a short prefix costs what it returns.
std::size_t walkCharacters(std::string_view text, std::size_t count) {
    std::size_t at = 0;
    while (count > 0 && at < text.size()) {
        at = skipASCII(text, at, count);
        if (count == 0 || at >= text.size()) break;
        std::size_t size = windowOf(text.substr(at));
        for (;;) {
            UErrorCode status = U_ZERO_ERROR;
            const TextHandle handle(
                utext_openUTF8(nullptr, text.data() + at, static_cast<std::int64_t>(size), &status),
                &utext_close);
            icu::BreakIterator& iterator = characterIterator();
            iterator.setText(handle.get(), status);
            if (U_FAILURE(status)) return at;
            const bool last = at + size == text.size();
            std::size_t done = 0; // bytes of whole characters inside the window
            std::size_t left = count;
            for (std::int32_t end = iterator.next(); end != icu::BreakIterator::DONE && left > 0;
                 end = iterator.next()) {
                // A character that reaches the window's end may go on behind it.
                if (!last && static_cast<std::size_t>(end) == size) break;
                done = static_cast<std::size_t>(end);
                --left;
            }
            if (done > 0 || last) {
                at += done;
                count = left;
                break;
            }
            // One character longer than the window.
            size = toCodePointEnd(text.substr(at), std::min(size * 2, text.size() - at));
        }
    }
    return at;
}

template <typename Map>
std::string mapped(std::string_view text, Map map) {
    std::string result;
    result.reserve(text.size());
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    map(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())), sink, status);
    return U_SUCCESS(status) ? result : std::string(text);
}

/// `text` without what `isTrimmed` says at both ends.
template <typename Predicate>
std::string_view trimmedOf(std::string_view text, Predicate isTrimmed) noexcept {
    while (!text.empty()) {
        std::size_t at = 0;
        if (!isTrimmed(next(text, at))) break;
        text.remove_prefix(at);
    }
    while (!text.empty()) {
        std::size_t start = text.size() - 1;
        while (start > 0 && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80) --start;
        std::size_t at = start;
        if (!isTrimmed(next(text, at))) break;
        text.remove_suffix(text.size() - start);
    }
    return text;
}

/// UTF-16LE as UTF-8. What is no character is refused, or with `repairing` gives one U+FFFD for the first
/// byte of it, after which reading goes on; an incomplete end gives one.
std::optional<std::string> decodedUTF16LE(ByteView bytes, bool repairing) {
    std::string text;
    // Three bytes of UTF-8 for a unit at most; of what is no character, for each byte.
    text.resize(repairing ? bytes.size() * 3 : bytes.size() / 2 * 3);
    char* out = text.data();
    const std::byte* in = bytes.data();
    const std::byte* const end = in + bytes.size();
    const auto unitAt = [](const std::byte* at) { return littleEndian<std::uint16_t>(ByteView(at, 2)); };
    const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
    const auto putThree = [&put](char32_t codePoint) {
        put(0xE0 | codePoint >> 12);
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    };
    while (in < end) {
        // Four units of ASCII at a time: that is what most texts are made of.
        for (; end - in >= 8; in += 8, out += 4) {
            const auto units = littleEndian<std::uint64_t>(ByteView(in, 8));
            if ((units & 0xFF80'FF80'FF80'FF80) != 0) break;
            for (int index = 0; index < 4; ++index) out[index] = static_cast<char>(units >> (16 * index));
        }
        if (in == end) break;
        const char32_t unit =
            end - in < 2 ? 0xD800 : unitAt(in); // half a unit is as incomplete as half a pair
        if (unit < 0x80) {
            put(unit);
            in += 2;
        } else if (unit < 0x800) {
            put(0xC0 | unit >> 6);
            put(0x80 | (unit & 0x3F));
            in += 2;
        } else if (unit < 0xD800 || unit > 0xDFFF) {
            putThree(unit);
            in += 2;
        } else if (unit < 0xDC00 && end - in >= 4 && unitAt(in + 2) >= 0xDC00 && unitAt(in + 2) <= 0xDFFF) {
            const char32_t codePoint = 0x10000 + ((unit - 0xD800) << 10) + (unitAt(in + 2) - 0xDC00U);
            put(0xF0 | codePoint >> 18);
            put(0x80 | (codePoint >> 12 & 0x3F));
            put(0x80 | (codePoint >> 6 & 0x3F));
            put(0x80 | (codePoint & 0x3F));
            in += 4;
        } else if (repairing) {
            putThree(0xFFFD);
            in = unit < 0xDC00 && end - in < 4 ? end : in + 1;
        } else {
            return std::nullopt;
        }
    }
    text.resize(static_cast<std::size_t>(out - text.data()));
    text.shrink_to_fit(); // most texts need a third of the room
    return text;
}

} // namespace

std::string repaired(ByteView bytes) {
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    std::string text;
    text.reserve(bytes.size());
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t run = validRun(data + at, bytes.size() - at);
        text.append(reinterpret_cast<const char*>(data + at), run);
        at += run;
        if (at == bytes.size()) break;
        text += replacement;
        at += sequence(data + at, bytes.size() - at).length;
    }
    return text;
}

std::optional<std::string> fromUTF16LE(ByteView bytes) {
    return decodedUTF16LE(bytes, false);
}

std::string repairedUTF16LE(ByteView bytes) {
    if (auto text = decodedUTF16LE(bytes, false)) return *std::move(text);
    return *decodedUTF16LE(bytes, true);
}

bool isValid(ByteView bytes) noexcept {
    return validRun(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()) == bytes.size();
}

std::string_view prefix(std::string_view text, std::size_t count) {
    if (text.size() <= count) return text;
    // ASCII without line breaks: one character a byte, as long as nothing that combines follows.
    const auto* data = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t probe = count + 1;
    if (asciiRun(data, probe) == probe && std::memchr(data, '\r', probe) == nullptr)
        return text.substr(0, count);
    return text.substr(0, walkCharacters(text, count));
}

std::size_t firstCharacter(std::string_view text) {
    if (text.size() < 2) return text.size();
    const auto first = static_cast<unsigned char>(text[0]);
    const auto second = static_cast<unsigned char>(text[1]);
    if (first < 0x80 && second < 0x80) return first == '\r' && second == '\n' ? 2 : 1;
    return walkCharacters(text, 1);
}

char32_t next(std::string_view text, std::size_t& at) noexcept {
    const auto byte = [&](std::size_t index) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[index]));
    };
    const char32_t lead = byte(at);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length > text.size() - at) {
        at = text.size();
        return 0xFFFD;
    }
    char32_t codePoint = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index)
        codePoint = codePoint << 6 | (byte(at + index) & 0x3F);
    at += length;
    return codePoint;
}

void append(std::string& text, char32_t codePoint) {
    const auto put = [&](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | codePoint >> 6);
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | codePoint >> 12);
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | codePoint >> 18);
        put(0x80 | (codePoint >> 12 & 0x3F));
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
}

bool isWhitespace(char32_t codePoint) noexcept {
    if (codePoint < 0x80) return codePoint == ' ' || (codePoint >= '\t' && codePoint <= '\r');
    return codePoint == 0x85 || codePoint == 0xA0 || codePoint == 0x1680 ||
           (codePoint >= 0x2000 && codePoint <= 0x200A) || codePoint == 0x2028 || codePoint == 0x2029 ||
           codePoint == 0x202F || codePoint == 0x205F || codePoint == 0x3000;
}

bool isControl(char32_t codePoint) noexcept {
    if (codePoint < 0x80) return codePoint < 0x20 || codePoint == 0x7F;
    const auto category = u_charType(static_cast<UChar32>(codePoint));
    return category == U_CONTROL_CHAR || category == U_FORMAT_CHAR;
}

bool setsDirection(char32_t codePoint) noexcept {
    return (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
}

std::string_view trimmed(std::string_view text) noexcept {
    return trimmedOf(text, isWhitespace);
}

std::string_view trimmedControls(std::string_view text) noexcept {
    return trimmedOf(text, isControl);
}

std::string_view trimmed(std::string_view text, std::string_view set) noexcept {
    const std::size_t start = text.find_first_not_of(set);
    if (start == std::string_view::npos) return text.substr(0, 0);
    return text.substr(start, text.find_last_not_of(set) - start + 1);
}

std::string lowered(std::string_view text) {
    if (isASCII(text)) {
        std::string result(text);
        for (char& byte : result) byte = lowered(byte);
        return result;
    }
    return mapped(text, [](icu::StringPiece piece, icu::ByteSink& sink, UErrorCode& status) {
        icu::CaseMap::utf8ToLower("", 0, piece, sink, nullptr, status);
    });
}

std::string uppered(std::string_view text) {
    if (isASCII(text)) {
        std::string result(text);
        for (char& byte : result) {
            if (byte >= 'a' && byte <= 'z') byte = static_cast<char>(byte - 32);
        }
        return result;
    }
    return mapped(text, [](icu::StringPiece piece, icu::ByteSink& sink, UErrorCode& status) {
        icu::CaseMap::utf8ToUpper("", 0, piece, sink, nullptr, status);
    });
}

bool equalsIgnoringCase(std::string_view left, std::string_view right) noexcept {
    if (left.size() != right.size()) return false;
    for (std::size_t index = 0; index < left.size(); ++index) {
        if (lowered(left[index]) != lowered(right[index])) return false;
    }
    return true;
}

std::optional<std::int64_t> integer(std::string_view text) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace MailCore::Text
