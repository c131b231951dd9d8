#include "MailCore/MIME/Base64.h"
#include "MailCore/Platform/ASCII.h"
#include "MailCore/Platform/Characters.h"
#include "MailCore/Platform/HTMLEscape.h"
#include "MailCore/Platform/Text.h"
#include "MailCore/Rendering/ElementAttributes.h"
#include "MailCore/Rendering/InlineImages.h"
#include "MailCore/Rendering/MailStyles.h"
#include "MailCore/Rendering/Markup.h"
#include "MailCore/Rendering/NameTable.h"
#include "MailCore/Rendering/SafeHTML.h"
#include "MailCore/Rendering/SeenTexts.h"

#include <algorithm>
#include <array>
#include <vector>

namespace MailCore::SafeHTML {

namespace {

using Markup::ClosingTags;

constexpr std::size_t mostCharacters = 4'194'304; // characters
constexpr std::size_t largestBody = 8'388'608;    // bytes
constexpr int mostTags = 50'000;
constexpr std::size_t mostOpen = 100;
constexpr int mostClasses = 24;
constexpr std::size_t largestClass = 100; // bytes
constexpr auto npos = std::string_view::npos;

enum class Role : std::uint8_t {
    kept,
    keptVoid, // kept, and never has content
    removed,  // with its content, if it is closed
    ending,   // the same; the document ends with it if it is not closed
};

struct Element {
    std::string_view name;
    Role role;
};

// clang-format off
constexpr auto elements = std::to_array<Element>({
    {"a", Role::kept}, {"address", Role::kept}, {"article", Role::kept}, {"b", Role::kept}, {"big", Role::kept},
    {"blockquote", Role::kept}, {"body", Role::kept}, {"br", Role::keptVoid}, {"caption", Role::kept},
    {"center", Role::kept}, {"code", Role::kept}, {"col", Role::keptVoid}, {"colgroup", Role::kept},
    {"dd", Role::kept}, {"del", Role::kept}, {"div", Role::kept}, {"dl", Role::kept}, {"dt", Role::kept},
    {"em", Role::kept}, {"font", Role::kept}, {"footer", Role::kept}, {"h1", Role::kept}, {"h2", Role::kept},
    {"h3", Role::kept}, {"h4", Role::kept}, {"h5", Role::kept}, {"h6", Role::kept}, {"header", Role::kept},
    {"hr", Role::keptVoid}, {"i", Role::kept}, {"iframe", Role::removed}, {"img", Role::keptVoid},
    {"li", Role::kept}, {"mark", Role::kept}, {"math", Role::removed}, {"object", Role::removed},
    {"ol", Role::kept}, {"p", Role::kept}, {"pre", Role::kept}, {"s", Role::kept}, {"script", Role::ending},
    {"section", Role::kept}, {"small", Role::kept}, {"span", Role::kept}, {"strong", Role::kept},
    {"style", Role::ending}, {"sub", Role::kept}, {"sup", Role::kept}, {"svg", Role::removed},
    {"table", Role::kept}, {"tbody", Role::kept}, {"td", Role::kept}, {"template", Role::removed},
    {"tfoot", Role::kept}, {"th", Role::kept}, {"thead", Role::kept}, {"title", Role::ending}, {"tr", Role::kept},
    {"u", Role::kept}, {"ul", Role::kept},
});

struct NumericAttribute {
    AttributeName name;
    std::string_view text;
    std::int64_t largest;
};

constexpr auto numericAttributes = std::to_array<NumericAttribute>({
    {AttributeName::colspan, "colspan", 100},         {AttributeName::rowspan, "rowspan", 100},
    {AttributeName::span, "span", 100},               {AttributeName::start, "start", 100'000},
    {AttributeName::value, "value", 100'000},         {AttributeName::cellpadding, "cellpadding", 100},
    {AttributeName::cellspacing, "cellspacing", 100}, {AttributeName::border, "border", 100},
});
// clang-format on
static_assert(std::ranges::is_sorted(elements, {}, &Element::name));
static_assert(std::ranges::count(elements, Role::kept, &Element::role) +
                  std::ranges::count(elements, Role::keptVoid, &Element::role) ==
              52);

using ElementID = std::uint8_t; // a place in `elements`

constexpr std::size_t largestName =
    std::ranges::max(elements, {}, [](const Element& element) { return element.name.size(); }).name.size();

constexpr NameTable<elements.size()> elementTable([](std::size_t index) { return elements[index].name; });

constexpr ElementID idOf(std::string_view name) {
    return static_cast<ElementID>(elementTable.find(name).value());
}
constexpr ElementID anchor = idOf("a");
constexpr ElementID image = idOf("img");
constexpr ElementID style = idOf("style");
constexpr ElementID documentBody = idOf("body");

std::string_view writtenName(ElementID id) noexcept {
    return id == documentBody ? std::string_view("div") : elements[id].name;
}

/// The element with this name in any case, nothing when rendering knows none.
std::optional<ElementID> elementNamed(std::string_view name) noexcept {
    std::array<char, largestName> buffer{};
    if (name.empty() || name.size() > buffer.size()) return std::nullopt;
    std::ranges::transform(name, buffer.begin(), ASCII::lowered);
    const std::string_view lowered(buffer.data(), name.size());
    const auto index = elementTable.find(lowered);
    if (!index) return std::nullopt;
    return static_cast<ElementID>(*index);
}

std::size_t nameLength(std::string_view tag) noexcept {
    std::size_t length = 0;
    while (length < tag.size() && ASCII::isAlphanumeric(tag[length])) ++length;
    return length;
}

/// The end of the tag that begins before `at`, past quoted runs; npos when there is none.
std::size_t tagEnd(std::string_view html, std::size_t at) noexcept {
    while (at < html.size()) {
        const char byte = html[at];
        if (byte == '>') return at;
        if (byte == '"' || byte == '\'') {
            at = html.find(byte, at + 1);
            if (at == npos) return npos;
        }
        ++at;
    }
    return npos;
}

/// One rendering. Pieces are written at the end of `body_` and taken back when they make it too long.
class Renderer {
public:
    explicit Renderer(const MailMessage& message)
        : html_(Text::prefix(message.html, mostCharacters)), images_(message) {
        body_.reserve(std::min(html_.size() + html_.size() / 4, largestBody));
    }

    RenderedMail run() {
        scan();
        while (!open_.empty()) closeInnermost();
        return {std::move(body_), std::move(links_), styles_.stylesheet()};
    }

private:
    /// What was written for a text of the document, and for which element.
    struct Written {
        std::size_t start = 0; // in the body
        std::size_t length = 0;
        ElementID element = 0;
    };

    void scan();
    bool tag(std::string_view inside);
    void openingTag(ElementID id, std::string_view inside, std::string_view attributes);
    void closingTag(std::string_view name);
    void closeInnermost();
    bool removedElement(ElementID id);

    void writeTag(ElementID id, const ElementAttributes& attributes);
    void writeAttributes(ElementID id, const ElementAttributes& attributes);
    void writeStyle(ElementID id, const ElementAttributes& attributes);
    void writeClasses(std::string_view classes);
    void writeNumbers(const ElementAttributes& attributes);
    void writeLink(std::string_view href);
    void writeImage(const ElementAttributes& attributes);

    /// Ends the piece that began at `start`; false when it was taken back because it is too long.
    bool finish(std::size_t start) {
        if (body_.size() <= largestBody) return true;
        body_.resize(start);
        complete_ = false;
        return false;
    }

    std::string_view html_;
    std::size_t at_ = 0;
    std::string body_;
    std::map<std::string, std::string, std::less<>> links_;
    MailStyles styles_;
    std::vector<ElementID> open_;
    int tags_ = 0;
    InlineImages images_;

    std::array<std::optional<ClosingTags>, elements.size()> closings_;
    SeenTexts<Written, 512> seenTags_;
    SeenTexts<Written, 256> seenStyles_;
    bool complete_ = true; // nothing was taken back, so what was seen stands where it was written
    std::string scratch_;
};

void Renderer::scan() {
    while (at_ < html_.size() && tags_ < mostTags && body_.size() < largestBody) {
        const std::size_t open = std::min(html_.find('<', at_), html_.size());
        const std::size_t start = body_.size();
        Markup::appendDecodedEscaped(body_, html_.substr(at_, open - at_));
        finish(start);
        if (open == html_.size()) return;
        if (html_.substr(open).starts_with("<!--")) {
            const std::size_t end = html_.find("-->", open + 4);
            if (end == npos) return;
            at_ = end + 3;
            continue;
        }
        const std::size_t end = tagEnd(html_, open + 1);
        if (end == npos) {
            const std::size_t rest = body_.size();
            appendEscaped(body_, html_.substr(open));
            finish(rest);
            return;
        }
        at_ = end + 1;
        if (!tag(Text::trimmed(html_.substr(open + 1, end - open - 1)))) return;
    }
}

/// Handles one tag; false when the rest of the document is to be dropped.
bool Renderer::tag(std::string_view inside) {
    ++tags_;
    if (inside.starts_with('/')) {
        inside.remove_prefix(1);
        closingTag(inside.substr(0, nameLength(inside)));
        return true;
    }
    if (const auto* seen = complete_ ? seenTags_.find(inside) : nullptr) {
        if (open_.size() >= mostOpen) return true;
        const std::size_t start = body_.size();
        body_.append(body_, seen->start, seen->length);
        finish(start);
        if (elements[seen->element].role == Role::kept) open_.push_back(seen->element);
        return true;
    }
    const std::size_t length = nameLength(inside);
    const auto id = elementNamed(inside.substr(0, length));
    if (!id) return true;
    const Role role = elements[*id].role;
    if (role == Role::removed || role == Role::ending) return removedElement(*id) || role == Role::removed;
    if (open_.size() < mostOpen) openingTag(*id, inside, inside.substr(length));
    return true;
}

/// Moves past the content and the closing tag of an element that is not kept; false when it is not closed.
bool Renderer::removedElement(ElementID id) {
    auto& closing = closings_[id];
    if (!closing) closing.emplace(html_, elements[id].name);
    const auto found = closing->after(at_);
    if (!found) return false;
    if (id == style) styles_.addStylesheet(html_.substr(at_, found->start - at_), 0);
    at_ = found->end;
    return true;
}

void Renderer::closingTag(std::string_view name) {
    if (open_.empty()) return;
    const auto id =
        Text::equalsIgnoringCase(name, elements[open_.back()].name) ? open_.back() : elementNamed(name);
    if (!id) return;
    const auto innermost = std::find(open_.rbegin(), open_.rend(), *id);
    if (innermost == open_.rend()) return;
    const auto left = static_cast<std::size_t>(open_.rend() - innermost) - 1;
    while (open_.size() > left) closeInnermost();
}

void Renderer::closeInnermost() {
    const std::size_t start = body_.size();
    body_.append("</").append(writtenName(open_.back())).append(1, '>');
    finish(start);
    open_.pop_back();
}

void Renderer::openingTag(ElementID id, std::string_view inside, std::string_view attributes) {
    const ElementAttributes known(attributes);
    if (id == image) {
        writeImage(known);
        return;
    }
    const std::size_t start = body_.size();
    writeTag(id, known);
    if (finish(start) && id != anchor)
        seenTags_.remember(inside, {start, body_.size() - start, id}); // an anchor has a token of its own
    if (elements[id].role == Role::kept) open_.push_back(id);
}

void Renderer::writeTag(ElementID id, const ElementAttributes& attributes) {
    body_.append(1, '<').append(writtenName(id));
    writeAttributes(id, attributes);
    if (id == anchor) {
        if (const auto href = attributes[AttributeName::href]) writeLink(*href);
    }
    body_ += '>';
}

void Renderer::writeAttributes(ElementID id, const ElementAttributes& attributes) {
    if (attributes.empty()) return;
    writeStyle(id, attributes);
    if (const auto classes = attributes[AttributeName::className]) writeClasses(*classes);
    if (const auto name = attributes[AttributeName::id]) {
        if (const auto identifier = MailStyles::identifier(*name))
            body_.append(" id=\"m-").append(*identifier).append(1, '"');
    }
    if (const auto direction = attributes[AttributeName::dir]) {
        const std::string lowered = Text::lowered(*direction);
        if (lowered == "ltr" || lowered == "rtl" || lowered == "auto")
            body_.append(" dir=\"").append(lowered).append(1, '"');
    }
    writeNumbers(attributes);
}

void Renderer::writeStyle(ElementID id, const ElementAttributes& attributes) {
    const std::size_t start = body_.size();
    body_ += " style=\"";
    const std::size_t valueStart = body_.size();
    scratch_.clear();
    styles_.appendPresentation(scratch_, attributes, elements[id].name);
    appendEscaped(body_, scratch_);
    if (const auto text = attributes[AttributeName::style]) {
        const std::size_t presentationEnd = body_.size();
        if (presentationEnd > valueStart) body_ += ';';
        const std::size_t ownStart = body_.size();
        if (const auto* seen = complete_ ? seenStyles_.find(*text) : nullptr) {
            body_.append(body_, seen->start, seen->length);
        } else {
            scratch_.clear();
            styles_.appendDeclarations(scratch_, *text);
            appendEscaped(body_, scratch_);
            // A text in the document stays; one whose references were decoded is gone with the tag. The
            // attributes of an image may be taken back.
            const bool stays = text->data() >= html_.data() && text->data() < html_.data() + html_.size();
            if (stays && id != image) seenStyles_.remember(*text, {ownStart, body_.size() - ownStart, id});
        }
        if (body_.size() == ownStart) body_.resize(presentationEnd);
    }
    if (body_.size() == valueStart) {
        body_.resize(start);
    } else {
        body_ += '"';
    }
}

void Renderer::writeClasses(std::string_view classes) {
    const std::size_t start = body_.size();
    std::size_t at = Markup::skipSpaces(classes, 0);
    for (int count = 0; count < mostClasses && at < classes.size(); ++count) {
        const std::size_t wordStart = at;
        while (at < classes.size() && Markup::spaceAt(classes, at) == 0) ++at;
        const std::string_view word = classes.substr(wordStart, at - wordStart);
        at = Markup::skipSpaces(classes, at);
        if (word.size() > largestClass || Markup::identifierLength(word) != word.size()) continue;
        body_ += body_.size() == start ? " class=\"m-" : " m-";
        body_ += word;
    }
    if (body_.size() > start) body_ += '"';
}

void Renderer::writeNumbers(const ElementAttributes& attributes) {
    for (const NumericAttribute& attribute : numericAttributes) {
        const auto text = attributes[attribute.name];
        if (!text) continue;
        const auto value = Text::integer(*text);
        if (!value || *value < 0 || *value > attribute.largest) continue;
        body_.append(1, ' ').append(attribute.text).append("=\"");
        body_.append(std::to_string(*value)).append(1, '"');
    }
}

void Renderer::writeLink(std::string_view href) {
    auto address = safeLink(href);
    if (!address) return;
    std::string token = UUID::random().lowerText();
    body_.append(" href=\"tessel-link://").append(token).append(1, '"');
    links_.emplace(std::move(token), std::move(*address));
}

void Renderer::writeImage(const ElementAttributes& attributes) {
    const std::string_view alternative = attributes[AttributeName::alt].value_or(std::string_view());
    const auto address = attributes[AttributeName::src];
    const auto shown = address ? images_.take(*address) : std::nullopt;
    const std::size_t start = body_.size();
    body_ += "<img";
    writeAttributes(image, attributes); // for a placeholder too: its colours are numbered all the same
    if (!shown) {
        body_.resize(start);
        body_ += "<span class=\"image-placeholder\">";
        appendEscaped(body_, alternative);
        body_ += "</span>";
        finish(start);
        return;
    }
    body_ += " alt=\"";
    appendEscaped(body_, alternative);
    body_.append("\" src=\"data:").append(shown->type).append(";base64,");
    body_.append(Base64::encode(shown->bytes)).append("\">");
    finish(start);
}

} // namespace

RenderedMail render(const MailMessage& message) {
    if (!message.html.empty()) return Renderer(message).run();
    RenderedMail result;
    result.body = "<div class=\"plain\">";
    appendEscaped(result.body, message.plain);
    result.body += "</div>";
    return result;
}

} // namespace MailCore::SafeHTML
