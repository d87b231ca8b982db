#include "tests/support/TestRegistry.h"

#include "tests/support/TemporaryFolder.h"

#include <cstdlib>

struct TestRegistry::Imp {
    TemporaryFolder folder;
    std::wstring path = L"Software\\orn-test";
};

TestRegistry::TestRegistry() : imp_{std::make_unique<Imp>()} {
    std::wstring const file = imp_->folder / L"registry.db";
    ::setenv("ORN_REGISTRY", std::string{file.begin(), file.end()}.c_str(), 1);
}
TestRegistry::~TestRegistry() { ::unsetenv("ORN_REGISTRY"); }

HKEY TestRegistry::root() const { return HKEY_CURRENT_USER; }
std::wstring const& TestRegistry::path() const { return imp_->path; }
