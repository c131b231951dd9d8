#include "TesselMail/Model/MailWebCoordinator.h"

#include "tests/Support/Case.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace TesselMail::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A page whose answers the test gives by hand.
class FakePage : public ReadingPage {
public:
    std::vector<std::uint64_t> loads;
    std::string html;
    std::vector<PageUpdate> updates;
    std::vector<std::function<void(bool)>> answers;
    std::vector<std::string> located;
    std::function<void(std::optional<PageRectangle>)> locate;

    void load(std::string document, std::uint64_t navigation) override {
        html = std::move(document);
        loads.push_back(navigation);
    }
    void stopLoading() override {}
    void update(PageUpdate update, std::function<void(bool)> answer) override {
        updates.push_back(std::move(update));
        answers.push_back(std::move(answer));
    }
    void locateLink(std::string href, std::function<void(std::optional<PageRectangle>)> answer) override {
        located.push_back(std::move(href));
        locate = std::move(answer);
    }
    PageRectangle bounds() const override { return {0, 0, 400, 300}; }
};

class Coordinator : public testing::Test {
protected:
    using Content = MailWebCoordinator::Content;
    using Kind = MailWebCoordinator::Navigation::Kind;

    static Content content(std::string body) {
        auto rendered = std::make_shared<MailCore::RenderedMail>();
        rendered->body = std::move(body);
        rendered->stylesheet = "p{}";
        rendered->links = {{"TOKEN-" + rendered->body, "https://tessel.example/" + rendered->body}};
        return {.identity = MailCore::UUID::random(), .rendered = rendered, .plain = "<plain> & simple"};
    }
    void loaded() { coordinator_->finishedLoading(page_.loads.back()); }
    void answer(bool succeeded = true) { page_.answers.at(answered_++)(succeeded); }
    /// A page that shows `shown`.
    void showing(const Content& shown) {
        coordinator_->rulesInstalled(true);
        coordinator_->show(shown, true);
        loaded();
        answer();
    }
    bool click(const std::string& address) { return coordinator_->allows({Kind::linkActivated, address}); }
    std::vector<std::string> bodies() const {
        std::vector<std::string> result;
        for (const PageUpdate& update : page_.updates) result.push_back(update.body);
        return result;
    }

    FakePage page_;
    std::vector<std::string> opened_;
    PageRectangle place_;
    std::vector<std::string_view> reports_;
    std::vector<std::optional<MailCore::UUID>> applied_;
    std::optional<MailWebCoordinator> coordinator_{
        std::in_place, page_,
        [this](const std::string& address, MailCore::UUID, PageRectangle place) {
            opened_.push_back(address);
            place_ = place;
        },
        [this](std::optional<MailCore::UUID>, const Phrase& text) { reports_.push_back(text.english); },
        [this] { applied_.push_back(coordinator_->shown()); }};
    std::size_t answered_ = 0;
};

TEST_F(Coordinator, LoadsNothingBeforeTheRulesAreInForce) {
    coordinator_->show(content("a"), true);
    EXPECT_THAT(page_.loads, IsEmpty());
    coordinator_->rulesInstalled(true);
    ASSERT_THAT(page_.loads, SizeIs(1));
    EXPECT_EQ(page_.html.find("<div class=\"mail-content\"></div>") == std::string::npos, false);
    EXPECT_THAT(page_.updates, IsEmpty());
    coordinator_->finishedLoading(page_.loads.back() + 1); // some other load
    EXPECT_THAT(page_.updates, IsEmpty());
    loaded();
    EXPECT_THAT(bodies(), ElementsAre("a"));
    EXPECT_EQ(page_.updates[0].paper, "#FFFFFF");
}

TEST_F(Coordinator, ShowsEscapedPlainTextWithoutTheRules) {
    coordinator_->rulesInstalled(false);
    coordinator_->show(content("<b>a</b>"), true);
    loaded();
    answer();
    EXPECT_THAT(bodies(), ElementsAre("<div class=\"plain\">&lt;plain&gt; &amp; simple</div>"));
    EXPECT_EQ(page_.updates[0].stylesheet, "");
    EXPECT_FALSE(click("tessel-link://TOKEN-<b>a</b>"));
    EXPECT_THAT(page_.located, IsEmpty());
}

