/// Values read from the bytes of an input, and blocks of memory without slack.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

namespace fuzz {

/// A code point as its one or two code units.
inline void append(std::wstring& text, unsigned int codePoint) {
    if (codePoint > 0xFFFF) {
        text += static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        codePoint = 0xDC00 + (codePoint & 0x3FF);
    }
    text += static_cast<wchar_t>(codePoint);
}

/// Options are taken from the end of the input, so that what stands before them can be a text as it is.
class Input {
public:
    Input(unsigned char const* bytes, std::size_t size) noexcept : bytes_{bytes}, left_{size} {}

    /// From 0 to count - 1; always 0 when nothing is left.
    unsigned int option(unsigned int count) noexcept { return left_ == 0 ? 0 : bytes_[--left_] % count; }

    /// The last bytes as an input by themselves.
    Input last(std::size_t count) noexcept {
        count = std::min(count, left_);
        left_ -= count;
        return {bytes_ + left_, count};
    }

    /// All that is left.
    std::string bytes() const { return {reinterpret_cast<char const*>(bytes_), left_}; }

    /// All that is left, of UTF-8 any text, of other bytes anything, unpaired surrogates too.
    std::wstring text() const {
        std::wstring result;
        for (std::size_t p = 0; p != left_;) {
            unsigned int const lead = bytes_[p++];
            std::size_t const more = lead < 0xC0 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
            if (more > left_ - p) break;
            unsigned int value = more == 0 ? lead : lead & (0x3Fu >> more);
            for (std::size_t i = 0; i != more; ++i) value = value << 6 | (bytes_[p++] & 0x3Fu);
            append(result, std::min(value, 0x10FFFFu));
        }
        return result;
    }

private:
    unsigned char const* bytes_;
    std::size_t left_;
};

/// A copy in a block of its own of exactly that size, so that every step over its end is seen.
template <typename T>
class Exact {
public:
    explicit Exact(std::size_t size) : block_{new T[size]}, size_{size} {}
    explicit Exact(std::basic_string<T> const& text) : Exact{text.size()} {
        std::copy(text.begin(), text.end(), block_.get());
    }

    T* data() const noexcept { return block_.get(); }
    std::size_t size() const noexcept { return size_; }

private:
    std::unique_ptr<T[]> block_;
    std::size_t size_;
};

}
