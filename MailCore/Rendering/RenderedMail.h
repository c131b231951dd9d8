#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace MailCore {

/// One message, made safe to show.
struct RenderedMail {
    std::string body;                                      // sanitised fragment, never a whole document
    std::map<std::string, std::string, std::less<>> links; // token → address
    std::string stylesheet;                                // sanitised message CSS

    /// The complete, locked-down page. `scale` is the text size as a factor of 16 px; `backgroundRGB` the
    /// paper colour as 0xRRGGBB, its upper byte ignored.
    std::string page(bool dark, double scale, std::optional<std::uint32_t> backgroundRGB) const;
    bool operator==(const RenderedMail&) const = default;
};

} // namespace MailCore
