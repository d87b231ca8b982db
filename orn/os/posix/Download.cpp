#include "orn/os/Download.h"

#include "orn/os/Fault.h"
#include "orn/os/Status.h"
#include "orn/os/posix/CacheFile.h"
#include "orn/os/posix/NativeName.h"
#include "orn/os/posix/ServiceLibrary.h"
#include "orn/os/posix/web/UrlText.h"
#include "orn/unicode/CodePoints.h"

#include <curl/curl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <uuid/uuid.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <memory>
#include <string_view>
#include <system_error>

namespace ORN::os {

namespace {

// clang-format off
#define ORN_LIBCURL_FUNCTIONS(use) \
    use(curl_easy_cleanup) use(curl_easy_getinfo) use(curl_easy_init) use(curl_easy_perform) \
    use(curl_easy_setopt) use(curl_free) use(curl_global_init) use(curl_url) use(curl_url_cleanup) \
    use(curl_url_get) use(curl_url_set)
// clang-format on
ORN_SERVICE_LIBRARY(libcurl, ORN_LIBCURL_FUNCTIONS)

#define ORN_LIBUUID_FUNCTIONS(use) use(uuid_generate_sha1) use(uuid_get_template) use(uuid_unparse_lower)
ORN_SERVICE_LIBRARY(libuuid, ORN_LIBUUID_FUNCTIONS)

/// Windows' codes for what happens to downloads; facility 7 carries the system's own codes.
enum class Failure : DWORD {
    none = 0,
    invalidUrl = 0x800C0002,
    cannotConnect = 0x800C0004,
    hostNotFound = 0x800C0005,
    objectNotFound = 0x800C0006,
    noData = 0x800C0007,
    brokenOff = 0x800C0008,
    authenticationRequired = 0x800C0009,
    timedOut = 0x800C000B,
    unknownProtocol = 0x800C000D,
    insecure = 0x800C000E,
    redirectFailed = 0x800C0014,
    invalidCertificate = 0x800C0019,
    unspecified = 0x80004005,
    outOfMemory = 0x8007000E,
};

HRESULT statusOf(Failure failure) noexcept { return static_cast<HRESULT>(failure); }

HRESULT fileFailure(int error) noexcept {
    return static_cast<HRESULT>(0x80070000 | windowsError(error, errorWriteFault));
}

/// Starts libcurl once and never ends it: a program that did not start it itself would lose it, too.
bool startCurl() noexcept {
    static bool const ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return ready;
}

/// A connection that ends early must not end the program.
class NoPipeSignal {
public:
    NoPipeSignal() noexcept {
        sigset_t pending;
        sigemptyset(&pipe_);
        sigaddset(&pipe_, SIGPIPE);
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipe_, &before_);
    }
    ~NoPipeSignal() {
        timespec const now{};
        // A signal of this transfer goes; one that waited before it stays.
        if (!wasPending_)
            while (sigtimedwait(&pipe_, nullptr, &now) < 0 && errno == EINTR) {}
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    NoPipeSignal(NoPipeSignal const&) = delete;
    NoPipeSignal& operator=(NoPipeSignal const&) = delete;

private:
    sigset_t pipe_, before_;
    bool wasPending_;
};

struct Release {
    void operator()(CURL* transfer) const noexcept { curl_easy_cleanup(transfer); }
    void operator()(CURLU* url) const noexcept { curl_url_cleanup(url); }
    void operator()(char* text) const noexcept { curl_free(text); }
};
using Address = std::unique_ptr<CURLU, Release>;
using Transfer = std::unique_ptr<CURL, Release>;
using Text = std::unique_ptr<char, Release>;

/// The URL in ASCII. Characters beyond it are escaped as UTF-8, and so are blanks and control characters.
std::string asciiForm(std::wstring_view url) {
    std::string result;
    wchar_t const* const end = url.data() + url.size();
    for (wchar_t const* p = url.data(); p != end;) {
        unsigned int const value = unicode::readUnits(p, end);
        unsigned char bytes[unicode::longestUtf8];
        unsigned char const* const bytesEnd =
            unicode::writeUtf8(unicode::isCharacter(value) ? value : unicode::replacement, bytes);
        for (unsigned char const* byte = bytes; byte != bytesEnd; ++byte) {
            if (*byte > ' ' && *byte < 0x7F)
                result += static_cast<char>(*byte);
            else
                web::appendEscape(result, *byte);
        }
    }
    return result;
}

Text partOf(CURLU* address, CURLUPart part, unsigned int flags) {
    char* text = nullptr;
    curl_url_get(address, part, &text, flags);
    return Text{text};
}

/// The name that a URL always has in the cache: the same for the same URL, and ending as the URL's path does.
std::string nameInCache(std::string const& url, CURLU* address) {
    uuid_t id;
    uuid_generate_sha1(id, *uuid_get_template("url"), url.data(), url.size());
    char idText[UUID_STR_LEN];  // tells apart URLs whose paths end alike
    uuid_unparse_lower(id, idText);

    Text const path = partOf(address, CURLUPART_PATH, 0);
    // The end of the path, which has the extension; a file name takes no more than 255 bytes.
    std::string_view last = path != nullptr ? path.get() : "";
    last.remove_prefix(last.rfind('/') + 1);
    last.remove_prefix(last.size() - std::min<std::size_t>(last.size(), 64));
    std::string name = std::string{idText} + '-';
    for (char const c : last) {
        bool const isPlain =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '.' || c == '-';
        name += isPlain ? c : '_';
    }
    return name;
}

struct Received {
    NewFile file;
    int error = 0;

