#include "orn/foundation/Handle.h"

namespace ORN {

IHandlable::~IHandlable() = default;
Handlable::~Handlable() = default;

void Handlable::destroy() const {
    // The destructor may wrap this in a handle again: 1 to 2 and back to 1 is no second destruction.
    count_.store(1, std::memory_order_relaxed);
    delete this;
}

template class ORN_API Handle<Handlable>;
static_assert(sizeof(Handle<Handlable>) == sizeof(void*));

}
