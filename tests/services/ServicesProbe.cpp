// Asks for each service that a library of its own gives, and prints what comes of it, a line each.
#include "orn/colour/ColourProfile.h"
#include "orn/foundation/Error.h"
#include "orn/platform/RegistryKey.h"
#include "orn/text/Encoding.h"
#include "orn/text/Url.h"
#include "orn/threading/WindowMessage.h"

#include <cstdio>
#include <string>

namespace {

template <typename Service>
void use(Service service) {
    try {
        service();
        std::printf("served\n");
    } catch (ORN::OrnError const& error) {
        std::printf("%s\n", utf8(std::wstring{error.wWhat()}).c_str());
    }
}

}

int main() {
    use([] { downloadUrlToCache(L"file:///dev/null/file"); });
    use([] { (void)ORN::ColourProfile::create(ORN::ColourProfileId::sRGB); });
    use([] {
        RegReadKey key{HKEY_CURRENT_USER, L"key", 0};
        throw ORN::OrnError{key.errorMessage()};
    });
    use([] { ORN::OrnPostMessage(nullptr, 0, 0, 0); });
}