TEST_F(Coordinator, RunsOneUpdateAtATimeAndEndsWithTheLastContent) {
    showing(content("a"));
    coordinator_->show(content("b"), true);
    coordinator_->show(content("c"), true);
    const Content last = content("d");
    coordinator_->show(last, true);
    EXPECT_THAT(bodies(), ElementsAre("a", "b"));
    EXPECT_THAT(applied_, SizeIs(1));
    answer();
    EXPECT_THAT(bodies(), ElementsAre("a", "b", "d"));
    answer();
    EXPECT_THAT(applied_, SizeIs(3));
    EXPECT_EQ(applied_.back(), last.identity);
    coordinator_->show(last, true); // nothing new
    EXPECT_THAT(page_.updates, SizeIs(3));
}

TEST_F(Coordinator, ChangesThemeAndSizeInPlace) {
    const MailCore::Testing::Case<double, double> cases[] = {
        {"as wanted", 1.25, 20},
        {"too large", 3.0, 32},
        {"too small", 0.1, 8},
        {"not a number", std::numeric_limits<double>::quiet_NaN(), 16},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FakePage page;
        MailWebCoordinator coordinator(page, nullptr, nullptr, [] {});
        coordinator.rulesInstalled(true);
        Content shown = content("a");
        coordinator.show(shown, true);
        coordinator.finishedLoading(page.loads.back());
        page.answers.back()(true);
        shown.dark = true;
        shown.scale = c.given;
        shown.paperRGB = MailWebCoordinator::paperColor(true);
        coordinator.show(shown, true);
        ASSERT_THAT(page.updates, SizeIs(2));
        EXPECT_FALSE(page.updates[1].replace);
        EXPECT_EQ(page.updates[1].body, "");
        EXPECT_TRUE(page.updates[1].dark);
        EXPECT_EQ(page.updates[1].paper, "#1E1E1E");
        EXPECT_EQ(page.updates[1].fontSize, c.expected);
    }
}

