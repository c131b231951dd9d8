#pragma once

#include "MailCore/Rendering/PageParts.h"
#include "TesselMail/Model/Texts.h"

#include <sigc++/sigc++.h>

#include <string>
#include <vector>

namespace TesselMail {

/// The user's settings, kept in a key file and written at every change, and the choice of language that
/// follows from them. Interface thread only.
class Preferences {
public:
    /// Reads `path` once; what is missing or of the wrong type has its default. `languages` are the system's
    /// preferred languages, best first, as in "zh_CN" or "en-GB". Nothing is written before a change.
    Preferences(std::string path, std::vector<std::string> languages);
    /// The settings of the user who runs the program.
    static Preferences ofUser();

    /// "auto", "en-US" or "zh-CN"; any other value is kept and means English.
    const std::string& language() const noexcept { return language_; }
    /// "auto", "light" or "dark"; any other value is kept and means "auto".
    const std::string& appearance() const noexcept { return appearance_; }
    /// Of the message body, in points; 16 by default.
    double textSize() const noexcept { return textSize_; }

    void setLanguage(std::string language);
    void setAppearance(std::string appearance);
    void setTextSize(double points);

    /// Whether the interface speaks Simplified Chinese rather than English.
    bool chinese() const noexcept;
    /// The factor by which the reading view scales its text: 1 at 16 points.
    double readingScale() const noexcept { return textSize_ / MailCore::PageParts::baseFontSize; }
    /// `text` in the interface's language.
    std::string text(const Phrase& text) const {
        return std::string(chinese() ? text.chinese : text.english);
    }

    /// Emitted after any setting has changed.
    sigc::signal<void()>& signalChanged() noexcept { return changed_; }

private:
    void read();
    void store() const;

    std::string path_;
    std::vector<std::string> languages_;
    std::string language_ = "auto";
    std::string appearance_ = "auto";
    double textSize_ = MailCore::PageParts::baseFontSize;
    sigc::signal<void()> changed_;
};

} // namespace TesselMail