    static std::size_t write(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
        auto& received = *static_cast<Received*>(self);
        // Any other count than the one given ends the transfer.
        if (ORN_OS_REFUSED("write")) {
            received.error = ENOSPC;
            return 0;
        }
        if (received.file.write(bytes, size * count)) return size * count;
        received.error = errno;
        return 0;
    }
};

/// What an answer stands for that libcurl takes for a success. A file has the number 0.
Failure failureOf(long answer) {
    switch (answer) {
        case 206: return Failure::brokenOff;  // a part, although nobody asked for one
        case 301:
        case 302:
        case 303:
        case 307:
        case 308: return Failure::redirectFailed;  // to nowhere, or libcurl would have followed
        default: return answer < 300 ? Failure::none : Failure::noData;
    }
}

Failure failureOf(CURL* transfer, CURLcode code) {
    long answer = 0, redirections = 0;
    curl_easy_getinfo(transfer, CURLINFO_RESPONSE_CODE, &answer);
    curl_easy_getinfo(transfer, CURLINFO_REDIRECT_COUNT, &redirections);
    switch (code) {
        case CURLE_OK: return failureOf(answer);
        // Of these two, a redirection may be the cause as well as the URL itself.
        case CURLE_URL_MALFORMAT: return redirections > 0 ? Failure::redirectFailed : Failure::invalidUrl;
        case CURLE_UNSUPPORTED_PROTOCOL: return answer >= 300 ? Failure::redirectFailed : Failure::unknownProtocol;
        case CURLE_TOO_MANY_REDIRECTS: return Failure::redirectFailed;
        case CURLE_COULDNT_RESOLVE_PROXY:
        case CURLE_COULDNT_RESOLVE_HOST: return Failure::hostNotFound;
        case CURLE_COULDNT_CONNECT: return Failure::cannotConnect;
        case CURLE_OPERATION_TIMEDOUT: return Failure::timedOut;
        case CURLE_FILE_COULDNT_READ_FILE: return Failure::objectNotFound;
        case CURLE_PEER_FAILED_VERIFICATION: return Failure::invalidCertificate;
        case CURLE_SSL_CONNECT_ERROR: return Failure::insecure;
        case CURLE_OUT_OF_MEMORY: return Failure::outOfMemory;
        case CURLE_HTTP_RETURNED_ERROR:
            if (answer == 401 || answer == 403 || answer == 407) return Failure::authenticationRequired;
            return answer == 404 || answer == 410 ? Failure::objectNotFound : Failure::noData;
        default: return Failure::brokenOff;
    }
}

/// Folders, devices and the like have no content to download.
bool isReadable(CURLU* address) {
    Text const scheme = partOf(address, CURLUPART_SCHEME, 0);
    if (scheme == nullptr || std::string_view{scheme.get()} != "file") return true;
    Text const path = partOf(address, CURLUPART_PATH, CURLU_URLDECODE);
    struct stat status;
    return path != nullptr && ::stat(path.get(), &status) == 0 && S_ISREG(status.st_mode);
}

HRESULT receive(CURLU* address, Received& received) {
    Transfer const transfer{curl_easy_init()};
    if (transfer == nullptr) return statusOf(Failure::outOfMemory);
    // Seconds without progress.
    long const stalled = ORN_OS_REFUSED("patience") ? 1 : 60;
    CURL* const t = transfer.get();
    curl_easy_setopt(t, CURLOPT_CURLU, address);
    curl_easy_setopt(t, CURLOPT_NOSIGNAL, 1L);  // signals belong to the program
    curl_easy_setopt(t, CURLOPT_PROTOCOLS_STR, "http,https,file");
    // Nobody on the web may name a file of this machine.
    curl_easy_setopt(t, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(t, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(t, CURLOPT_MAXREDIRS, 20L);
    // Without this the server's page about an error would count as the content.
    curl_easy_setopt(t, CURLOPT_FAILONERROR, 1L);
    // Both limits are in seconds. The limit of speed below is in bytes a second.
    curl_easy_setopt(t, CURLOPT_CONNECTTIMEOUT, 30L);
    curl_easy_setopt(t, CURLOPT_TIMEOUT, 3600L);
    // A slow server is waited for, a silent one is not.
    curl_easy_setopt(t, CURLOPT_LOW_SPEED_LIMIT, 1000L);
    curl_easy_setopt(t, CURLOPT_LOW_SPEED_TIME, stalled);
    curl_easy_setopt(t, CURLOPT_USERAGENT, "orn");
    curl_easy_setopt(t, CURLOPT_WRITEFUNCTION, &Received::write);
    curl_easy_setopt(t, CURLOPT_WRITEDATA, &received);
    CURLcode const code = curl_easy_perform(t);
    return received.error != 0 ? fileFailure(received.error) : statusOf(failureOf(t, code));
}

}

HRESULT downloadToCache(wchar_t const* url, std::wstring& file) {
    if (ORN_OS_REFUSED("URLDownloadToCacheFile")) return statusOf(Failure::unspecified);
    for (ServiceLibrary* const library : {&libcurl, &libuuid})
        if (!library->open()) return static_cast<HRESULT>(library->missing());
    Address const address{startCurl() ? curl_url() : nullptr};
    if (address == nullptr) return statusOf(Failure::outOfMemory);
    std::string const ascii = asciiForm(url);
    switch (curl_url_set(address.get(), CURLUPART_URL, ascii.c_str(), 0)) {
        case CURLUE_OK: break;
        case CURLUE_OUT_OF_MEMORY: return statusOf(Failure::outOfMemory);
        case CURLUE_UNSUPPORTED_SCHEME: return statusOf(Failure::unknownProtocol);
        default: return statusOf(Failure::invalidUrl);
    }
    if (!isReadable(address.get())) return statusOf(Failure::objectNotFound);

    std::string const folder = cacheFolder() + "/orn/downloads";
    std::string const path = folder + '/' + nameInCache(ascii, address.get());
    std::wstring wide = wideName(path);
    if (wide.empty()) return fileFailure(ENOENT);

    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) return fileFailure(error.value());
    // Each download writes a file of its own, which takes its place in the cache as a whole: several may have one URL.
    NoPipeSignal const noSignal;
    Received received{NewFile{folder}};
    if (!received.file.isMade()) return fileFailure(errno);
    if (HRESULT const status = receive(address.get(), received); status < 0) return status;
    if (!received.file.place(path)) return fileFailure(errno);
    file = std::move(wide);
    return statusOf(Failure::none);
}

}
