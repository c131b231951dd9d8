#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <memory>
#include <utility>
#include <variant>

namespace TesselMail {

/// A coroutine of the interface thread. It starts at once, continues whenever what it awaits is there, and
/// frees itself when it ends. It handles its own errors: one that escapes ends the program. Write it as a
/// named function that takes its parameters by value, never as a capturing lambda.
struct Task {
    struct promise_type {
        Task get_return_object() const noexcept { return {}; }
        std::suspend_never initial_suspend() const noexcept { return {}; }
        std::suspend_never final_suspend() const noexcept { return {}; }
        void return_void() const noexcept {}
        void unhandled_exception() const noexcept { std::terminate(); }
    };
};

/// The result of an operation that only tells that it is done.
using Done = std::monostate;

/// What an operation ended with: a value or an error.
template <typename Value>
class Outcome {
public:
    Outcome(Value value) : content_(std::in_place_index<0>, std::move(value)) {}
    Outcome(std::exception_ptr error) : content_(std::in_place_index<1>, std::move(error)) {}

    /// What `work` returns or throws.
    template <typename Work>
    static Outcome of(const Work& work) {
        try {
            return Outcome(work());
        } catch (...) {
            return Outcome(std::current_exception());
        }
    }

    /// Whether it is a value.
    explicit operator bool() const noexcept { return content_.index() == 0; }
    /// The value; throws the error when there is one.
    Value take() && {
        if (const auto* const error = std::get_if<1>(&content_)) std::rethrow_exception(*error);
        return std::get<0>(std::move(content_));
    }
    /// The error; null when it is a value.
    std::exception_ptr error() const noexcept {
        const auto* const error = std::get_if<1>(&content_);
        return error ? *error : nullptr;
    }

private:
    std::variant<Value, std::exception_ptr> content_;
};

template <typename Value>
class LaterOutcome;

/// A result that a Task can await: `co_await` starts the operation and gives its value or throws its error.
/// The operation must call its `Finish` on the interface thread and not before it has returned. If it drops
/// every copy without a call, the waiting task ends there and what it holds is released. An operation that
/// throws has ended with that error.
template <typename Value>
class Later {
public:
    using Finish = std::function<void(Outcome<Value>)>;

    explicit Later(std::function<void(Finish)> begin) : begin_(std::move(begin)) {}

    bool await_ready() const noexcept { return false; }
    bool await_suspend(std::coroutine_handle<> waiting) {
        const auto suspended = std::make_shared<Suspended>(waiting);
        const auto begin = std::move(begin_);
        try {
            begin([this, suspended](Outcome<Value> outcome) {
                outcome_ = std::make_unique<Outcome<Value>>(std::move(outcome));
                std::exchange(suspended->handle, nullptr).resume();
            });
        } catch (...) {
            suspended->handle = nullptr; // the task goes on at once
            outcome_ = std::make_unique<Outcome<Value>>(std::current_exception());
            return false;
        }
        return true;
    }
    Value await_resume() { return std::move(*outcome_).take(); }

    /// The same for a task that handles the error itself: `co_await` gives the Outcome and throws nothing.
    LaterOutcome<Value> outcome() && { return LaterOutcome<Value>(std::move(*this)); }

private:
    friend class LaterOutcome<Value>;

    struct Suspended {
        explicit Suspended(std::coroutine_handle<> waiting) noexcept : handle(waiting) {}
        Suspended(const Suspended&) = delete;
        Suspended& operator=(const Suspended&) = delete;
        ~Suspended() {
            if (handle) handle.destroy();
        }
        std::coroutine_handle<> handle;
    };

    std::function<void(Finish)> begin_;
    std::unique_ptr<Outcome<Value>> outcome_;
};

/// What a Later ends with, for a Task that goes on after an error: `co_await` gives its Outcome.
template <typename Value>
class LaterOutcome {
public:
    explicit LaterOutcome(Later<Value> later) : later_(std::move(later)) {}

    bool await_ready() const noexcept { return false; }
    bool await_suspend(std::coroutine_handle<> waiting) { return later_.await_suspend(waiting); }
    Outcome<Value> await_resume() { return std::move(*later_.outcome_); }

private:
    Later<Value> later_;
};

} // namespace TesselMail
