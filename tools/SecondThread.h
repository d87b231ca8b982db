/// A thread that waits, for benchmarks: the C and C++ libraries leave atomics and locks out while a process has one
/// thread only, which is not the case that is measured.
#pragma once

#include <future>
#include <thread>

class SecondThread {
public:
    SecondThread() : thread_{[ended = end_.get_future()] { ended.wait(); }} {}
    ~SecondThread() {
        end_.set_value();
        thread_.join();
    }

private:
    std::promise<void> end_;
    std::thread thread_;
};
