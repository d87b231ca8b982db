#include "fuzz/Oracles.h"

#include <cstdlib>
#include <map>
#include <utility>

#include <iconv.h>

char const* fuzz::codePage() {
    char const* const named = std::getenv("ORN_TEST_CODE_PAGE");
    return named == nullptr ? "UTF-8" : named;
}

std::optional<std::string> fuzz::converted(char const* to, char const* from, std::string_view bytes) {
    static std::map<std::pair<std::string, std::string>, iconv_t> converters;
    auto const [place, isNew] = converters.try_emplace({to, from});
    if (isNew) place->second = iconv_open(to, from);
    iconv(place->second, nullptr, nullptr, nullptr, nullptr);
    std::string result(8 * bytes.size() + 8, '\0'), source{bytes};
    char *in = source.data(), *out = result.data();
    std::size_t inLeft = source.size(), outLeft = result.size();
    if (iconv(place->second, &in, &inLeft, &out, &outLeft) != 0) return std::nullopt;
    result.resize(result.size() - outLeft);
    return result;
}
