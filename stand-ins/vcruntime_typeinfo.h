// What typeid and dynamic_cast need.
#pragma once
#include <vcruntime_exception.h>

class type_info {
public:
    type_info(type_info const&) = delete;
    type_info& operator=(type_info const&) = delete;
    virtual ~type_info() noexcept;

    bool operator==(type_info const& other) const noexcept;
    bool before(type_info const& other) const noexcept;
    size_t hash_code() const noexcept;
    char const* name() const noexcept;
};

namespace std {

using ::type_info;

class bad_cast : public exception {
public:
    bad_cast() noexcept;
};

class bad_typeid : public exception {
public:
    bad_typeid() noexcept;
};

}
