#include "orn/foundation/Handle.h"

namespace ORN {

IHandlable::~IHandlable() = default;
Handlable::~Handlable() = default;

void Handlable::destroy() const {
    // The destructor may create a handle to this and drop it: the count goes from 1 to 2 and back to 1, and not to 0, which
    // would destroy the object again.
    count_.store(1, std::memory_order_relaxed);
    delete this;
}

template class ORN_API Handle<Handlable>;
static_assert(sizeof(Handle<Handlable>) == sizeof(void*));

}
