#include "MailCore/Model/EntryText.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace MailCore {
namespace {

TEST(EntryTexts, OwnTheirCharactersUnlessBorrowed) {
    std::string characters = "lent";
    const EntryText lent = EntryText::borrowing(characters);
    const EntryText copy = lent; // NOLINT: the copy is the point
    EntryText moved = EntryText("moved");
    moved = EntryText(std::move(moved));
    characters = "gone";
    EXPECT_EQ(lent.view(), "gone");
    EXPECT_EQ(copy.view(), "lent");
    EXPECT_EQ(moved.view(), "moved");
    EXPECT_EQ(EntryText(), EntryText(""));
}

} // namespace
} // namespace MailCore
