#include "orn/diagnosis/TypedPointer.h"

#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"

#include <cctype>
#include <cstdlib>
#include <ostream>
#include <string_view>

#if __has_include(<cxxabi.h>)
#include <cxxabi.h>
#endif

namespace DebugStream {

namespace {

// Some compilers give mangled names. Others give readable ones with words like "class" in them, which typeName removes.
std::string readableName(std::type_info const& type) {
#if __has_include(<cxxabi.h>)
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> const name{abi::__cxa_demangle(type.name(), nullptr, nullptr, &status),
                                                      std::free};
    if (name != nullptr) return name.get();
#endif
    return type.name();
}

bool belongsToWord(char letter) noexcept {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_' || letter == '$';
}

std::wstring typeName(std::type_info const& type) {
    std::string name = readableName(type);
    for (std::string_view const word : {"const ", "volatile ", "class ", "struct "}) {
        for (std::size_t at = 0; (at = name.find(word, at)) != std::string::npos;) {
            // A word counts only where it begins: "struct " is also the end of "Construct ".
            if (at > 0 && belongsToWord(name[at - 1]))
                at += word.size();
            else
                name.erase(at, word.size());
        }
    }
    // Compilers keep names in UTF-8.
    return utf8(name);
}

unsigned long long number(void const volatile* address) noexcept { return reinterpret_cast<std::uintptr_t>(address); }

}

std::wstring typedPtrA(std::type_info const& type, void const volatile* address) {
    return stringPrintf(L"%ls@%llx", typeName(type).c_str(), number(address));
}

std::wstring typedIdPtrA(std::type_info const& type, void const volatile* address, std::int64_t id) {
    return stringPrintf(L"%ls#%lld@%llx", typeName(type).c_str(), static_cast<long long>(id), number(address));
}

void debugPtrA(std::wostream& stream, std::type_info const& type, void const volatile* address) {
    stream << typedPtrA(type, address);
}

void debugIdPtrA(std::wostream& stream, std::type_info const& type, void const volatile* address, std::int64_t id) {
    stream << typedIdPtrA(type, address, id);
}

}
