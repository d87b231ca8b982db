// std::exception is a text and whether it is owned: 24 bytes.
#pragma once
#include <stddef.h>

#define _HAS_EXCEPTIONS 1

namespace std {

class exception {
public:
    exception() noexcept;
    explicit exception(char const* text) noexcept;
    exception(exception const& other) noexcept;
    exception& operator=(exception const& other) noexcept;
    virtual ~exception() noexcept;
    virtual char const* what() const;

private:
    struct {
        char const* text;
        bool owned;
    } data_;
};

class bad_exception : public exception {};

class bad_alloc : public exception {
public:
    bad_alloc() noexcept;
};

class bad_array_new_length : public bad_alloc {};

}
