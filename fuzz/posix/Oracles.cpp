#include "fuzz/Oracles.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <utility>

#include <iconv.h>

char const* fuzz::codePage() {
    char const* const named = std::getenv("ORN_TEST_CODE_PAGE");
    return named == nullptr ? "UTF-8" : named;
}

std::optional<std::string> fuzz::converted(char const* to, char const* from, std::string_view bytes) {
    using Converter = std::unique_ptr<void, decltype(&iconv_close)>;
    static std::map<std::pair<std::string, std::string>, Converter> converters;
    auto place = converters.find({to, from});
    if (place == converters.end())
        place = converters.emplace(std::pair{to, from}, Converter{iconv_open(to, from), iconv_close}).first;
    iconv_t const converter = place->second.get();
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    std::string result(8 * bytes.size() + 8, '\0'), source{bytes};
    char *in = source.data(), *out = result.data();
    std::size_t inLeft = source.size(), outLeft = result.size();
    if (iconv(converter, &in, &inLeft, &out, &outLeft) != 0) return std::nullopt;
    result.resize(result.size() - outLeft);
    return result;
}
