#include "MailCore/Rendering/ReadableText.h"

#include "MailCore/Platform/ASCII.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/NameTable.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace MailCore::SafeHTML {

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::size_t mostQuoteMarks = 8; // marks before a line; more say nothing more

enum class Layout : std::uint8_t {
    block,        // begins and ends a line
    spaced,       // the same, with a blank line on either side
    cell,         // stands in a line with its neighbours
    item,         // a line with a mark
    bullets,      // holds items
    numbers,      // holds items that are counted
    quote,        // spaced, each line marked
    preformatted, // spaced, white space as written
    lineBreak,
    rule,
    image,
};

struct Element {
    std::string_view name;
    Layout layout;
};

// Everything else that `render` keeps runs on in its line.
constexpr auto elements = std::to_array<Element>({
    {"address", Layout::block}, {"article", Layout::block}, {"blockquote", Layout::quote},
    {"br", Layout::lineBreak},  {"caption", Layout::block}, {"center", Layout::block},
    {"dd", Layout::block},      {"div", Layout::block},     {"dl", Layout::spaced},
    {"dt", Layout::block},      {"footer", Layout::block},  {"h1", Layout::spaced},
    {"h2", Layout::spaced},     {"h3", Layout::spaced},     {"h4", Layout::spaced},
    {"h5", Layout::spaced},     {"h6", Layout::spaced},     {"header", Layout::block},
    {"hr", Layout::rule},       {"img", Layout::image},     {"li", Layout::item},
    {"ol", Layout::numbers},    {"p", Layout::spaced},      {"pre", Layout::preformatted},
    {"section", Layout::block}, {"table", Layout::block},   {"td", Layout::cell},
    {"th", Layout::cell},       {"tr", Layout::block},      {"ul", Layout::bullets},
});
static_assert(std::ranges::is_sorted(elements, {}, &Element::name));

constexpr NameTable<elements.size()> elementTable([](std::size_t index) { return elements[index].name; });

std::string_view attributeOf(std::string_view tag, std::string_view name) noexcept {
    Markup::AttributeScanner scanner(tag);
    while (const auto found = scanner.next())
        if (found->name == name) return found->value;
    return {};
}

/// The lines of the text. What separates two pieces is settled when the second one comes, so that nothing
/// stands before the first or after the last.
class Lines {
public:
    void breakLine() { breaks_ = std::max(breaks_, atStart() ? 0 : 1); }
    void breakParagraph() { breaks_ = std::max(breaks_, atStart() ? 0 : 2); }
    /// A break of the message's own: each counts.
    void addBreak() {
        if (!atStart()) ++breaks_;
    }
    void separateCell() { cell_ = breaks_ == 0 && !atStart(); }
    void setQuotes(std::size_t depth) {
        if (depth == quotes_) return;
        breakParagraph();
        quotes_ = depth;
    }
    /// A mark at the beginning of a line, kept for the text that follows it.
    void mark(std::string mark) {
        breakLine();
        mark_ = std::move(mark);
    }
    void dropMark() { mark_.clear(); }

    /// Text whose white space runs together.
    void addFlowing(std::string_view text) {
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t start = at;
            while (at < text.size() && ASCII::isSpace(text[at])) ++at;
            if (at > start) space_ = true;
            const std::size_t word = at;
            while (at < text.size() && !ASCII::isSpace(text[at])) ++at;
            if (at == word) continue;
            begin();
            text_.append(text, word, at - word);
        }
    }
    /// Text as it is written.
    void addWritten(std::string_view text) {
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            std::string_view line = text.substr(0, end);
            if (line.ends_with('\r')) line.remove_suffix(1);
            if (!line.empty()) {
                space_ = false;
                begin();
                text_ += line;
            }
            if (end == text.size()) return;
            addBreak();
            text.remove_prefix(end + 1);
        }
    }

    std::string finish() { return std::move(text_); }

private:
    bool atStart() const noexcept { return text_.empty(); }
    void begin() {
        if (breaks_ > 0 || atStart()) {
            for (; breaks_ > 0; --breaks_) {
                text_ += '\n';
                if (breaks_ > 1 && quotes_ > 0 && quotes_ == written_) text_.append(quoteMark());
            }
            written_ = quotes_;
            if (quotes_ > 0) text_.append(quoteMark()).append(1, ' ');
            text_ += mark_;
            mark_.clear();
        } else if (cell_) {
            text_ += '\t';
        } else if (space_) {
            text_ += ' ';
        }
        breaks_ = 0;
        cell_ = space_ = false;
    }
    std::string quoteMark() const { return std::string(std::min(quotes_, mostQuoteMarks), '>'); }

    std::string text_;
    int breaks_ = 0;     // line ends owed before what comes next
    bool cell_ = false;  // a tab is owed
    bool space_ = false; // a space is owed
    std::size_t quotes_ = 0;
    std::size_t written_ = 0; // quotes of the last line
    std::string mark_;
};

