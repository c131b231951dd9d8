#include "MailCore/Platform/Characters.h"

#include "MailCore/Platform/UTF8.h"

#include <unicode/brkiter.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace MailCore::Text {

namespace {

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

/// How much of `text` the iterator has to see: up to the first letter of a longer ASCII run, or a window.
std::size_t windowOf(std::string_view text) {
    constexpr std::size_t longRun = 16;
    std::size_t at = 0;
    while (at < std::min(text.size(), largestWindow)) {
        const std::size_t run = asciiRun(text.substr(at, longRun));
        if (run == longRun) return at + 1;
        at += std::max<std::size_t>(run, 1);
    }
    return codePointEnd(text, std::min(at, text.size()));
}

/// Passes the ASCII text at `at`, where a character begins: but for CR LF each byte is one, save the last,
/// which what follows may extend. Counts down `count`.
std::size_t skipASCII(std::string_view text, std::size_t at, std::size_t& count) {
    const std::size_t run = asciiRun(text.substr(at));
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
            size = codePointEnd(text.substr(at), std::min(size * 2, text.size() - at));
        }
    }
    return at;
}

} // namespace

std::string_view prefix(std::string_view text, std::size_t count) {
    if (text.size() <= count) return text;
    // ASCII without line breaks: one character a byte, as long as nothing that combines follows.
    const std::string_view probe = text.substr(0, count + 1);
    if (asciiRun(probe) == probe.size() && probe.find('\r') == std::string_view::npos)
        return text.substr(0, count);
    return text.substr(0, walkCharacters(text, count));
}

std::size_t firstCharacter(std::string_view text) {
    if (text.size() < 2) return text.size();
    if (isASCII(text[0]) && isASCII(text[1])) return text[0] == '\r' && text[1] == '\n' ? 2 : 1;
    return walkCharacters(text, 1);
}

} // namespace MailCore::Text
