#include "MailCore/Sources/EntryArena.h"

#include <gtest/gtest.h>

#include <string>

namespace MailCore {
namespace {

MessageEntry entryNumber(std::int64_t id) {
    const std::string text = std::to_string(id);
    return {.id = id,
            .subject = "subject " + text,
            .from = std::string(static_cast<std::size_t>(id % 50), 'f') + text,
            .date = id % 3 == 0 ? "" : "date " + text,
            .recipients = std::string(id % 100 == 7 ? 20'000 : 3, 'r') + text};
}

TEST(EntryArenas, KeepEntriesWhereTheyAre) {
    EntryList handles;
    {
        EntryArena arena;
        for (std::int64_t id = 0; id < 3'000; ++id) handles.push_back(arena.add(entryNumber(id)));
    }
    for (std::int64_t id = 0; id < 3'000; ++id)
        ASSERT_EQ(*handles[static_cast<std::size_t>(id)], entryNumber(id)) << id;
    const SharedEntry last = handles.back();
    handles.clear(); // one handle keeps its block
    EXPECT_EQ(*last, entryNumber(2'999));
}

} // namespace
} // namespace MailCore
