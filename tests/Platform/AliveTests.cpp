#include "MailCore/Platform/Alive.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <vector>

namespace MailCore::Testing {
namespace {

/// Something that leaves callbacks behind.
class Owner {
public:
    std::function<void()> callback() {
        return [self = alive_.handle()] {
            if (self) ++self->called_;
        };
    }
    int called() const noexcept { return called_; }
    void end() noexcept { alive_.end(); }
    Alive<Owner>::Handle handle() const { return alive_.handle(); }

private:
    int called_ = 0;
    Alive<Owner> alive_{*this};
};

TEST(Alive, AnswersEveryCopyUntilItsOwnerIsGone) {
    std::optional<Owner> owner(std::in_place);
    std::vector<std::function<void()>> callbacks{owner->callback(), owner->callback()};
    callbacks.push_back(callbacks.front());
    for (const auto& callback : callbacks) callback();
    EXPECT_EQ(owner->called(), 3);
    const auto handle = owner->handle();
    EXPECT_EQ(handle.get(), &*owner);
    owner.reset();
    EXPECT_EQ(handle.get(), nullptr);
    for (const auto& callback : callbacks) callback(); // which a sanitizer watches
}

TEST(Alive, CountsItsOwnerAsGoneOnceToldSo) {
    Owner owner;
    const auto callback = owner.callback();
    owner.end();
    callback();
    owner.callback()();
    EXPECT_EQ(owner.called(), 0);
}

} // namespace
} // namespace MailCore::Testing
