#include "MailCore/Model/ContentBudget.h"

#include "tests/Support/Errors.h"

#include <gtest/gtest.h>

#include <limits>

namespace MailCore {
namespace {

using Testing::errorOf;
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

TEST(ContentBudgets, ArePaidFromOnceAndNeverGivenBack) {
    ContentBudget budget({.bytes = 10, .parts = 2, .levels = 1});
    budget.charge(4);
    budget.countPart();
    {
        const auto level = budget.deeper();
        budget.charge(6);
        budget.countPart();
    }
    EXPECT_EQ(budget.left(), (ContentBudget::Left{.bytes = 0, .parts = 0, .levels = 1}));
    budget.charge(0);
    EXPECT_EQ(errorOf([&] { budget.countPart(); }), "tooMany");
    EXPECT_EQ(errorOf([&] { budget.charge(1); }), "tooLarge");
    EXPECT_EQ(errorOf([&] { budget.charge(0); }), "tooLarge") << "what was too much stays so";
}

TEST(ContentBudgets, GiveLevelsBackHoweverTheyAreLeft) {
    ContentBudget budget({.levels = 2});
    for (int round = 0; round < 3; ++round) {
        const std::string error = errorOf([&] {
            const auto outer = budget.deeper();
            const auto inner = budget.deeper();
            EXPECT_EQ(budget.left().levels, 0);
            const auto tooDeep = budget.deeper();
        });
        EXPECT_EQ(error, "tooMany");
        EXPECT_EQ(budget.left().levels, 2);
    }
}

TEST(ContentBudgets, DoNotWrapAround) {
    for (const std::int64_t bytes : {std::int64_t{0}, std::int64_t{5}, largest - 1, std::int64_t{-1}}) {
        ContentBudget budget({.bytes = bytes});
        for (int round = 0; round < 4; ++round)
            EXPECT_EQ(errorOf([&] { budget.charge(~std::size_t{0}); }), "tooLarge") << bytes;
    }
}

TEST(ContentBudgets, BringBorrowedCountsUpToDateWhenTheyFailToo) {
    std::int64_t bytes = 100;
    int parts = 3;
    const std::string error = errorOf([&] {
        BorrowedBudget budget(bytes, parts, 5, 7, 8);
        EXPECT_EQ(budget.left(), (ContentBudget::Left{.bytes = 100, .parts = 2, .levels = 2}));
        budget.charge(30);
        budget.countPart();
        budget.charge(71);
    });
    EXPECT_EQ(error, "tooLarge");
    EXPECT_EQ(bytes, -1);
    EXPECT_EQ(parts, 4);
}

} // namespace
} // namespace MailCore