TEST_F(Coordinator, AllowsNoNavigationButTheShell) {
    showing(content("a"));
    struct Case {
        std::string_view name;
        Kind kind;
        std::string address;
        bool allowed;
    };
    const Case cases[] = {
        {"the shell", Kind::other, "about:blank", true},
        {"another blank page", Kind::other, "about:srcdoc", false},
        {"a refresh", Kind::other, "https://tessel.example/", false},
        {"a frame with a document of its own", Kind::other, "data:text/html,x", false},
        {"a link that was not rewritten", Kind::linkActivated, "http://tessel.example/", false},
        {"a link to the shell", Kind::linkActivated, "about:blank", false},
        {"a form", Kind::userAction, "about:blank", false},
        {"no address", Kind::other, "", false},
        {"an unknown token", Kind::linkActivated, "tessel-link://OTHER", false},
        {"no token", Kind::linkActivated, "tessel-link://", false},
        {"a token as a load", Kind::other, "tessel-link://TOKEN-a", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(coordinator_->allows({c.kind, c.address}), c.allowed);
    }
    EXPECT_THAT(page_.located, IsEmpty());
    EXPECT_TRUE(coordinator_->allowsResponse(true));
    EXPECT_FALSE(coordinator_->allowsResponse(false));
}

TEST_F(Coordinator, HandsOverAClickedLinkWithItsPlace) {
    struct Case {
        std::string_view name;
        std::optional<PageRectangle> found;
        std::optional<PageRectangle> place;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const PageRectangle centre{200, 150, 1, 1};
    const Case cases[] = {
        {"in sight", PageRectangle{10, 20, 30, 12}, PageRectangle{10, 20, 30, 12}},
        {"partly in sight", PageRectangle{-10, -5, 30, 12}, PageRectangle{-10, -5, 30, 12}},
        {"not found", std::nullopt, centre},
        {"without extent", PageRectangle{10, 20, 0, 12}, centre},
        {"not finite", PageRectangle{nan, 20, 30, 12}, centre},
        {"scrolled away", PageRectangle{10, 320, 30, 12}, std::nullopt},
    };
    showing(content("a"));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        opened_.clear();
        EXPECT_FALSE(click("tessel-link://TOKEN-a"));
        EXPECT_EQ(page_.located.back(), "tessel-link://TOKEN-a");
        page_.locate(c.found);
        ASSERT_THAT(opened_, SizeIs(c.place ? 1 : 0));
        if (c.place) {
            EXPECT_EQ(opened_[0], "https://tessel.example/a");
            EXPECT_EQ(place_, *c.place);
        }
    }
}

TEST_F(Coordinator, DropsClicksOfAMessageThatIsGoing) {
    const Content first = content("a");
    showing(first);
    click("tessel-link://TOKEN-a");
    coordinator_->show(content("b"), true);
    page_.locate(std::nullopt); // while the update runs
    answer();
    click("tessel-link://TOKEN-a"); // of the message before
    EXPECT_THAT(page_.located, SizeIs(1));
    click("tessel-link://TOKEN-b");
    EXPECT_THAT(page_.located, SizeIs(2));
    coordinator_->show(content("c"), true);
    answer();
    page_.locate(std::nullopt); // of the message before, late
    coordinator_->show(content("d"), false);
    answer();
    click("tessel-link://TOKEN-d"); // not interactive
    EXPECT_THAT(page_.located, SizeIs(2));
    EXPECT_THAT(opened_, IsEmpty());
}

TEST_F(Coordinator, DoesNotRetryAMessageWhoseUpdateFailed) {
    showing(content("a"));
    Content broken = content("b");
    coordinator_->show(broken, true);
    answer(false);
    EXPECT_THAT(reports_, ElementsAre(Texts::viewNotUpdated.english));
    broken.dark = true;
    coordinator_->show(broken, true);
    EXPECT_THAT(page_.updates, SizeIs(2));
    coordinator_->show(content("c"), true);
    EXPECT_THAT(bodies(), ElementsAre("a", "b", "c"));
}

TEST_F(Coordinator, StartsAFreshPageForTheNextMessageAfterACrash) {
    const Content first = content("a");
    showing(first);
    coordinator_->show(content("b"), true);
    coordinator_->processTerminated();
    answer(false); // the running script fails because of it: people hear of one fault
    EXPECT_THAT(reports_, ElementsAre(Texts::viewStopped.english));
    EXPECT_THAT(page_.loads, SizeIs(1));

    coordinator_->show(content("c"), true);
    ASSERT_THAT(page_.loads, SizeIs(2));
    loaded();
    EXPECT_EQ(page_.updates.back().body, "c");
    EXPECT_TRUE(page_.updates.back().replace);
}

TEST_F(Coordinator, ReportsAShellThatDoesNotLoad) {
    coordinator_->rulesInstalled(true);
    const Content first = content("a");
    coordinator_->show(first, true);
    coordinator_->failedLoading(true); // only cancelled
    EXPECT_THAT(reports_, IsEmpty());
    coordinator_->failedLoading(false);
    EXPECT_THAT(reports_, ElementsAre(Texts::viewNotOpened.english));
    coordinator_->show(first, true);
    EXPECT_THAT(page_.loads, SizeIs(1)); // the same message is not tried again
    coordinator_->show(content("b"), true);
    EXPECT_THAT(page_.loads, SizeIs(2));
}

TEST_F(Coordinator, IgnoresEverythingOnceRetiredOrGone) {
    showing(content("a"));
    click("tessel-link://TOKEN-a");
    coordinator_->show(content("b"), true);
    coordinator_->retire();
    answer(false);
    coordinator_->processTerminated();
    coordinator_->failedLoading(false);
    coordinator_->show(content("c"), true);
    EXPECT_FALSE(coordinator_->allows({Kind::other, "about:blank"}));
    EXPECT_FALSE(coordinator_->allowsResponse(true));
    coordinator_.reset();
    page_.locate(std::nullopt);
    EXPECT_THAT(reports_, IsEmpty());
    EXPECT_THAT(opened_, IsEmpty());
    EXPECT_THAT(page_.updates, SizeIs(2));
}

} // namespace
} // namespace TesselMail::Testing
