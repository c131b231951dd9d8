#pragma once

#include <string_view>

namespace MailCore::Testing {

/// One row of a table: what it is about, what is given, and what comes of it.
template <typename Given, typename Expected>
struct Case {
    std::string_view name;
    Given given;
    Expected expected;
};

} // namespace MailCore::Testing
