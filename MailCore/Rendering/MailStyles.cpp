#include "MailCore/Rendering/MailStyles.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/PresentationalAttributes.h"
#include "MailCore/Rendering/StyleProperties.h"
#include "MailCore/Rendering/StyleSelectors.h"
#include "MailCore/Rendering/StyleValues.h"

#include <algorithm>
#include <utility>

namespace MailCore {

namespace {

using StyleValues::appendSeparator;
using StyleValues::Pieces;
using StyleValues::trimmedOfBlanks;

constexpr auto npos = std::string_view::npos;

constexpr std::size_t largestSheet = 131'072;
constexpr std::size_t mostRules = 512;
constexpr std::size_t largestRules = 131'072;
constexpr int mostLevels = 4;
constexpr std::size_t mostSelectors = 16;
constexpr std::size_t largestBlock = 16'384;
constexpr std::size_t mostDeclarations = 100;
constexpr std::size_t largestValue = 512;

/// `(?s)/\*.*?\*/` removed.
std::string withoutComments(std::string_view css) {
    std::string kept;
    kept.reserve(css.size());
    std::size_t copied = 0;
    for (std::size_t start = css.find("/*"); start != npos; start = css.find("/*", copied)) {
        const std::size_t end = css.find("*/", start + 2);
        if (end == npos) break;
        kept.append(css, copied, start - copied);
        copied = end + 2;
    }
    kept.append(css, copied);
    return kept;
}

/// The place of the brace that closes the one before `at`; npos when there is none.
std::size_t closingBrace(std::string_view css, std::size_t at) noexcept {
    std::size_t open = 1;
    for (; at < css.size(); ++at) {
        if (css[at] == '{') {
            ++open;
        } else if (css[at] == '}' && --open == 0) {
            return at;
        }
    }
    return npos;
}

/// `^@media\s+(?:only\s+)?(?:screen\s+and\s+)?\((?:max|min)-width:\s*[0-9]{1,4}px\)$`
bool isWidthQuery(std::string_view prelude) noexcept {
    std::size_t at = 0;
    const auto take = [&](std::string_view word) {
        if (!prelude.substr(at).starts_with(word)) return false;
        at += word.size();
        return true;
    };
    const auto takeSpaces = [&] {
        const std::size_t start = at;
        at = Markup::skipSpaces(prelude, at);
        return at > start;
    };
    if (!take("@media") || !takeSpaces()) return false;
    if (take("only") && !takeSpaces()) return false;
    if (take("screen") && !(takeSpaces() && take("and") && takeSpaces())) return false;
    if (!take("(max-width:") && !take("(min-width:")) return false;
    takeSpaces();
    const std::size_t digits = at;
    while (at < prelude.size() && ASCII::isDigit(prelude[at])) ++at;
    if (at == digits || at - digits > 4 || !take("px)")) return false;
    return at == prelude.size() || at == Markup::withoutFinalLineEnd(prelude).size();
}

std::optional<std::string> textIf(bool accepted, std::string&& text) {
    if (!accepted) return std::nullopt;
    return std::move(text);
}

} // namespace

void MailStyles::addStylesheet(std::string_view css, int depth) {
    if (depth >= mostLevels || css.size() > largestSheet || rules_.size() >= mostRules) return;
    const std::string text = withoutComments(css);
    css = text;
    std::size_t at = 0;
    while (rules_.size() < mostRules && ruleBytes_ < largestRules) {
        const std::size_t open = css.find('{', at);
        if (open == npos) break;
        const std::size_t close = closingBrace(css, open + 1);
        if (close == npos) break;
        const std::string_view prelude = Text::trimmed(css.substr(at, open - at));
        const std::string_view block = css.substr(open + 1, close - open - 1);
        at = close + 1;
        if (prelude.starts_with("@media")) {
            addMediaRule(prelude, block, depth);
        } else if (!prelude.starts_with('@')) {
            addRule(prelude, block);
        }
    }
}

void MailStyles::addMediaRule(std::string_view prelude, std::string_view block, int depth) {
    if (!isWidthQuery(prelude)) return;
    const std::size_t before = rules_.size();
    addStylesheet(block, depth + 1);
    if (rules_.size() == before) return;
    std::string rule(prelude);
    rule += '{';
    for (std::size_t index = before; index < rules_.size(); ++index) rule += rules_[index];
    rule += '}';
    rules_.resize(before);
    rules_.push_back(std::move(rule));
}

void MailStyles::addRule(std::string_view prelude, std::string_view block) {
    std::string rule;
    Pieces pieces(prelude, ',');
    for (std::size_t count = 0; count < mostSelectors; ++count) {
        const auto piece = pieces.next();
        if (!piece) break;
        const auto scoped = StyleSelectors::scoped(*piece);
        if (!scoped) continue;
        if (!rule.empty()) rule += ',';
        rule += *scoped;
    }
    const bool selects = !rule.empty();
    rule += '{';
    const std::size_t start = rule.size();
    appendDeclarations(rule, block); // also when nothing is selected: its colours are numbered all the same
    if (!selects || rule.size() == start) return;
    rule += '}';
    if (rule.size() > largestRules - ruleBytes_) return;
    ruleBytes_ += rule.size();
    rules_.push_back(std::move(rule));
}

void MailStyles::appendDeclarations(std::string& out, std::string_view text) {
    if (text.size() > largestBlock || text.find_first_of("\\<") != npos || text.find("/*") != npos) return;
    const std::size_t start = out.size();
    Pieces pieces(text, ';');
    for (std::size_t count = 0; count < mostDeclarations; ++count) {
        const auto piece = pieces.next();
        if (!piece) break;
        const std::size_t colon = piece->find(':');
        if (colon == npos) continue;
        const std::string name = Text::lowered(Text::trimmed(piece->substr(0, colon)));
        if (!std::ranges::all_of(name, [](char byte) { return ASCII::isLetter(byte) || byte == '-'; }))
            continue;
        std::string_view value = Text::trimmed(piece->substr(colon + 1));
        constexpr std::string_view importantMark = "!important";
        const bool important =
            value.size() >= importantMark.size() &&
            Text::equalsIgnoringCase(value.substr(value.size() - importantMark.size()), importantMark);
        if (important) value = trimmedOfBlanks(value.substr(0, value.size() - importantMark.size()));
        if (value.size() > largestValue) continue;

        const std::size_t before = out.size();
        appendSeparator(out, start);
        if (name != "background" && name != "mso-hide") out.append(name).append(1, ':');
        if (!StyleProperties::append(out, name, value, colors_)) {
            out.resize(before);
            continue;
        }
        if (important) out += importantMark;
    }
}

void MailStyles::appendPresentation(std::string& out, const ElementAttributes& attributes,
                                    std::string_view tag) {
    PresentationalAttributes::appendStyle(out, attributes, tag, colors_);
}

std::string MailStyles::inlineStyle(const Attributes& attributes, std::string_view tag) {
    const ElementAttributes known(attributes);
    std::string result;
    appendPresentation(result, known, tag);
    if (const auto style = known[AttributeName::style]) {
        const std::string own = declarations(*style);
        if (!own.empty()) {
            appendSeparator(result, 0);
            result += own;
        }
    }
    return result;
}

std::string MailStyles::declarations(std::string_view text) {
    std::string result;
    appendDeclarations(result, text);
    return result;
}

std::optional<std::string> MailStyles::declaration(std::string_view name, std::string_view value) {
    std::string result;
    const bool accepted = StyleProperties::append(result, name, value, colors_);
    return textIf(accepted, std::move(result));
}

std::optional<std::string> MailStyles::color(std::string_view value, bool background) {
    std::string result;
    const bool accepted = colors_.append(result, value, background);
    return textIf(accepted, std::move(result));
}

std::optional<std::string> MailStyles::selector(std::string_view text) {
    return StyleSelectors::scoped(text);
}

std::optional<std::string> MailStyles::length(std::string_view text, bool negative) {
    return textIf(StyleValues::isLength(text, negative), std::string(text));
}

std::optional<std::string> MailStyles::identifier(std::string_view text) {
    return textIf(StyleValues::isIdentifier(text), std::string(text));
}

std::string MailStyles::stylesheet() const {
    std::string text = colors_.stylesheet();
    std::size_t size = text.size();
    for (const std::string& rule : rules_) size += rule.size();
    text.reserve(size);
    for (const std::string& rule : rules_) text += rule;
    return text;
}

} // namespace MailCore
