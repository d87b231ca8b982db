// What <new> takes from the compiler's runtime.
#pragma once
#include <vcruntime_exception.h>

namespace std {

enum class align_val_t : size_t {};

struct nothrow_t {
    explicit nothrow_t() = default;
};
extern nothrow_t const nothrow;

using new_handler = void (*)();
new_handler get_new_handler() noexcept;
new_handler set_new_handler(new_handler handler) noexcept;

}

void* operator new(size_t size);
void* operator new(size_t size, std::align_val_t alignment);
void* operator new(size_t size, std::nothrow_t const&) noexcept;
inline void* operator new(size_t, void* place) noexcept { return place; }
void* operator new[](size_t size);
void* operator new[](size_t size, std::align_val_t alignment);
void* operator new[](size_t size, std::nothrow_t const&) noexcept;
inline void* operator new[](size_t, void* place) noexcept { return place; }

void operator delete(void* memory) noexcept;
void operator delete(void* memory, size_t size) noexcept;
void operator delete(void* memory, size_t size, std::align_val_t alignment) noexcept;
void operator delete(void* memory, std::align_val_t alignment) noexcept;
void operator delete(void* memory, std::nothrow_t const&) noexcept;
inline void operator delete(void*, void*) noexcept {}
void operator delete[](void* memory) noexcept;
void operator delete[](void* memory, size_t size) noexcept;
void operator delete[](void* memory, size_t size, std::align_val_t alignment) noexcept;
void operator delete[](void* memory, std::align_val_t alignment) noexcept;
void operator delete[](void* memory, std::nothrow_t const&) noexcept;
inline void operator delete[](void*, void*) noexcept {}
