#pragma once

#include <sigc++/sigc++.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace TesselMail {

/// Collects what changes during one operation, so that views hear of it when the state is whole again.
class Changes {
public:
    using Signal = sigc::signal<void()>;

    void note(Signal& signal) {
        if (std::find(pending_.begin(), pending_.end(), &signal) == pending_.end())
            pending_.push_back(&signal);
    }

private:
    friend class Changing;
    int depth_ = 0;
    std::vector<Signal*> pending_;
};

/// The span of one operation on published fields; the outermost one emits at its end, each signal once and in
/// the order of the first changes. What a listener changes in turn is emitted by its own operation.
class Changing {
public:
    explicit Changing(Changes& changes) noexcept : changes_(changes) { ++changes_.depth_; }
    Changing(const Changing&) = delete;
    Changing& operator=(const Changing&) = delete;
    ~Changing() {
        if (--changes_.depth_ > 0) return;
        for (Changes::Signal* const signal : std::exchange(changes_.pending_, {})) signal->emit();
    }

private:
    Changes& changes_;
};

/// A field of `Owner` that everybody may read and listen to and only `Owner` may change, inside a Changing.
template <typename Value, typename Owner>
class Published {
public:
    explicit Published(Changes& changes, Value value = {}) : changes_(changes), value_(std::move(value)) {}

    const Value& get() const noexcept { return value_; }
    const Value& operator*() const noexcept { return value_; }
    const Value* operator->() const noexcept { return &value_; }
    /// Emitted after the operation that changed the field.
    sigc::signal<void()>& signalChanged() noexcept { return changed_; }

private:
    friend Owner;

    void set(Value value) {
        if (value_ == value) return;
        value_ = std::move(value);
        changes_.note(changed_);
    }
    // The value for a change in place, which always counts as one.
    Value& edit() {
        changes_.note(changed_);
        return value_;
    }

    Changes& changes_;
    Value value_;
    sigc::signal<void()> changed_;
};

} // namespace TesselMail
