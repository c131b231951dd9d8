#pragma once

#include "TesselMail/Model/ReadingPage.h"
#include "TesselMail/Platform/ObjectRef.h"

#include <webkit/webkit.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace TesselMail {

/// Runs the coordinator's requests in a web view whose page scripts are off: scripts of ours live in a world
/// of their own.
class WebKitReadingPage : public ReadingPage {
public:
    explicit WebKitReadingPage(ObjectRef<WebKitWebView> view) : view_(std::move(view)) {}

    void load(std::string html, std::uint64_t navigation) override;
    void stopLoading() override;
    void update(PageUpdate update, std::function<void(bool)> answer) override;
    void locateLink(std::string href, std::function<void(std::optional<PageRectangle>)> answer) override;
    PageRectangle bounds() const override;
    /// A link as the page has it.
    struct Link {
        std::string href;
        std::string text; // what of it can be seen
    };
    /// Moves the focus to the next or previous link, from outside them to the first or last; the answer is
    /// the link that has it now, or nothing when there is none in that direction.
    void moveFocus(bool forward, std::function<void(std::optional<Link>)> answer);

    /// The navigation of the last `load`.
    std::uint64_t navigation() const noexcept { return navigation_; }

private:
    ObjectRef<WebKitWebView> view_;
    std::uint64_t navigation_ = 0;
};

} // namespace TesselMail