class Reader {
public:
    explicit Reader(std::string_view body) : body_(body) {}

    std::string run() {
        for (std::size_t at = 0; at < body_.size();) {
            const std::size_t open = std::min(body_.find('<', at), body_.size());
            addText(body_.substr(at, open - at));
            if (open == body_.size()) break;
            const std::size_t end = body_.find('>', open);
            if (end == npos) break;
            tag(body_.substr(open + 1, end - open - 1));
            at = end + 1;
        }
        return lines_.finish();
    }

private:
    struct Open {
        std::optional<Layout> layout;
        bool hidden = false;
        bool written = false; // white space as it is
        std::size_t quotes = 0;
        std::int64_t items = 0;
    };

    void addText(std::string_view text) {
        if (text.empty() || (!open_.empty() && open_.back().hidden)) return;
        scratch_.clear();
        Markup::appendDecoded(scratch_, text);
        if (!open_.empty() && open_.back().written) {
            lines_.addWritten(scratch_);
        } else {
            lines_.addFlowing(scratch_);
        }
    }

    void tag(std::string_view inside) {
        if (inside.starts_with('/')) {
            if (open_.empty()) return;
            const Open closed = open_.back();
            open_.pop_back();
            if (!closed.hidden) separate(closed);
            if (closed.layout == Layout::item) lines_.dropMark();
            lines_.setQuotes(open_.empty() ? 0 : open_.back().quotes);
            return;
        }
        const std::string_view name = inside.substr(0, inside.find(' '));
        const auto known = elementTable.find(name);
        Open next = open_.empty() ? Open{} : open_.back();
        next.items = 0;
        next.layout.reset();
        if (known) next.layout = elements[*known].layout;
        const std::string_view attributes = inside.substr(name.size());
        if (next.layout == Layout::lineBreak || next.layout == Layout::rule || next.layout == Layout::image ||
            name == "col")
            return addVoid(next, attributes);
        if (attributes.find("display:none") != npos || attributes.find("visibility:hidden") != npos)
            next.hidden = next.hidden || isHidden(attributes);
        if (next.layout == Layout::preformatted || attributes == " class=\"plain\"") next.written = true;
        if (next.layout == Layout::quote) ++next.quotes;
        if (next.layout == Layout::numbers) next.items = firstNumber(attributes);
        if (!next.hidden) {
            separate(next);
            lines_.setQuotes(next.quotes);
            if (next.layout == Layout::item) lines_.mark(itemMark());
        }
        open_.push_back(next);
    }

    void addVoid(const Open& element, std::string_view attributes) {
        if (element.hidden || !element.layout) return;
        if (element.layout == Layout::lineBreak) return lines_.addBreak();
        if (element.layout == Layout::rule) return lines_.breakParagraph();
        scratch_.clear();
        Markup::appendDecoded(scratch_, attributeOf(attributes, "alt"));
        lines_.addFlowing(scratch_);
    }

    void separate(const Open& element) {
        if (!element.layout) return;
        switch (*element.layout) {
        case Layout::cell: return lines_.separateCell();
        case Layout::block:
        case Layout::item: return lines_.breakLine();
        default: return lists() > 0 ? lines_.breakLine() : lines_.breakParagraph();
        }
    }

    /// Lists around what is being read: a list in a list begins a line, no paragraph.
    std::size_t lists() const {
        return static_cast<std::size_t>(std::ranges::count_if(open_, [](const Open& element) {
            return element.layout == Layout::bullets || element.layout == Layout::numbers;
        }));
    }

    std::string itemMark() {
        std::string mark(2 * (std::max<std::size_t>(lists(), 1) - 1), ' ');
        const auto list = std::find_if(open_.rbegin(), open_.rend(), [](const Open& element) {
            return element.layout == Layout::bullets || element.layout == Layout::numbers;
        });
        if (list == open_.rend() || list->layout == Layout::bullets) return mark + "• ";
        return mark + std::to_string(list->items++) + ". ";
    }

    static std::int64_t firstNumber(std::string_view attributes) {
        std::int64_t number = 0;
        const std::string_view start = attributeOf(attributes, "start");
        for (const char digit : start) number = number * 10 + (digit - '0'); // at most 100,000
        return start.empty() ? 1 : number;
    }

    static bool isHidden(std::string_view attributes) {
        const std::string_view style = attributeOf(attributes, "style");
        return style.find("display:none") != npos || style.find("visibility:hidden") != npos;
    }

    std::string_view body_;
    Lines lines_;
    std::vector<Open> open_;
    std::string scratch_;
};

} // namespace

std::string readableText(std::string_view body) {
    return Reader(body).run();
}

} // namespace MailCore::SafeHTML
