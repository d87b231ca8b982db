/// What the library exports; everything else is hidden.
#pragma once

#if !defined(__cplusplus)
// The arc functions are there for C, too.
#elif defined(_MSVC_LANG) ? _MSVC_LANG < 202002L : __cplusplus < 202002L
#error "orn needs C++20: compile with -std=c++20 or /std:c++20, or link with the CMake target orn::orn"
#endif

/// Before a declaration: the library exports it.
#if defined(_WIN32)
#if defined(ORN_BUILDING)
#define ORN_API __declspec(dllexport)
#else
#define ORN_API __declspec(dllimport)
#endif
#else
#define ORN_API __attribute__((visibility("default")))
#endif

/// Class templates whose members the library instantiates, and exports. GNU compilers take the word from the first
/// declaration that they see of an instance, and ignore it later. Microsoft's exports nothing from a definition whose
/// declaration, or template, says that it is exported already. Clang may take the word from the first declaration of the
/// template: where a class of the library is used before its template is defined, the declaration has the word, too.
///
///     template <int N> class ORN_API_TEMPLATE Closed {…};           // a template of which nobody else makes instances,
///     extern template class ORN_API_INSTANCE Closed<2>;             // and an instance in the header
///     template <typename T> class Open {…};                         // a template of which others make instances, too,
///     extern template class ORN_API_DECLARED Open<int>;             // and an instance in the header
///     template class ORN_API_DEFINED Closed<2>;                     // instances of either, in the source
/// @{
#if !defined(_MSC_VER)
#define ORN_API_TEMPLATE ORN_API
#define ORN_API_INSTANCE
#define ORN_API_DECLARED ORN_API
#define ORN_API_DEFINED
#elif defined(ORN_BUILDING)
#define ORN_API_TEMPLATE
#define ORN_API_INSTANCE
#define ORN_API_DECLARED
#define ORN_API_DEFINED ORN_API
#else
#define ORN_API_TEMPLATE
#define ORN_API_INSTANCE ORN_API
#define ORN_API_DECLARED ORN_API
#define ORN_API_DEFINED
#endif
/// @}

/// Around templates that take an int as the bound of an array: g++ would warn its users of the sign of each.
/// @{
#if defined(__GNUC__) && !defined(__clang__)
#define ORN_INT_BOUNDS _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wsign-conversion\"")
#define ORN_INT_BOUNDS_END _Pragma("GCC diagnostic pop")
#else
#define ORN_INT_BOUNDS
#define ORN_INT_BOUNDS_END
#endif
/// @}
