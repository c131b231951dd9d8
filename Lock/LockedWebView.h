#pragma once

#include <webkit/webkit.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace TesselMail {

/// A web view with every lock on it: no storage, the switches of the table, no downloads, permissions or
/// windows, and the blocking rules once they are in force. What it navigates to is its owner's to decide.
class LockedWebView {
public:
    /// Told once whether the rules are in force; nothing may be loaded before.
    using Installed = std::function<void(bool)>;

    /// A folder of this run's own for the compiled rules, which are of no use to anybody else; empty when it
    /// cannot be made. Without it no web view is made: its processes need the same place, and end the program
    /// where there is none.
    static std::string makeRulesFolder();

    /// `rulesFolder` comes from `makeRulesFolder` and is removed again.
    explicit LockedWebView(std::string rulesFolder);
    LockedWebView(const LockedWebView&) = delete;
    LockedWebView& operator=(const LockedWebView&) = delete;
    ~LockedWebView();

    WebKitWebView* view() const noexcept { return view_.get(); }
    /// Begins to compile the blocking rules, which come into force when that is done.
    void compileRules();
    /// Tells `installed` once, when the rules have been compiled and the view's own first page is there: an
    /// empty one, for which its processes start while other things are done. Not told any more when this is
    /// gone.
    void whenReady(Installed installed);

private:
    struct Unref {
        void operator()(gpointer object) const noexcept { g_object_unref(object); }
    };
    template <typename Object>
    using Owned = std::unique_ptr<Object, Unref>;

    static Owned<WebKitWebView> makeView(WebKitNetworkSession* session);
    void warmUp();
    void becomeWarm();
    void rulesCompiled(GAsyncResult* result);
    void tellWhenReady();
    void removeFolder() const;

    Owned<WebKitNetworkSession> session_;
    Owned<WebKitWebView> view_;
    std::string rulesFolder_;
    Owned<WebKitUserContentFilterStore> rules_;
    Installed installed_;
    bool warm_ = false;           // its processes have started, or have failed to
    std::optional<bool> inForce_; // whether the rules are, once they have been compiled
};

} // namespace TesselMail
