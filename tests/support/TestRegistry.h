/// A place in the registry for one test, empty at first and gone afterwards: a key of the user's on Windows, elsewhere a
/// key in a file of its own, which ORN_REGISTRY names meanwhile.
#pragma once

#include "orn/os/Types.h"

#include <memory>
#include <string>

class TestRegistry {
public:
    TestRegistry();
    ~TestRegistry();
    TestRegistry(TestRegistry const&) = delete;
    TestRegistry& operator=(TestRegistry const&) = delete;

    HKEY root() const;                 ///< the user's root
    std::wstring const& path() const;  ///< below it; there is no such key yet

private:
    struct Imp;
    std::unique_ptr<Imp> imp_;
};
