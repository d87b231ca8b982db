/// A place in the registry for one test, empty at first and gone afterwards: a key of the user's on Windows, elsewhere a
/// key in a file of its own, which ORN_REGISTRY names meanwhile.
#pragma once

#include "orn/platform/RegistryKey.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <string>

class TestRegistry {
public:
#if defined(__linux__)
    TestRegistry() { setenv("ORN_REGISTRY", (folder_.path() / "registry.db").c_str(), 1); }
    ~TestRegistry() { unsetenv("ORN_REGISTRY"); }
#else
    ~TestRegistry() { RegWriteKey{root(), L"Software"}.deleteSubKey(folder_.path().filename().wstring()); }
#endif

    HKEY root() const { return RegKey::currentUser(); }
    /// Below the root; there is no such key yet.
    std::wstring const& path() const { return path_; }

private:
    TemporaryFolder folder_;
    std::wstring path_ = L"Software\\" + folder_.path().filename().wstring();
};
