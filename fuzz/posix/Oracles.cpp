#include "fuzz/Oracles.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <utility>

#include <curl/curl.h>
#include <iconv.h>
#include <lcms2.h>

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

std::optional<std::wstring> fuzz::describedByLcms(std::string const& bytes) {
    cmsHPROFILE const profile = cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size()));
    if (profile == nullptr) return std::nullopt;
    std::optional<std::wstring> text;
    if (auto const* const texts = static_cast<cmsMLU const*>(cmsReadTag(profile, cmsSigProfileDescriptionTag))) {
        char language[3] = {}, country[3] = {};
        cmsMLUtranslationsCodes(texts, 0, language, country);
        std::wstring buffer(bytes.size() + 1, L'\0');
        cmsMLUgetWide(texts, language, country, buffer.data(),
                      static_cast<cmsUInt32Number>(buffer.size() * sizeof(wchar_t)));
        text = buffer.substr(0, buffer.find(L'\0'));
    }
    cmsCloseProfile(profile);
    return text;
}

std::optional<std::string> fuzz::normalised(std::string const& url) {
    CURLU* const handle = curl_url();
    char* text = nullptr;
    std::optional<std::string> result;
    if (curl_url_set(handle, CURLUPART_URL, url.c_str(), 0) == CURLUE_OK &&
        curl_url_get(handle, CURLUPART_URL, &text, 0) == CURLUE_OK)
        result = text;
    curl_free(text);
    curl_url_cleanup(handle);
    return result;
}

std::optional<std::pair<std::wstring, std::wstring>> fuzz::splitBySystem(std::wstring const&) { return std::nullopt; }
