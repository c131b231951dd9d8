#pragma once

#include <memory>

namespace MailCore {

/// Tells callbacks that may come late whether their owner is still there: they copy its handle and ask it
/// before anything else. The last member of `Owner`, so that it is the first to go. All of it happens on one
/// thread.
template <typename Owner>
class Alive {
public:
    class Handle {
    public:
        /// The owner, or null when it is gone.
        Owner* get() const noexcept { return *owner_; }
        Owner* operator->() const noexcept { return *owner_; }
        explicit operator bool() const noexcept { return *owner_ != nullptr; }

    private:
        friend class Alive;
        explicit Handle(Owner& owner) : owner_(std::make_shared<Owner*>(&owner)) {}
        std::shared_ptr<Owner*> owner_;
    };

    explicit Alive(Owner& owner) : handle_(owner) {}
    Alive(const Alive&) = delete;
    Alive& operator=(const Alive&) = delete;
    ~Alive() { end(); }

    const Handle& handle() const noexcept { return handle_; }
    /// The owner counts as gone from now on: for a destructor that calls others before its members go.
    void end() noexcept { *handle_.owner_ = nullptr; }

private:
    Handle handle_;
};

} // namespace MailCore
