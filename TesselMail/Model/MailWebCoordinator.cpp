#include "TesselMail/Model/MailWebCoordinator.h"

#include "MailCore/Platform/HTMLEscape.h"
#include "MailCore/Rendering/PageParts.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace TesselMail {
namespace {

constexpr std::string_view linkPrefix = "tessel-link://";

// The token of a link of the message, as the web view reports it: "tessel-link://TOKEN", perhaps with a "/".
std::optional<std::string_view> tokenOf(std::string_view address) {
    if (!address.starts_with(linkPrefix)) return std::nullopt;
    std::string_view token = address.substr(linkPrefix.size());
    token = token.substr(0, token.find_first_of("/?#"));
    return token.empty() ? std::nullopt : std::optional(token);
}

bool usable(const PageRectangle& place) {
    return std::isfinite(place.x) && std::isfinite(place.y) && std::isfinite(place.width) &&
           std::isfinite(place.height) && place.width > 0 && place.height > 0;
}

bool intersect(const PageRectangle& left, const PageRectangle& right) {
    return left.x < right.x + right.width && right.x < left.x + left.width &&
           left.y < right.y + right.height && right.y < left.y + left.height;
}

} // namespace

bool MailWebCoordinator::Content::matches(const std::optional<Content>& other) const {
    return other && other->identity == identity && other->dark == dark && other->scale == scale &&
           other->paperRGB == paperRGB;
}

MailWebCoordinator::MailWebCoordinator(ReadingPage& page, OpenLink open, Report report, Applied applied)
    : page_(&page), open_(std::move(open)), report_(std::move(report)), onApplied_(std::move(applied)) {}

std::uint32_t MailWebCoordinator::paperColor(bool dark) noexcept {
    constexpr std::uint32_t white = 0xFFFFFF;
    constexpr std::uint32_t darkGrey = 0x1E1E1E; // white level 0.12: 30.6 of 255, truncated
    return dark ? darkGrey : white;
}

double MailWebCoordinator::clampedScale(double scale) noexcept {
    return std::isfinite(scale) ? std::clamp(scale, 0.5, 2.0) : 1.0;
}

void MailWebCoordinator::rulesInstalled(bool succeeded) {
    if (retired_) return;
    (succeeded ? ready_ : failed_) = true;
    loadShell();
}

void MailWebCoordinator::loadShell() {
    if (retired_ || (!ready_ && !failed_) || shellNavigation_) return;
    documentReady_ = false;
    // A fresh page shows nothing yet, whatever the one before it showed.
    applied_.reset();
    links_.clear();
    shellNavigation_ = ++navigations_;
    const MailCore::RenderedMail empty;
    page_->load(desired_ ? empty.page(desired_->dark, desired_->scale, desired_->paperRGB)
                         : empty.page(false, 1.0, std::nullopt),
                *shellNavigation_);
}

void MailWebCoordinator::show(Content content, bool interactive) {
    if (retired_) return;
    interactive_ = interactive;
    content.scale = clampedScale(content.scale);
    desired_ = std::move(content);
    if (terminatedAt_ && terminatedAt_ != desired_->identity) {
        terminatedAt_.reset();
        loadShell();
    }
    apply();
}

PageUpdate MailWebCoordinator::updateFor(const Content& content, bool replace) const {
    PageUpdate update{.body = {},
                      .stylesheet = ready_ ? content.rendered->stylesheet : std::string(),
                      .replace = replace,
                      .dark = content.dark,
                      .paper = fmt::format("#{:06X}", content.paperRGB),
                      .fontSize = content.scale * MailCore::PageParts::baseFontSize};
    if (!replace) return update;
    if (ready_)
        update.body = content.rendered->body;
    else
        update.body = "<div class=\"plain\">" + MailCore::SafeHTML::escape(content.plain) + "</div>";
    return update;
}

void MailWebCoordinator::apply() {
    if (retired_ || !documentReady_ || applying_ || terminatedAt_ || !desired_) return;
    if (failedAt_ == desired_->identity || desired_->matches(applied_)) return;
    applying_ = true;
    const bool replace = !applied_ || applied_->identity != desired_->identity;
    const std::uint64_t update = ++updates_;
    page_->update(updateFor(*desired_, replace),
                  [self = alive_.handle(), sent = *desired_, update](bool succeeded) {
                      if (self) self->updated(sent, update, succeeded);
                  });
}

