// needs: Boost::headers
#include "orn/foundation/Handle.h"
#include "tools/SecondThread.h"

#include <benchmark/benchmark.h>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <memory>

/// Counts as Handlable does, for the peer's pointer. A second class counts otherwise, so that the compiler cannot guess
/// what a call reaches.
struct Peer {
    virtual void add() const { ++count; }
    virtual void drop() const {
        if (--count == 0) delete this;
    }
    virtual ~Peer() = default;
    mutable std::atomic<int> count{0};
};
struct Immortal : Peer {
    void add() const override {}
    void drop() const override {}
};
void intrusive_ptr_add_ref(Peer const* peer) { peer->add(); }
void intrusive_ptr_release(Peer const* peer) { peer->drop(); }

namespace {

struct Object : ORN::Handlable {};

template <typename Pointer>
void copyAndDrop(benchmark::State& state, Pointer pointer) {
    SecondThread const second;
    for (auto _ : state) {
        benchmark::DoNotOptimize(pointer);
        Pointer copy{pointer};
        benchmark::DoNotOptimize(copy);
    }
}

void handle(benchmark::State& state) { copyAndDrop(state, ORN::Handle<Object>{new Object}); }
void sharedPtr(benchmark::State& state) { copyAndDrop(state, std::make_shared<Object>()); }
void intrusivePtr(benchmark::State& state) {
    boost::intrusive_ptr<Peer> const other{new Immortal};
    benchmark::DoNotOptimize(other);
    copyAndDrop(state, boost::intrusive_ptr<Peer>{new Peer});
}

BENCHMARK(handle);
BENCHMARK(sharedPtr);
BENCHMARK(intrusivePtr);

}
