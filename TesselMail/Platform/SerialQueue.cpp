#include "TesselMail/Platform/SerialQueue.h"

#include <pthread.h>

#include <utility>

namespace TesselMail {

SerialQueue::SerialQueue(std::string label) : label_(std::move(label)), thread_([this] { run(); }) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard guard(lock_);
        finishing_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void SerialQueue::submit(std::function<void()> work) {
    {
        const std::lock_guard guard(lock_);
        waiting_.push_back(std::move(work));
    }
    changed_.notify_one();
}

void SerialQueue::run() {
    constexpr std::size_t longestThreadName = 15;
    const std::string name = "tessel." + label_.substr(label_.rfind('.') + 1);
    pthread_setname_np(pthread_self(), name.substr(0, longestThreadName).c_str());

    for (;;) {
        std::function<void()> work;
        {
            std::unique_lock guard(lock_);
            changed_.wait(guard, [this] { return finishing_ || !waiting_.empty(); });
            if (waiting_.empty()) return;
            work = std::move(waiting_.front());
            waiting_.pop_front();
        }
        work();
    }
}

} // namespace TesselMail
