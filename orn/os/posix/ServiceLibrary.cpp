#include "orn/os/posix/ServiceLibrary.h"

#include "orn/os/Fault.h"

#include <dlfcn.h>

#include <iterator>

namespace ORN::os {

namespace {

/// In the order of ServiceLibrary::Service. The number at the end is that of the binary interface, which the headers
/// describe: another number is another library.
constexpr char const* sonames[] = {"libcurl.so.4", "liblcms2.so.2", "libsqlite3.so.0", "libuuid.so.1", "libxcb.so.1"};

}

bool ServiceLibrary::open() noexcept {
    if (ORN_OS_REFUSED(sonames[service_])) return false;
    if (isOpen_.load(std::memory_order_acquire)) return true;
    void* const library = ::dlopen(sonames[service_], RTLD_NOW | RTLD_LOCAL);
    // The next call tries again: the library may have been installed meanwhile.
    if (library == nullptr) return false;
    for (LibraryEntry* const entry : entries_) {
        void* const address = ::dlsym(library, entry->name);
        if (address == nullptr) return false;
        entry->address.store(address, std::memory_order_relaxed);
    }
    // A thread that sees this true sees all addresses. Several threads may come here at once, and write the same ones.
    isOpen_.store(true, std::memory_order_release);
    return true;
}

std::wstring ServiceLibrary::textOfMissing(DWORD code) {
    if (code < firstMissing || code - firstMissing >= std::size(sonames)) return {};
    std::string const soname = sonames[code - firstMissing];
    return L"The library " + std::wstring{soname.begin(), soname.end()} + L" is missing or too old.";
}

}
