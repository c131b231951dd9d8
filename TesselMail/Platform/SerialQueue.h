#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace TesselMail {

/// A thread that runs the work given to it, one piece after the other. Nothing given to it is ever dropped:
/// the destructor returns when the last piece has run.
class SerialQueue {
public:
    /// `label` names the queue as a reverse-domain identifier; debuggers show what follows its last dot.
    explicit SerialQueue(std::string label);
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    ~SerialQueue();

    const std::string& label() const noexcept { return label_; }
    /// Any thread. `work` must not throw.
    void submit(std::function<void()> work);

private:
    void run();

    std::string label_;
    std::mutex lock_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> waiting_;
    bool finishing_ = false;
    std::thread thread_; // last: it starts when everything else is there
};

} // namespace TesselMail
