#include "MailCore/Model/MailError.h"

#include <array>

namespace MailCore {

namespace {

struct Row {
    MailError::Case which;
    std::string_view name;
    std::string_view description; // ends with a NUL, as what() needs
};

constexpr auto rows = std::to_array<Row>({
    {MailError::tooLarge, "tooLarge", "The file exceeds the safe reading limit."},
    {MailError::malformed, "malformed", "This file could not be read as a supported email."},
    {MailError::unsupported, "unsupported", "This file format is not supported."},
    {MailError::tooMany, "tooMany", "This archive contains too many messages to open safely."},
    {MailError::cancelled, "cancelled", "Opening was cancelled."},
    {MailError::sourceChanged, "sourceChanged", "The source file changed. Reopen it to update the index."},
    {MailError::unsafeDestination, "unsafeDestination",
     "Choose another destination to keep open source files unchanged."},
});

constexpr bool rowsStandInOrder() {
    for (std::size_t index = 0; index < rows.size(); ++index) {
        if (static_cast<std::size_t>(rows[index].which) != index) return false;
    }
    return true;
}
static_assert(rowsStandInOrder());

} // namespace

std::string_view MailError::name() const noexcept {
    return rows[static_cast<std::size_t>(which_)].name;
}

std::string_view MailError::errorDescription() const noexcept {
    return rows[static_cast<std::size_t>(which_)].description;
}

} // namespace MailCore
