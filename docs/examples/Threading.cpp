#include "orn/orn.h"

#include <atomic>
#include <deque>
#include <functional>
#include <future>
#include <iostream>
#include <thread>
#include <vector>

// A value with its lock beside it: four bytes, 0 when free, nothing to set up.
class Measured {
public:
    void add(double length) {
        ExclusiveLock const alone{lock_};
        sum_ += length;
        ++count_;
    }
    double mean() const {
        SharedLock const together{lock_};
        return sum_ / count_;
    }

private:
    mutable LONG volatile lock_ = 0;
    double sum_ = 0;
    int count_ = 0;
};

// A job that is known by a number. When it is aborted its next look at the flag ends it.
struct Job : ORN::Threading::Task<int> {
    Job(int number, std::function<void(Job&)> what) : number_{number}, run{std::move(what)} {}
    int key() const override { return number_; }
    void abort() override { aborted_ = true; }
    bool obeys() { return aborted_.exchange(false); }

    int const number_;
    std::atomic<bool> aborted_ = false;
    std::function<void(Job&)> const run;
};

// A scheduler of one's own: jobs run one after the other, in the background.
class Background : public ORN::Threading::Scheduler<int> {
public:
    Background() : Scheduler{-1} {}
    ~Background() override { finish(ORN::Threading::BoringWaiter{}); }

    void insert(Job& job) {
        ExclusiveLock guard{lockWord()};
        startThread(guard);
        queue_.push_back(&job);
        wakeWorker(guard);
    }

private:
    void processTasks() override {
        ExclusiveLock guard{lockWord()};
        while (!queue_.empty()) {
            setCancelled(false);
            current_ = queue_.front();
            queue_.pop_front();
            struct Stopped {  // also when the job throws
                Background& background;
                ExclusiveLock& guard;
                ~Stopped() {
                    guard.lock();
                    background.current_ = nullptr;
                    background.tellStopped();
                }
            } const stopped{*this, guard};
            guard.unlock();
            current_->run(*current_);
        }
    }
    void eraseWholeQueue() override { queue_.clear(); }
    void eraseFromQueue(int const& number) override {
        std::erase_if(queue_, [&](Job const* job) { return job->key() == number; });
    }
    ORN::Threading::TaskBase* taskInProgress() const override { return current_; }
    char const* threadName() const override { return "background"; }
    void onThreadStart() override {}
    void onThreadExit() override {}

    std::deque<Job*> queue_;
    Job* current_ = nullptr;
};

int main() {
    Measured lengths;
    std::vector<std::thread> threads;
    for (int i = 1; i <= 4; ++i)
        threads.emplace_back([&lengths, i] {
            for (int k = 0; k < 1000; ++k) lengths.add(i);
        });
    for (std::thread& thread : threads) thread.join();
    std::wcout << L"mean " << lengths.mean() << L'\n';

    // A guard can step out of its lock and back in.
    LONG volatile word = 0;
    ExclusiveLock guard{word};
    guard.unlock();
    std::wcout << L"free: " << (word == 0);
    guard.lock();
    std::wcout << L", held: " << (word == readWriteLockExclusive) << L'\n';

    // With a time limit the attempt may fail; the word is then as it was.
    bool const taken = readWriteLockLock(word, readWriteLockShared, readWriteLockWriter, 10);
    std::wcout << L"shared beside exclusive: " << taken << L'\n';

    // Jobs live until the scheduler has let go of them, so they are made before it.
    std::promise<int> answer;
    Job quick{1, [&](Job&) { answer.set_value(42); }};
    int rounds = 0;
    Job endless{2, [&](Job& job) {
                    while (!job.obeys()) ++rounds;
                }};
    Background background;
    background.insert(quick);
    std::wcout << L"answer " << answer.get_future().get() << L'\n';
    background.insert(endless);
    background.cancel(2, ORN::Threading::BoringWaiter{});
    int const stoppedAt = rounds;
    std::wcout << L"stopped for good: " << (rounds == stoppedAt) << L'\n';
}
