#include "orn/platform/WerRegisteredMemoryBlock.h"

#include "orn/foundation/Error.h"
#include "orn/platform/SystemLibrary.h"
#include "orn/platform/WerRegisteredMemoryBlockImp.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

static_assert(!std::is_copy_constructible_v<ORN::WerRegisteredMemoryBlock> &&
              !std::is_copy_assignable_v<ORN::WerRegisteredMemoryBlock>);

constinit int data[2] = {};
constinit HRESULT result = 0;
std::string calls;

std::string nameOf(void* address) { return address == data ? "a" : address == data + 1 ? "b" : "?"; }

TEST(WerRegisteredMemoryBlock, WhatWasRegisteredIsUnregisteredOnce) {
    bool const windows = ORN::LoadSystemLibrary(L"Kernel32.dll") != nullptr;
    EXPECT_TRUE((ORN::WerRegisterMemoryBlock != nullptr) == windows &&
                (ORN::WerUnregisterMemoryBlock != nullptr) == windows);
    EXPECT_NO_THROW(ORN::WerRegisteredMemoryBlock const block(data, sizeof data));
    auto* const systemsRegister = ORN::WerRegisterMemoryBlock;
    auto* const systemsUnregister = ORN::WerUnregisterMemoryBlock;
    ORN::WerRegisterMemoryBlock = [](void* address, DWORD size) {
        calls += "+" + nameOf(address) + std::to_string(size);
        return result;
    };
    ORN::WerUnregisterMemoryBlock = [](void* address) {
        calls += "-" + nameOf(address);
        return HRESULT{-1};  // which nobody is told
    };
    auto const twoBlocks = [](HRESULT given) {
        calls.clear();
        result = given;
        {
            ORN::WerRegisteredMemoryBlock const a{data, 0xFFFFFFFF}, b{data + 1, 4};
            calls += " ";
        }
        return calls;
    };
    EXPECT_EQ(twoBlocks(0), "+a4294967295+b4 -b-a");
    EXPECT_EQ(twoBlocks(1), "+a4294967295+b4 -b-a");
    EXPECT_EQ(twoBlocks(-1), "+a4294967295+b4 ");

    calls.clear();
    EXPECT_THROW(ORN::WerRegisteredMemoryBlock const block(data, 0x100000000), ORN::OrnError);
    EXPECT_EQ(calls, "");
    ORN::WerUnregisterMemoryBlock = nullptr;
    EXPECT_EQ(twoBlocks(0), "+a4294967295+b4 ");
    ORN::WerRegisterMemoryBlock = nullptr;
    EXPECT_EQ(twoBlocks(0), " ");
    EXPECT_NO_THROW(ORN::WerRegisteredMemoryBlock const block(data, 0x100000000));

    ORN::WerRegisterMemoryBlock = systemsRegister;
    ORN::WerUnregisterMemoryBlock = systemsUnregister;
}

}
