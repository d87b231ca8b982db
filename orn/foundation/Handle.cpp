#include "orn/foundation/Handle.h"

namespace ORN {

IHandlable::~IHandlable() = default;
Handlable::~Handlable() = default;

void Handlable::adref() const { ++count_; }

void Handlable::deref() const {
    if (--count_ != 0) return;
    // The destructor may wrap this in a handle again: 1 to 2 and back to 1 is no second destruction.
    count_.store(1, std::memory_order_relaxed);
    delete this;
}

template class ORN_API Handle<Handlable>;
static_assert(sizeof(Handle<Handlable>) == sizeof(void*));

}
