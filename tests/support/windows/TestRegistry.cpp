#include "tests/support/TestRegistry.h"

#include <windows.h>

#include <shlwapi.h>

struct TestRegistry::Imp {
    std::wstring path = L"Software\\orn-test-" + std::to_wstring(::GetCurrentProcessId());
};

TestRegistry::TestRegistry() : imp_{std::make_unique<Imp>()} { ::SHDeleteKeyW(root(), path().c_str()); }
TestRegistry::~TestRegistry() { ::SHDeleteKeyW(root(), path().c_str()); }

HKEY TestRegistry::root() const { return HKEY_CURRENT_USER; }
std::wstring const& TestRegistry::path() const { return imp_->path; }
