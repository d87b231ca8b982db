#include "tests/support/Faults.h"

#include "orn/os/Fault.h"
#include "tests/support/OpenFiles.h"

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

namespace {

/// How much memory and how many files the calling thread has to give back. A text that another module has allocated counts
/// only when it is given back here, so that the number may also fall.
long held() { return liveBlocks() + openFiles(); }

bool matches(std::wstring const& text, std::wstring const& pattern) {
    std::size_t const any = pattern.find(L'*');
    if (any == std::wstring::npos) return text == pattern;
    return text.size() + 1 >= pattern.size() && text.starts_with(pattern.substr(0, any)) &&
           text.ends_with(pattern.substr(any + 1));
}

}

void expectFailures(std::vector<Case> const& table) {
    for (auto const& [name, use, refusals, fewest, most] : table) {
        SCOPED_TRACE(name);
        std::wstring const before = use.outcome();
        for (auto const& [call, expected, spared] : refusals) {
            SCOPED_TRACE(call + " after " + std::to_string(spared));
            long const heldBefore = held();
            {
                Refuse const refuse{call.c_str(), spared};
                std::wstring const outcome = use.outcome();
                EXPECT_TRUE(matches(outcome, expected)) << testing::PrintToString(outcome);
                EXPECT_GE(refuse.refusals(), 1);
            }
            EXPECT_LE(held(), heldBefore);
        }
        if (fewest >= 0) {
            long const heldBefore = held();
            bool done = false;
            int const failures = failEveryAllocation(
                [&done, &use = use] {
                    done = false;
                    done = use.done();
                },
                [&](bool) {
                    EXPECT_FALSE(done);
                    EXPECT_LE(held(), heldBefore);
                });
            EXPECT_TRUE(done);
            EXPECT_LE(held(), heldBefore);
            EXPECT_TRUE(failures >= fewest && failures <= most) << failures;
        }
        EXPECT_EQ(use.outcome(), before) << "usable again";
    }
}

}
