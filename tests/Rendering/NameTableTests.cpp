#include "MailCore/Rendering/NameTable.h"

#include <gtest/gtest.h>

namespace MailCore {
namespace {

TEST(NameTables, FindTheirNamesAndNoOthers) {
    static constexpr auto names = std::to_array<std::string_view>({"a", "ab", "abc", "b", "h1", "h2", "z"});
    static constexpr NameTable<names.size()> table([](std::size_t index) { return names[index]; });
    static_assert(table.find("h2") == 5U);
    for (std::size_t index = 0; index < names.size(); ++index) EXPECT_EQ(table.find(names[index]), index);
    for (const std::string_view other :
         {"", "A", "ac", "abcd", "c", "h3", "h", "zz", "1", "\xC3\xA4", "{", "`"})
        EXPECT_EQ(table.find(other), std::nullopt) << other;
}

} // namespace
} // namespace MailCore
