#pragma once

#include "MailCore/Platform/Alive.h"
#include "MailCore/Platform/UUID.h"
#include "MailCore/Rendering/RenderedMail.h"
#include "TesselMail/Model/ReadingPage.h"
#include "TesselMail/Model/Texts.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace TesselMail {

/// Decides what the reading page shows and what it may load. The page is loaded once, empty, and then filled
/// in place, one update at a time; the last content wanted wins. A message that made the page fail is not
/// tried again until another one has been shown. Interface thread only.
class MailWebCoordinator {
public:
    /// What one application of the page shows. The rendering is identified by `identity`.
    struct Content {
        MailCore::UUID identity;
        std::shared_ptr<const MailCore::RenderedMail> rendered;
        std::string plain; // shown when the blocking rules could not be installed
        bool dark = false;
        double scale = 1; // of the text, 0.5 to 2
        std::uint32_t paperRGB = 0xFFFFFF;

        bool matches(const std::optional<Content>& other) const;
    };

    /// A navigation the page asks for.
    struct Navigation {
        enum class Kind { linkActivated, other, userAction };
        Kind kind = Kind::other;
        std::string address; // empty when there is none
    };

    using OpenLink =
        std::function<void(const std::string& address, MailCore::UUID identity, PageRectangle place)>;
    using Report = std::function<void(std::optional<MailCore::UUID> identity, const Phrase& explanation)>;
    using Applied = std::function<void()>;

    /// `page` outlives the coordinator, or is never used again after `retire`.
    /// `applied` is told after each update that succeeded.
    MailWebCoordinator(ReadingPage& page, OpenLink open, Report report, Applied applied);
    MailWebCoordinator(const MailWebCoordinator&) = delete;
    MailWebCoordinator& operator=(const MailWebCoordinator&) = delete;

    /// The colour under the message as 0xRRGGBB.
    static std::uint32_t paperColor(bool dark) noexcept;
    /// `scale` made finite and kept from 0.5 to 2.
    static double clampedScale(double scale) noexcept;

    /// The blocking rules are in force, or could not be compiled. Without them only plain text is shown.
    void rulesInstalled(bool succeeded);
    /// What should be shown from now on. Links answer to clicks while `interactive`.
    void show(Content content, bool interactive);
    /// The content the page shows; nothing while it is being made.
    std::optional<MailCore::UUID> shown() const;
    /// The blocking rules could not be compiled.
    bool lacksRules() const noexcept { return failed_; }
    /// Whether links answer to clicks from now on.
    void setInteractive(bool interactive) { interactive_ = interactive; }
    /// The view is going away: everything that comes later is ignored.
    void retire();

    /// Whether the page may go where it asks to. A click on a link of the message is refused and handed to
    /// `open`, with its place in the view.
    bool allows(const Navigation& navigation);
    /// Whether a response may be shown: only that of the page itself.
    bool allowsResponse(bool mainFrame) const noexcept;
    /// The address behind "tessel-link://TOKEN" in the message on show; nothing for any other address.
    std::optional<std::string> linkBehind(std::string_view address) const;

    void finishedLoading(std::uint64_t navigation);
    /// Loading failed; `cancelled` loads are no failures.
    void failedLoading(bool cancelled);
    void processTerminated();

private:
    void loadShell();
    void apply();
    void updated(const Content& sent, std::uint64_t update, bool succeeded);
    void clicked(const std::string& token);
    void located(MailCore::UUID identity, const std::string& address, std::optional<PageRectangle> found);
    bool answersClicks() const;
    PageUpdate updateFor(const Content& content, bool replace) const;
    std::optional<MailCore::UUID> desiredIdentity() const;

    ReadingPage* page_;
    OpenLink open_;
    Report report_;
    Applied onApplied_;
    bool ready_ = false;  // the blocking rules are installed
    bool failed_ = false; // they could not be compiled
    bool retired_ = false;
    bool interactive_ = false;
    std::optional<std::uint64_t> shellNavigation_; // the load of the empty page under way
    std::uint64_t navigations_ = 0;
    bool documentReady_ = false;
    bool applying_ = false;     // an update script is running
    std::uint64_t updates_ = 0; // tells its answer from those of a page that is gone
    std::optional<Content> desired_;
    std::optional<Content> applied_;
    std::optional<MailCore::UUID> terminatedAt_; // shown when the page failed to load or its process ended
    std::optional<MailCore::UUID> failedAt_;     // whose update script failed
    std::map<std::string, std::string, std::less<>> links_; // of the applied message, token → address
    MailCore::Alive<MailWebCoordinator> alive_{*this};
};

} // namespace TesselMail
