#include "orn/orn.h"

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
}
