// needs: Boost::headers
#include "orn/foundation/Handle.h"

#include <benchmark/benchmark.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <future>
#include <memory>
#include <thread>

namespace {

struct Object : ORN::Handlable {};

/// Counts as Handlable does, for the peer's pointer.
struct Peer {
    virtual void add() const;
    virtual void drop() const;
    virtual ~Peer() = default;
    mutable std::atomic<int> count{0};
};
[[gnu::noinline]] void Peer::add() const { ++count; }
[[gnu::noinline]] void Peer::drop() const {
    if (--count == 0) delete this;
}
void intrusive_ptr_add_ref(Peer const* peer) { peer->add(); }
void intrusive_ptr_release(Peer const* peer) { peer->drop(); }

/// The standard library counts without atomics while the process has one thread only; this makes it two.
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

template <typename Pointer>
void copyAndDrop(benchmark::State& state, Pointer pointer) {
    SecondThread const second;
    benchmark::DoNotOptimize(pointer);
    for (auto _ : state) {
        Pointer copy{pointer};
        benchmark::DoNotOptimize(copy);
    }
}

void handle(benchmark::State& state) { copyAndDrop(state, ORN::Handle<Object>{new Object}); }
void sharedPtr(benchmark::State& state) { copyAndDrop(state, std::make_shared<Object>()); }
void intrusivePtr(benchmark::State& state) { copyAndDrop(state, boost::intrusive_ptr<Peer>{new Peer}); }

BENCHMARK(handle);
BENCHMARK(sharedPtr);
BENCHMARK(intrusivePtr);

}
