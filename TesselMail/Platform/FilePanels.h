#pragma once

#include "MailCore/Platform/URL.h"
#include "TesselMail/Platform/Task.h"

#include <optional>
#include <string>
#include <vector>

namespace TesselMail {

/// What a panel for opening asks for.
struct OpenPanel {
    enum class Kind { files, folder };
    Kind kind = Kind::files;
    std::string title;
    std::string accept;                  // caption of the button that confirms
    std::string cancel;                  // caption of the button that does not
    std::string filterName;              // shown for the files that are offered
    std::string everyName;               // shown for all files
    std::vector<std::string> extensions; // of those files, in lower case; folders ignore it
    std::vector<std::string> names;      // of further ones that have no extension
};

/// What a panel for saving asks for.
struct SavePanel {
    std::string name; // proposed
    std::string title;
    std::string accept;
    std::string cancel;
};

/// The desktop's panels for choosing files. One panel is shown at a time.
class FilePanels {
public:
    virtual ~FilePanels() = default;
    /// The chosen files or folders; none when the panel was left.
    virtual Later<std::vector<MailCore::URL>> open(OpenPanel panel) = 0;
    /// The chosen destination, which may exist; nothing when the panel was left.
    virtual Later<std::optional<MailCore::URL>> save(SavePanel panel) = 0;
};

} // namespace TesselMail
