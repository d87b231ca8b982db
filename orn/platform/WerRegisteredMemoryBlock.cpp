#include "orn/platform/WerRegisteredMemoryBlock.h"

#include "orn/foundation/Error.h"
#include "orn/os/Library.h"
#include "orn/platform/WerRegisteredMemoryBlockImp.h"

#include <limits>

namespace ORN {

static_assert(sizeof(WerRegisteredMemoryBlock) == sizeof(void*));

constinit RegisterMemoryBlock* WerRegisterMemoryBlock = nullptr;
constinit UnregisterMemoryBlock* WerUnregisterMemoryBlock = nullptr;

namespace {

template <typename Function>
void find(Function*& function, HINSTANCE library, char const* name) {
    function = reinterpret_cast<Function*>(os::libraryFunction(library, name));
}

struct Load {
    Load() {
        // This runs under the loader's lock, where no library may be loaded.
        HINSTANCE const library = os::errorReportLibrary();
        find(WerRegisterMemoryBlock, library, "WerRegisterMemoryBlock");
        find(WerUnregisterMemoryBlock, library, "WerUnregisterMemoryBlock");
    }
};

Load const load;

}

WerRegisteredMemoryBlock::WerRegisteredMemoryBlock(void* address, unsigned long long size) : address_{nullptr} {
    // Where there are no error reports every size will do.
    if (WerRegisterMemoryBlock == nullptr) return;
    if (size > std::numeric_limits<DWORD>::max()) throwIntCast();
    // The destructor must not unregister a block that the system has refused.
    if (WerRegisterMemoryBlock(address, static_cast<DWORD>(size)) >= 0) address_ = address;
}

WerRegisteredMemoryBlock::~WerRegisteredMemoryBlock() {
    if (WerUnregisterMemoryBlock != nullptr && address_ != nullptr) WerUnregisterMemoryBlock(address_);
}

}
