/// Objects named for diagnosis by their run-time type and address, on one line: `TypeName@address` and, with a number,
/// `TypeName#number@address`. The address is in lower-case hexadecimal digits, the number in decimal ones; the type's name
/// is what the compiler tells, without the words const, volatile, class and struct.
///
/// An object whose class has virtual functions is named by its whole self, through whichever base it is reached; a null
/// pointer has its static type and the address 0.
#pragma once

#include "orn/Export.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace DebugStream {

/// Of an object's run-time type and the address of the whole object; and a number.
/// @{
ORN_API std::wstring typedPtrA(std::type_info const& type, void const volatile* address);
ORN_API std::wstring typedIdPtrA(std::type_info const& type, void const volatile* address, std::int64_t id);
/// @}

/// The texts of the functions above, into a stream.
/// @{
ORN_API void debugPtrA(std::wostream& stream, std::type_info const& type, void const volatile* address);
ORN_API void debugIdPtrA(std::wostream& stream, std::type_info const& type, void const volatile* address,
                         std::int64_t id);
/// @}

/// What names an object.
struct TypedPointer {
    std::type_info const& type;    ///< the run-time type
    void const volatile* address;  ///< of the whole object

    /// Looks at the object, unless it is null.
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

/// Of the object at a pointer, which may be null.
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

/// The same, for the object itself.
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

/// The same texts, into a stream.
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
