// What another process does with services of the system. Exit code 0, or a number that tells what failed.
#include "orn/colour/ColourProfile.h"
#include "orn/diagnosis/DebugStream.h"
#include "orn/foundation/Error.h"
#include "orn/platform/RegistryKey.h"
#include "orn/text/Encoding.h"
#include "orn/text/Url.h"
#include "orn/threading/WindowMessage.h"

#include <grp.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

namespace {

HKEY const user = RegKey::currentUser();

int write(std::wstring const& prefix) {
    for (int number = 0; number < 100; ++number) {
        RegWriteKey const key{user, L"shared\\" + prefix};
        if (!key.setString(std::to_wstring(number), prefix + std::to_wstring(number))) return 1;
    }
    return 0;
}

/// Changes without end: trees that are made, filled and deleted, and a long value that goes with a number; each number
/// is printed once it is written.
int churn() {
    RegWriteKey const top{user, L"churn"};
    for (int number = 0;; ++number) {
        std::wstring const tree = L"tree" + std::to_wstring(number % 3);
        if (RegWriteKey const leaf{top, tree + L"\\a\\b\\c"}; !leaf.setString(L"leaf", tree)) return 1;
        std::wstring const text(20'000, static_cast<wchar_t>(L'a' + number % 26));
        if (!top.setString(L"value", std::to_wstring(number) + text)) return 2;
        std::printf("%d\n", number);
        std::fflush(stdout);
        if (!top.deleteSubKey(L"tree" + std::to_wstring((number + 1) % 3))) return 3;
    }
}

/// Parent and child use what the parent has opened, at the same time.
int forked() {
    RegWriteKey const key{user, L"forked"};
    if (!key.setString(L"before", L"fork")) return 1;
    pid_t const child = ::fork();
    std::wstring const own = child == 0 ? L"child" : L"parent";
    std::wstring text;
    int failed = key.getString(L"before", text) && text == L"fork" ? 0 : 2;
    for (int number = 0; number < 50 && failed == 0; ++number) {
        RegWriteKey const below{key, own};
        if (!below.setString(std::to_wstring(number), own) || !key.setString(own, L"done")) failed = 3;
    }
    if (child == 0) std::exit(failed);
    int status = 0;
    ::waitpid(child, &status, 0);
    return failed != 0 ? failed : status;
}

/// Reads and tries to write what the user has forbidden himself, and once he has allowed it. Root, who may do everything,
/// becomes the user of no rights first.
int onlyReading() {
    if (::geteuid() == 0 && (::setgroups(0, nullptr) != 0 || ::setgid(65534) != 0 || ::setuid(65534) != 0)) return 1;
    std::wstring text;
    RegReadKey const readable{user, L"key"};
    readable.getString(L"name", text);
    RegWriteKey writable{user, L"key"};
    std::printf("%s; %s\n", utf8(text).c_str(), utf8(writable.errorMessage()).c_str());
    if (writable.setString(L"name", L"changed") || RegWriteKey{user, L"new"}.valid()) return 2;
    if (!readable.getString(L"name", text)) return 3;
    for (char const* end : {"", "-wal", "-shm"})
        ::chmod((std::getenv("ORN_REGISTRY") + std::string{end}).c_str(), 0600);
    return RegWriteKey{user, L"key"}.setString(L"name", L"changed") ? 0 : 4;
}

/// With the rights of another user: what the environment says must lead to no file.
int privileged() {
    if (::getuid() == ::geteuid()) return 1;
    return RegWriteKey{user, L"key"}.valid() || DebugStream::isActive() ? 2 : 0;
}

template <typename Service>
void use(Service service) {
    try {
        service();
        std::printf("served\n");
    } catch (ORN::OrnError const& error) {
        std::printf("%s\n", utf8(std::wstring{error.wWhat()}).c_str());
    }
}

/// Asks for each service that a library of its own gives, and prints what comes of it, a line each.
int all() {
    use([] { downloadUrlToCache(L"file:///dev/null/file"); });
    use([] { (void)ORN::ColourProfile::create(ORN::ColourProfileId::sRGB); });
    use([] { throw ORN::OrnError{RegReadKey{user, L"key"}.errorMessage()}; });
    use([] { ORN::OrnPostMessage(nullptr, 0, 0, 0); });
    return 0;
}

}

int main(int, char** words) {
    std::map<std::string, std::function<int()>> const uses{{"write", [words] { return write(getWCS(words[2])); }},
                                                           {"churn", churn},
                                                           {"fork", forked},
                                                           {"only-reading", onlyReading},
                                                           {"privileged", privileged},
                                                           {"all", all}};
    return uses.at(words[1])();
}
