#include "MailCore/Rendering/MailStyles.h"

#include "MailCore/Platform/UTF8.h"
#include "fuzz/Support.h"

#include <algorithm>

using namespace MailCore;
using namespace MailCore::Fuzzing;

namespace {

/// Every selector of a list is scoped.
void requireScoped(std::string_view selectors) {
    while (!selectors.empty()) {
        check(selectors.starts_with(".mail-content"));
        selectors.remove_prefix(std::min(selectors.find(','), selectors.size()));
        if (!selectors.empty()) selectors.remove_prefix(1);
    }
}

/// Every rule is scoped and its braces match; media queries may hold rules.
void requireScopedRules(std::string_view text) {
    std::size_t open = 0;
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] == '{') {
            const std::string_view prelude = text.substr(start, at - start);
            if (!prelude.starts_with("@media")) requireScoped(prelude);
            ++open;
            start = at + 1;
        } else if (text[at] == '}') {
            check(open > 0);
            --open;
            start = at + 1;
        }
    }
    check(open == 0);
}

/// What no sanitised style may hold: markup, escapes, addresses, scripts.
void requireHarmless(std::string_view text) {
    checkText(text);
    for (const std::string_view part : {"<", "\\", "url(", "expression(", "@import", "/*", "position:"})
        check(text.find(part) == std::string_view::npos);
}

} // namespace

/// Whatever a style sheet holds, its rules stay inside the message and load nothing.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes exact = copyOf(bytesOf(Text::repaired(std::as_bytes(std::span(data, size)))));
    const std::string_view text = charsOf(exact); // nothing stands behind it, not even a terminator
    MailStyles styles;
    styles.addStylesheet(text, 0);
    for (const std::string& rule : styles.rules()) {
        requireScopedRules(rule);
        requireHarmless(rule);
    }
    const std::string declarations = styles.declarations(text);
    requireHarmless(declarations);
    check(declarations.find_first_of("{}") == std::string::npos);
    check(styles.declarations(text) == declarations); // the same text gives the same again
    const std::string value(text);
    const Attributes attributes{{"bgcolor", value}, {"face", value}, {"style", value}, {"width", value}};
    requireHarmless(styles.inlineStyle(attributes, "td"));
    requireHarmless(styles.stylesheet());
    check(styles.rules().size() <= 512 && styles.colors().size() <= 1'024);
    return 0;
}
