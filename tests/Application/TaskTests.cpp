// How a task goes on after what it awaited: with a value, with an error, or not at all.
#include "TesselMail/Platform/Task.h"

#include "tests/Support/Case.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <string>

namespace TesselMail::Testing {
namespace {

using Finish = Later<int>::Finish;
using Begin = std::function<void(Finish)>;

std::string nameOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::bad_alloc&) {
        return "no memory";
    } catch (const std::exception& exception) {
        return exception.what();
    }
}

Task awaitOutcome(Begin begin, std::string& told, std::shared_ptr<int>) {
    auto result = co_await Later<int>(std::move(begin)).outcome();
    told = result ? std::to_string(std::move(result).take()) : nameOf(result.error());
}

Task awaitValue(Begin begin, std::string& told, std::shared_ptr<int>) {
    try {
        told = std::to_string(co_await Later<int>(std::move(begin)));
    } catch (...) {
        told = nameOf(std::current_exception());
    }
}

constexpr auto waysToAwait = {awaitOutcome, awaitValue};

TEST(Tasks, AreToldWhatTheOperationEndedWith) {
    const MailCore::Testing::Case<Outcome<int>, std::string_view> cases[] = {
        {"a value", 4, "4"},
        {"an error", std::make_exception_ptr(std::runtime_error("refused")), "refused"},
        {"no memory", std::make_exception_ptr(std::bad_alloc()), "no memory"},
    };
    for (const auto& c : cases) {
        for (const auto await : waysToAwait) {
            SCOPED_TRACE(c.name);
            Finish finish;
            std::string told;
            await([&](Finish given) { finish = std::move(given); }, told, nullptr);
            EXPECT_EQ(told, "") << "not before it has ended";
            finish(c.given);
            EXPECT_EQ(told, c.expected);
        }
    }
}

TEST(Tasks, GoOnWhenTheOperationCannotEvenBegin) {
    for (const auto await : waysToAwait) {
        std::string told;
        await([](Finish) { throw std::bad_alloc(); }, told, nullptr);
        EXPECT_EQ(told, "no memory");
    }
}

TEST(Tasks, EndWhereNobodyCanAnswerAnyMore) {
    for (const auto await : waysToAwait) {
        const auto held = std::make_shared<int>();
        Finish finish;
        std::string told;
        await([&](Finish given) { finish = std::move(given); }, told, held);
        EXPECT_EQ(held.use_count(), 2);
        finish = nullptr;
        EXPECT_EQ(held.use_count(), 1) << "what the task held is released";
        await([](Finish) {}, told, held);
        EXPECT_EQ(held.use_count(), 1) << "at once";
        EXPECT_EQ(told, "");
    }
}

} // namespace
} // namespace TesselMail::Testing
