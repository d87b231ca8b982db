/// Names of objects for diagnosis, by run-time type and address: `TypeName@address` and, with a number,
/// `TypeName#number@address`. The address has lower-case hexadecimal digits, the number decimal ones. The type's name comes
/// from the compiler, without the words const, volatile, class and struct.
///
/// An object whose class has virtual functions has the same name through each of its bases: that of the whole object. A null
/// pointer gives its static type and the address 0.
#pragma once

#include "orn/Export.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace DebugStream {

/// The name from a type and the address of the whole object, without and with a number.
/// @{
ORN_API std::wstring typedPtrA(std::type_info const& type, void const volatile* address);
ORN_API std::wstring typedIdPtrA(std::type_info const& type, void const volatile* address, std::int64_t id);
/// @}

/// Write the names of the functions above into a stream.
/// @{
ORN_API void debugPtrA(std::wostream& stream, std::type_info const& type, void const volatile* address);
ORN_API void debugIdPtrA(std::wostream& stream, std::type_info const& type, void const volatile* address,
                         std::int64_t id);
/// @}

/// The two parts of an object's name.
struct TypedPointer {
    std::type_info const& type;    ///< The run-time type.
    void const volatile* address;  ///< The address of the whole object.

    /// Reads the type from the object, unless the pointer is null.
    template <typename T>
    explicit TypedPointer(T* object) : type{typeOf(object)}, address{whole(object)} {}

private:
    template <typename T>
    static std::type_info const& typeOf(T* object) {
        if constexpr (std::is_polymorphic_v<T>)
            if (object != nullptr) return typeid(*object);
        return typeid(T);
    }

    template <typename T>
    static void const volatile* whole(T* object) {
        if constexpr (std::is_polymorphic_v<T>)
            return dynamic_cast<void const volatile*>(object);
        else
            return object;
    }
};

/// The name of the object at a pointer, which may be null.
/// @{
template <typename T>
std::wstring typedPtrA(T* object) {
    TypedPointer const named{object};
    return typedPtrA(named.type, named.address);
}
template <typename T>
std::wstring typedIdPtrA(T* object, std::int64_t id) {
    TypedPointer const named{object};
    return typedIdPtrA(named.type, named.address, id);
}
/// @}

/// The name of an object.
/// @{
template <typename T>
std::wstring typedPtrRefA(T const& object) {
    return typedPtrA(std::addressof(object));
}
template <typename T>
std::wstring typedIdPtrRefA(T const& object, std::int64_t id) {
    return typedIdPtrA(std::addressof(object), id);
}
/// @}

/// Write the names of objects into a stream.
/// @{
template <typename T>
void debugPtrA(std::wostream& stream, T* object) {
    TypedPointer const named{object};
    debugPtrA(stream, named.type, named.address);
}
template <typename T>
void debugIdPtrA(std::wostream& stream, T* object, std::int64_t id) {
    TypedPointer const named{object};
    debugIdPtrA(stream, named.type, named.address, id);
}
template <typename T>
void debugPtrRefA(std::wostream& stream, T const& object) {
    debugPtrA(stream, std::addressof(object));
}
template <typename T>
void debugIdPtrRefA(std::wostream& stream, T const& object, std::int64_t id) {
    debugIdPtrA(stream, std::addressof(object), id);
}
/// @}

}
