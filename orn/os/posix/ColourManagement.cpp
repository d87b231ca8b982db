#include "orn/os/ColourManagement.h"

#include "orn/os/CodePage.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Fault.h"
#include "orn/os/File.h"
#include "orn/os/Status.h"
#include "orn/os/posix/CacheFile.h"
#include "orn/os/posix/ServiceLibrary.h"

#include <lcms2.h>
#include <lcms2_plugin.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace ORN::os {

namespace {

// clang-format off
#define ORN_LIBLCMS2_FUNCTIONS(use) \
    use(cmsCloseProfile) use(cmsCreate_sRGBProfile) use(cmsCreateMultiprofileTransform) use(cmsDeleteTransform) \
    use(cmsDoTransform) use(cmsFormatterForColorspaceOfProfile) use(cmsFormatterForPCSOfProfile) \
    use(cmsGetColorSpace) use(cmsGetDeviceClass) use(cmsGetPCS) use(cmsGetProfileIOhandler) \
    use(cmsGetTransformInputFormat) use(cmsGetTransformOutputFormat) use(cmsOpenIOhandlerFromStream) \
    use(cmsOpenProfileFromIOhandlerTHR) use(cmsOpenProfileFromMem) use(cmsReadRawTag) use(cmsSaveProfileToMem)
// clang-format on
ORN_SERVICE_LIBRARY(liblcms2, ORN_LIBLCMS2_FUNCTIONS)

bool fail(DWORD error) noexcept {
    setLastError(error);
    return false;
}

bool failByErrno(int error, DWORD otherwise) noexcept { return fail(windowsError(error, otherwise)); }

// Where no faults are planted, the macro drops its argument.
bool isRefused([[maybe_unused]] char const* call) noexcept {
    if (!ORN_OS_REFUSED(call)) return false;
    setLastError(errorAccessDenied);
    return true;
}

/// Whether the buffer can take what is needed; leaves the need behind.
bool fits(void const* buffer, DWORD& size, std::size_t needed) noexcept {
    bool const enough = buffer != nullptr && size >= needed;
    size = static_cast<DWORD>(needed);
    return enough || fail(errorInsufficientBuffer);
}

// The header of every profile, and in it the time at which it was made.
std::size_t const iccHeaderSize = 128, iccDateAt = 24, iccDateSize = 12;

struct FileClose {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

struct ProfileClose {
    void operator()(void* profile) const noexcept { cmsCloseProfile(profile); }
};

std::vector<unsigned char> standardBytes() {
    std::unique_ptr<void, ProfileClose> const profile{cmsCreate_sRGBProfile()};
    cmsUInt32Number size = 0;
    if (profile == nullptr || !cmsSaveProfileToMem(profile.get(), nullptr, &size)) return {};
    std::vector<unsigned char> bytes(size);
    if (!cmsSaveProfileToMem(profile.get(), bytes.data(), &size) || size < iccHeaderSize) return {};
    bytes.resize(size);
    // The time of making becomes that of the format's version, so that the bytes are the same every time.
    unsigned char const made[iccDateSize] = {0x07, 0xDA, 0, 1, 0, 1};  // 2010, January 1st
    std::copy(std::begin(made), std::end(made), bytes.begin() + iccDateAt);
    return bytes;
}

/// Whether the file is there and holds just these bytes.
bool holds(std::string const& place, std::vector<unsigned char> const& bytes) {
    std::unique_ptr<std::FILE, FileClose> const file{std::fopen(place.c_str(), "rbe")};
    // One byte more than there should be, so that a longer file is found out.
    std::vector<unsigned char> found(bytes.size() + 1);
    return file != nullptr && std::fread(found.data(), 1, found.size(), file.get()) == bytes.size() &&
           std::equal(bytes.begin(), bytes.end(), found.begin());
}

/// A file of this process's own, which has no place in any folder, kept while the library is loaded.
class MemoryFile {
public:
    ~MemoryFile() {
        std::lock_guard const lock{mutex_};
        if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
    }

