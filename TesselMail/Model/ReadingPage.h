#pragma once

#include "MailCore/Rendering/PageParts.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace TesselMail {

/// A place in the web view, in its own units from its upper left corner.
struct PageRectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const PageRectangle&) const = default;
};

/// The arguments of one run of the update script.
struct PageUpdate {
    std::string body; // empty when not replacing
    std::string stylesheet;
    bool replace = true; // false: only theme, paper and size change
    bool dark = false;
    std::string paper;                                   // as in "#FFFFFF"
    double fontSize = MailCore::PageParts::baseFontSize; // pixels
    bool operator==(const PageUpdate&) const = default;
};

/// What the coordinator asks of the web view. Answers come later, on the interface thread, or not at all.
class ReadingPage {
public:
    virtual ~ReadingPage() = default;
    /// Loads the document `html` without an address; its loading is told to the coordinator by `navigation`.
    virtual void load(std::string html, std::uint64_t navigation) = 0;
    virtual void stopLoading() = 0;
    virtual void update(PageUpdate update, std::function<void(bool succeeded)> answer) = 0;
    /// Where the link with exactly this address stands; nothing when the page has none.
    virtual void locateLink(std::string href, std::function<void(std::optional<PageRectangle>)> answer) = 0;
    /// The visible part.
    virtual PageRectangle bounds() const = 0;
};

} // namespace TesselMail
