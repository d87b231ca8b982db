#include "orn/platform/WerRegisteredMemoryBlock.h"

#include "orn/foundation/Error.h"
#include "orn/platform/SystemLibrary.h"
#include "orn/platform/WerRegisteredMemoryBlockImp.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace {

using Calls = std::vector<std::pair<void*, DWORD>>;
Calls registered;
std::vector<void*> unregistered;
HRESULT result;

/// In the place of the system's functions, for a scope.
struct Recorder {
    Recorder() {
        registered.clear();
        unregistered.clear();
        result = 0;
        ORN::WerRegisterMemoryBlock = [](void* address, DWORD size) {
            registered.emplace_back(address, size);
            return result;
        };
        ORN::WerUnregisterMemoryBlock = [](void* address) {
            unregistered.push_back(address);
            return HRESULT{-1};  // which nobody is told
        };
    }
    ~Recorder() {
        ORN::WerRegisterMemoryBlock = registerBlock;
        ORN::WerUnregisterMemoryBlock = unregisterBlock;
    }
    ORN::RegisterMemoryBlock* registerBlock = ORN::WerRegisterMemoryBlock;
    ORN::UnregisterMemoryBlock* unregisterBlock = ORN::WerUnregisterMemoryBlock;
};

TEST(WerRegisteredMemoryBlockInner, TheFunctionsAreThoseOfTheSystem) {
    bool const windows = ORN::LoadSystemLibrary(L"Kernel32.dll") != nullptr;
    EXPECT_EQ(ORN::WerRegisterMemoryBlock != nullptr, windows);
    EXPECT_EQ(ORN::WerUnregisterMemoryBlock != nullptr, windows);
}

TEST(WerRegisteredMemoryBlockInner, WhatWasRegisteredIsUnregisteredOnce) {
    Recorder const recorder;
    int data[2];
    Calls const calls{{data, 4}, {data, 0xFFFFFFFF}};
    for (HRESULT const given : {HRESULT{0}, HRESULT{1}, HRESULT{-1}}) {
        registered.clear();
        unregistered.clear();
        result = given;
        for (auto const& [address, size] : calls) {
            std::size_t const before = unregistered.size();
            ORN::WerRegisteredMemoryBlock const block{address, size};
            EXPECT_EQ(unregistered.size(), before);
        }
        EXPECT_EQ(registered, calls);
        EXPECT_EQ(unregistered, given >= 0 ? (std::vector<void*>{data, data}) : std::vector<void*>{}) << given;
    }
}

TEST(WerRegisteredMemoryBlockInner, EitherFunctionMayBeMissing) {
    Recorder const recorder;
    int data = 0;
    EXPECT_THROW((ORN::WerRegisteredMemoryBlock{&data, 0x100000000}), ORN::OrnError);
    EXPECT_TRUE(registered.empty() && unregistered.empty());
    ORN::WerUnregisterMemoryBlock = nullptr;
    { ORN::WerRegisteredMemoryBlock const block{&data, 4}; }
    EXPECT_EQ(registered, (Calls{{&data, 4}}));
    ORN::WerRegisterMemoryBlock = nullptr;
    { ORN::WerRegisteredMemoryBlock const block{&data, 0x100000000}; }
    EXPECT_EQ(registered.size(), 1u);
}

}
