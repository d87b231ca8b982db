/// The C library's conversions, of whole texts and strictly.
#pragma once

#include <iconv.h>

#include <optional>
#include <string>
#include <string_view>

namespace fuzz {

class Iconv {
public:
    Iconv(char const* to, char const* from) : descriptor_{iconv_open(to, from)} {}
    ~Iconv() { iconv_close(descriptor_); }
    Iconv(Iconv const&) = delete;
    Iconv& operator=(Iconv const&) = delete;

    /// Nothing when some of it cannot be converted.
    std::optional<std::string> operator()(std::string_view bytes) const {
        iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
        std::string result(8 * bytes.size() + 8, '\0'), from{bytes};
        char *in = from.data(), *out = result.data();
        std::size_t inLeft = from.size(), outLeft = result.size();
        if (iconv(descriptor_, &in, &inLeft, &out, &outLeft) != 0) return std::nullopt;
        result.resize(result.size() - outLeft);
        return result;
    }

private:
    iconv_t descriptor_;
};

/// UTF-16 as iconv takes and gives it.
inline std::string littleEndian(std::wstring const& text) {
    std::string result;
    for (wchar_t const unit : text) {
        result += static_cast<char>(unit & 0xFF);
        result += static_cast<char>(unit >> 8);
    }
    return result;
}

}
