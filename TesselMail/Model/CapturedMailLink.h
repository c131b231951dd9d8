#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TesselMail {

/// A link of a message as people see it: what kind it is, the values it carries, and the one text that
/// copying it gives, all in the language it was made in.
struct CapturedMailLink {
    struct Field {
        int id = 0; // the field's place among those of its kind of link
        std::string label;
        std::string value;
        bool operator==(const Field&) const = default;
    };

    std::string title;
    std::string symbol; // "envelope", "phone", "message" or "link"
    std::vector<Field> fields;
    std::string copyLabel;
    std::string copyValue;

    /// Nothing for a link that SafeHTML::safeLink refuses.
    static std::optional<CapturedMailLink> of(std::string_view link, bool chinese);

    /// Of the list of fields, in points: 32 for each and 20 for each of its at most 8 lines of 40 characters;
    /// at least 48, at most 220.
    int height() const;

    bool operator==(const CapturedMailLink&) const = default;
};

} // namespace TesselMail