    bool hold(std::vector<unsigned char> const& bytes, std::string& place) {
        std::lock_guard const lock{mutex_};
        if (descriptor_ < 0) {
            int const made = ORN_OS_REFUSED("memfd_create") ? -1 : memfd_create("sRGB.icc", MFD_CLOEXEC);
            if (made < 0) return false;
            if (::write(made, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
                ::close(made);
                return false;
            }
            descriptor_ = made;
        }
        // Every opening of this name has a position in the file of its own.
        place = "/proc/self/fd/" + std::to_string(descriptor_);
        return true;
    }

private:
    std::mutex mutex_;
    int descriptor_ = -1;
};

constinit MemoryFile memoryFile;

// Keeps the profile as a file in the user's cache and replaces a damaged one. Processes that do so at the same time write
// the same bytes to files of their own; the one renamed last stays. Without a place in the cache it is held in memory.
bool standardFile(std::string& place) {
    std::vector<unsigned char> const bytes = standardBytes();
    if (bytes.empty()) return fail(errorInvalidProfile);
    std::string const folder = cacheFolder() + "/orn";
    place = folder + "/sRGB.icc";
    if (holds(place, bytes)) return true;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    int refusal = error.value();
    if (!error) {
        NewFile file{folder};
        if (file.isMade() && file.write(bytes.data(), bytes.size()) && file.place(place)) return true;
        // errno is read before the file's destructor runs, because that may change it.
        refusal = errno;
    }
    return memoryFile.hold(bytes, place) || failByErrno(refusal, errorWriteFault);
}

std::wstring nameIn(ProfileSource const& source) {
    // The size counts two bytes a character, also where wchar_t has four, and may reach beyond the zero.
    auto const* const characters = static_cast<wchar_t const*>(source.data);
    return {characters, std::find(characters, characters + source.size / 2, L'\0')};
}

cmsHPROFILE openFileProfile(ProfileSource const& source) {
    std::FILE* const file = openFile(nameIn(source), L"rb");
    if (file == nullptr) {
        failByErrno(errno, errorTooManyOpenFiles);  // the code for reasons that Windows has none for
        return nullptr;
    }
    // A profile counts its bytes in 32 bits, and lcms2 would take what is left of a longer file's length in them.
    struct stat status {};
    if (::fstat(::fileno(file), &status) == 0 && status.st_size > std::numeric_limits<DWORD>::max()) {
        std::fclose(file);
        fail(errorInvalidProfile);
        return nullptr;
    }
    cmsIOHANDLER* const handler = cmsOpenIOhandlerFromStream(nullptr, file);
    if (handler == nullptr) std::fclose(file);
    // The handler closes the file, and the profile its handler, also when the file holds no profile.
    cmsHPROFILE const profile = handler != nullptr ? cmsOpenProfileFromIOhandlerTHR(nullptr, handler) : nullptr;
    if (profile == nullptr) fail(errorInvalidProfile);
    return profile;
}

bool isConnectionSpace(cmsColorSpaceSignature space) noexcept {
    return space == cmsSigXYZData || space == cmsSigLabData;
}

bool isLink(cmsHPROFILE profile) noexcept {
    cmsProfileClassSignature const kind = cmsGetDeviceClass(profile);
    return kind == cmsSigLinkClass || kind == cmsSigAbstractClass;
}

// Nothing beside the three channels of 16 bits: lcms2 has a fast way for these alone.
cmsUInt32Number const deviceFormat = TYPE_RGB_16;
static_assert(sizeof(DeviceColour) == 3 * sizeof(cmsUInt16Number));

cmsUInt32Number formatOf(cmsHPROFILE profile, bool connection) {
    cmsColorSpaceSignature const space = connection ? cmsGetPCS(profile) : cmsGetColorSpace(profile);
    if (space == cmsSigRgbData) return deviceFormat;
    // Two bytes a channel, and no floating-point numbers.
    return connection ? cmsFormatterForPCSOfProfile(profile, 2, FALSE)
                      : cmsFormatterForColorspaceOfProfile(profile, 2, FALSE);
}

}

bool standardProfile(wchar_t* path, DWORD& size) {
    if (isRefused("GetStandardColorSpaceProfile")) return false;
    if (!liblcms2.open()) return fail(liblcms2.missing());
    std::string place;
    if (!standardFile(place)) return false;
    std::wstring wide(place.size(), L'\0');
    int const length = static_cast<int>(place.size());
    wide.resize(static_cast<std::size_t>(multibyteToWide(place.data(), length, wide.data(), length)));
    if (wide.empty()) return false;
    // A question without a buffer has its answer now, and so is no failure.
    if (!fits(path, size, 2 * (wide.size() + 1))) return path == nullptr;
    std::copy_n(wide.c_str(), wide.size() + 1, path);
    return true;
}

HPROFILE openProfile(ProfileSource const& source) {
    if (isRefused("OpenColorProfile")) return nullptr;
    if (!liblcms2.open()) {
        fail(liblcms2.missing());
        return nullptr;
    }
    if (source.kind == ProfileKind::fileName) return openFileProfile(source);
    cmsHPROFILE const profile = cmsOpenProfileFromMem(source.data, source.size);
    if (profile == nullptr) fail(errorInvalidProfile);
    return profile;
}

void closeProfile(HPROFILE profile) noexcept { cmsCloseProfile(profile); }

bool profileBytes(HPROFILE profile, void* buffer, DWORD& size) {
    if (isRefused("GetColorProfileFromHandle")) return false;
    // lcms2 would save a profile with other bytes than it was read from. Its handler has the original ones.
    cmsIOHANDLER* const file = cmsGetProfileIOhandler(profile);
    // Behind the profile there may be more, which is none of it. A profile begins with its size, highest byte first.
    unsigned char first[4];
    if (!file->Seek(file, 0) || file->Read(file, first, sizeof first, 1) != 1) return fail(errorInvalidProfile);
    DWORD const named = DWORD{first[0]} << 24 | DWORD{first[1]} << 16 | DWORD{first[2]} << 8 | first[3];
    DWORD const whole = named >= iccHeaderSize ? std::min<DWORD>(named, file->ReportedSize) : file->ReportedSize;
    if (!fits(buffer, size, whole)) return buffer == nullptr;
    return (file->Seek(file, 0) && file->Read(file, buffer, size, 1) == 1) || fail(errorInvalidProfile);
}

bool profileHeader(HPROFILE profile, ProfileHeader& header) {
    if (isRefused("GetColorProfileHeader")) return false;
    header = {cmsGetDeviceClass(profile), cmsGetColorSpace(profile), cmsGetPCS(profile)};
    return true;
}

bool profileElement(HPROFILE profile, DWORD tag, void* buffer, DWORD& size) {
    if (isRefused("GetColorProfileElement")) return false;
    auto const signature = static_cast<cmsTagSignature>(tag);
    DWORD const stored = cmsReadRawTag(profile, signature, nullptr, 0);
    if (stored == 0) return fail(errorTagNotFound);
    if (!fits(buffer, size, stored)) return buffer == nullptr;
    return cmsReadRawTag(profile, signature, buffer, size) == stored || fail(errorInvalidProfile);
}

HTRANSFORM createTransform(HPROFILE const* profiles, DWORD count, DWORD intent) {
    if (isRefused("CreateMultiProfileTransform")) return nullptr;
    // Above the four intents of ICC lcms2 has some of its own.
    if (intent > INTENT_ABSOLUTE_COLORIMETRIC || std::count(profiles, profiles + count, nullptr) != 0) {
        fail(errorInvalidParameter);
        return nullptr;
    }

    // A device in the middle is where the colours go to and where they come from.
    std::vector<cmsHPROFILE> chain;
    for (DWORD i = 0; i != count; ++i) {
        chain.push_back(profiles[i]);
        if (i != 0 && i + 1 != count && !isLink(profiles[i])) chain.push_back(profiles[i]);
    }

    // The space at the end depends on the direction in which each profile is gone through.
    bool connection = false;
    cmsColorSpaceSignature space = cmsSigRgbData;
    for (std::size_t i = 0; i != chain.size(); ++i) {
        connection = isLink(chain[i]) || i == 0 || !isConnectionSpace(space);
        space = connection ? cmsGetPCS(chain[i]) : cmsGetColorSpace(chain[i]);
    }

    // The optimisation would cost accuracy. Without the cache any number of threads may use the transform.
    cmsHTRANSFORM const transform = cmsCreateMultiprofileTransform(
        chain.data(), static_cast<cmsUInt32Number>(chain.size()), formatOf(chain.front(), false),
        formatOf(chain.back(), connection), intent, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE);
    if (transform == nullptr) fail(errorInvalidColourSpace);
    return transform;
}

void deleteTransform(HTRANSFORM transform) noexcept { cmsDeleteTransform(transform); }

bool translateColours(HTRANSFORM transform, DeviceColour* colours, DWORD count) {
    if (isRefused("TranslateColors")) return false;
    bool const ofRGB =
        cmsGetTransformInputFormat(transform) == deviceFormat && cmsGetTransformOutputFormat(transform) == deviceFormat;
    if (!ofRGB) return fail(errorInvalidTransform);
    cmsDoTransform(transform, colours, colours, count);
    return true;
}

}