void MailWebCoordinator::updated(const Content& sent, std::uint64_t update, bool succeeded) {
    if (retired_ || !applying_ || update != updates_) return;
    applying_ = false;
    if (succeeded) {
        applied_ = sent;
        links_.clear();
        if (ready_) links_ = sent.rendered->links;
        apply();
        return onApplied_();
    }
    failedAt_ = sent.identity;
    links_.clear();
    report_(sent.identity, Texts::viewNotUpdated);
    if (desired_ && desired_->identity != sent.identity) apply();
}

std::optional<MailCore::UUID> MailWebCoordinator::shown() const {
    return applied_ ? std::optional(applied_->identity) : std::nullopt;
}

std::optional<std::string> MailWebCoordinator::linkBehind(std::string_view address) const {
    const auto token = tokenOf(address);
    if (!token) return std::nullopt;
    const auto found = links_.find(*token);
    return found == links_.end() ? std::nullopt : std::optional(found->second);
}

bool MailWebCoordinator::answersClicks() const {
    return !retired_ && interactive_ && !applying_ && desired_ && applied_ &&
           desired_->identity == applied_->identity;
}

bool MailWebCoordinator::allows(const Navigation& navigation) {
    if (retired_ || navigation.address.empty()) return false;
    if (navigation.kind == Navigation::Kind::linkActivated) {
        const auto token = tokenOf(navigation.address);
        if (token && answersClicks() && links_.contains(*token)) clicked(std::string(*token));
        return false;
    }
    return navigation.kind == Navigation::Kind::other && navigation.address == "about:blank";
}

void MailWebCoordinator::clicked(const std::string& token) {
    const MailCore::UUID identity = applied_->identity;
    page_->locateLink(
        std::string(linkPrefix) + token,
        [self = alive_.handle(), identity, address = links_.at(token)](std::optional<PageRectangle> found) {
            if (self) self->located(identity, address, found);
        });
}

void MailWebCoordinator::located(MailCore::UUID identity, const std::string& address,
                                 std::optional<PageRectangle> found) {
    if (!answersClicks() || applied_->identity != identity) return;
    const PageRectangle bounds = page_->bounds();
    PageRectangle place{.x = bounds.width / 2, .y = bounds.height / 2, .width = 1, .height = 1};
    if (found && usable(*found)) {
        place = *found;
        if (!intersect(place, bounds)) return; // scrolled out of sight since the click
    }
    open_(address, identity, place);
}

bool MailWebCoordinator::allowsResponse(bool mainFrame) const noexcept {
    return mainFrame && !retired_;
}

void MailWebCoordinator::finishedLoading(std::uint64_t navigation) {
    if (retired_ || shellNavigation_ != navigation) return;
    documentReady_ = true;
    shellNavigation_.reset();
    apply();
}

std::optional<MailCore::UUID> MailWebCoordinator::desiredIdentity() const {
    return desired_ ? std::optional(desired_->identity) : std::nullopt;
}

void MailWebCoordinator::failedLoading(bool cancelled) {
    if (retired_ || cancelled) return;
    documentReady_ = false;
    shellNavigation_.reset();
    terminatedAt_ = desiredIdentity().value_or(MailCore::UUID::random());
    links_.clear();
    report_(desiredIdentity(), Texts::viewNotOpened);
}

void MailWebCoordinator::processTerminated() {
    if (retired_) return;
    page_->stopLoading();
    // Without content the marker stands for no message, so that the first one gets a fresh page.
    terminatedAt_ = desiredIdentity().value_or(MailCore::UUID::random());
    documentReady_ = false;
    applying_ = false;
    shellNavigation_.reset();
    applied_.reset();
    links_.clear();
    report_(desiredIdentity(), Texts::viewStopped);
}

void MailWebCoordinator::retire() {
    if (retired_) return;
    retired_ = true;
    page_->stopLoading();
    open_ = nullptr;
    onApplied_ = nullptr;
    links_.clear();
    desired_.reset();
    applied_.reset();
}

} // namespace TesselMail
