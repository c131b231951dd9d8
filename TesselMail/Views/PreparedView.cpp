#include "TesselMail/Views/PreparedView.h"

#include "TesselMail/Platform/SandboxCheck.h"

#include <string>
#include <utility>

namespace TesselMail {

PreparedView PreparedView::make() {
    if (!sandboxWorks()) return {.lack = Lack::sandbox, .view = nullptr};
    std::string folder = LockedWebView::makeRulesFolder();
    if (folder.empty()) return {.lack = Lack::folder, .view = nullptr};
    auto view = std::make_unique<LockedWebView>(std::move(folder));
    view->compileRules();
    return {.lack = Lack::none, .view = std::move(view)};
}

} // namespace TesselMail
