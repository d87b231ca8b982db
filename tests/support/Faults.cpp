#include "tests/support/Faults.h"

#include "orn/os/Fault.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace {

constinit thread_local char const* refusedCall = nullptr;
constinit thread_local int sparedCalls = 0;
constinit thread_local int refusedCalls = 0;
constinit thread_local long failingAllocation = -1;
constinit thread_local bool allocationFailed = false;
constinit thread_local long blocks = 0;

void* allocate(std::size_t size) {
    if (failingAllocation >= 0 && failingAllocation-- == 0) {
        allocationFailed = true;
        throw std::bad_alloc{};
    }
    void* const block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr) throw std::bad_alloc{};
    ++blocks;
    return block;
}

void release(void* block) noexcept {
    if (block != nullptr) --blocks;
    std::free(block);
}

}

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    try {
        return allocate(size);
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, std::nothrow_t const& tag) noexcept { return operator new(size, tag); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }

bool ORN::os::refused(char const* call) noexcept {
    if (refusedCall == nullptr || std::strcmp(refusedCall, call) != 0) return false;
    if (sparedCalls-- > 0) return false;
    ++refusedCalls;
    return true;
}

namespace faults {

Refuse::Refuse(char const* call, int spared) noexcept {
    refusedCall = call;
    sparedCalls = spared;
    refusedCalls = 0;
}
Refuse::~Refuse() { refusedCall = nullptr; }
int Refuse::refusals() const noexcept { return refusedCalls; }

AllocationFails::AllocationFails(long number) noexcept {
    failingAllocation = number;
    allocationFailed = false;
}
AllocationFails::~AllocationFails() { failingAllocation = -1; }
bool AllocationFails::happened() const noexcept { return allocationFailed; }

long liveBlocks() noexcept { return blocks; }

}
