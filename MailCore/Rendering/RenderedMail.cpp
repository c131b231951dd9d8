#include "MailCore/Rendering/RenderedMail.h"

#include "Lock/ContentPolicy.h"
#include "MailCore/Rendering/PageParts.h"
#include "MailCore/Rendering/ShortestNumber.h"

#include <fmt/format.h>

#include <string_view>

namespace MailCore {

namespace {

// From the end of the root element's style attribute to the policy, and from there to the font size.
constexpr std::string_view head =
    R"("><head><meta charset="utf-8"><meta name="viewport" content="width=device-width,initial-scale=1">)"
    R"(<meta http-equiv="Content-Security-Policy" content=")";
constexpr std::string_view palettes =
    R"("><style>)"
    "\n"
    ":root{color-scheme:light "
    "dark;--ink:#252629;--muted:#74777d;--line:#e3e5e8;--quote:#f4f5f7;--link:#2864be}"
    "\n"
    ":root[data-theme=dark]{--ink:#e5e5e7;--muted:#a3a5ab;--line:#404246;--quote:#2c2e31;--link:#90baff}"
    "\n"
    "*{box-sizing:border-box}html,body{margin:0;background:var(--paper);color:var(--ink)}"
    "body{padding:12px 0 32px;font:";

// From the font size to the message's own styles.
constexpr std::string_view baseStyles =
    "px/1.7 -apple-system,BlinkMacSystemFont,'Helvetica Neue',sans-serif;overflow-wrap:anywhere;"
    "-webkit-font-smoothing:antialiased}"
    "\n"
    "p{margin:0 0 1em}h1,h2,h3,h4,h5,h6{line-height:1.35;margin:1em 0 .6em}h1{font-size:1.6em}"
    "h2{font-size:1.35em}h3{font-size:1.15em}a{color:var(--link);text-decoration:none}"
    "a:hover{text-decoration:underline}img{max-width:100%;height:auto}"
    "table{border-collapse:collapse;max-width:100%}td,th{vertical-align:top}caption{text-align:inherit}"
    R"(table[border="0"]{border:0})"
    "blockquote{margin:18px 0;padding:10px 18px;border-left:3px solid var(--line);background:var(--quote);"
    "color:var(--muted)}pre{white-space:pre-wrap;overflow-wrap:anywhere;font: .9em/1.6 "
    "ui-monospace,monospace;"
    "padding:14px;background:var(--quote);border-radius:8px}code{font-family:ui-monospace,monospace}"
    "hr{border:0;border-top:1px solid var(--line);margin:24px 0}.plain{white-space:break-spaces}"
    ".image-placeholder{color:var(--muted);font-size:.85em}ul,ol{padding-left:1.6em}li{margin:.25em 0}"
    "\n"
    "</style>";

} // namespace

std::string RenderedMail::page(bool dark, double scale, std::optional<std::uint32_t> backgroundRGB) const {
    std::string page;
    page.reserve(2'048 + stylesheet.size() + body.size());
    page += R"(<!doctype html><html data-theme=")";
    page += dark ? "dark" : "light";
    page.append(R"(" style=")").append(PageParts::paperProperty).append(":");
    page += backgroundRGB ? fmt::format("#{:06X}", *backgroundRGB & 0xFFFFFF) : dark ? "#232426" : "#FFFFFF";
    page.append(";").append(PageParts::scaleProperty).append(":");
    appendShortest(page, scale);
    page += head;
    page += contentPolicyText();
    page += palettes;
    appendShortest(page, scale * PageParts::baseFontSize);
    page += baseStyles;
    page.append(R"(<style id=")").append(PageParts::stylesID).append(R"(">)");
    page += stylesheet;
    page.append(R"(</style></head><body><div class=")").append(PageParts::contentClass).append(R"(">)");
    page += body;
    page += "</div></body></html>";
    return page;
}

} // namespace MailCore
