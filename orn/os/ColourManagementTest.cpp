#include "orn/os/ColourManagement.h"

#include "tests/support/CacheFolder.h"
#include "tests/support/IccProfile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

namespace os = ORN::os;

TEST(ColourManagement, TheStandardProfileIsThereWhateverLiesInItsPlace) {
    CacheFolder const cache;
    namespace fs = std::filesystem;
    fs::path const folder = fs::path{cache.name()} / "orn", file = folder / "sRGB.icc";
    auto const put = [](fs::path const& place, std::string const& text) { std::ofstream{place} << text; };
    auto const standard = [] {
        DWORD size = 0;
        EXPECT_TRUE(os::standardProfile(nullptr, size));
        std::wstring name(size / 2, L'\0');
        EXPECT_TRUE(os::standardProfile(name.data(), size));
        HPROFILE const profile = os::openProfile({os::ProfileKind::fileName, name.c_str(), size});
        os::ProfileHeader header{};
        EXPECT_TRUE(profile != nullptr && os::profileHeader(profile, header));
        if (profile != nullptr) os::closeProfile(profile);
        return header.colourSpace;
    };
    std::function<void()> const states[] = {
        [] {},
        [] {},
        [&] { put(file, "junk"); },
        [&] { fs::resize_file(file, fs::file_size(file) + 1); },
        [&] { fs::resize_file(file, fs::file_size(file) / 2); },
        [&] { fs::remove(file), fs::create_directories(file / "in the way"); },
        [&] { fs::remove_all(folder), put(folder, "a file"); },
    };
    for (auto const& prepare : states) {
        fs::create_directories(folder);
        prepare();
        EXPECT_EQ(standard(), 0x52474220u) << &prepare - states;
    }
}

TEST(ColourManagement, AProfileIsAsLongAsItSaysWhateverStandsBehindItInItsFile) {
    TemporaryFolder const folder;
    icc::Bytes const bytes = icc::profile(icc::tags(icc::power(0x200)));
    std::wstring const name = folder.put("a.icc", bytes + "more");
    os::ProfileSource const source{os::ProfileKind::fileName, name.c_str(), static_cast<DWORD>(2 * name.size() + 2)};
    HPROFILE const profile = os::openProfile(source);
    DWORD size = 0;
    os::profileBytes(profile, nullptr, size);
    EXPECT_EQ(size, bytes.size());
    os::closeProfile(profile);
#if defined(__linux__)
    // So long a file that its length is the profile's again when it is counted in 32 bits.
    std::filesystem::resize_file(folder.path() / "a.icc", 0x1'0000'0000 + bytes.size());
    EXPECT_EQ(os::openProfile(source), nullptr);
#endif
}

TEST(ColourManagement, AMissingProfileMakesNoTransform) {
    icc::Bytes const bytes = icc::profile(icc::tags(icc::power(0x200)));
    HPROFILE const profile = os::openProfile({os::ProfileKind::memory, bytes.data(), static_cast<DWORD>(bytes.size())});
    HPROFILE const incomplete[] = {profile, nullptr};
    EXPECT_EQ(os::createTransform(incomplete, 2, 1), nullptr);
    DWORD size = 2;
    wchar_t one = L'x';
    EXPECT_FALSE(os::profileElement(profile, 0x77747074, &one, size) || os::standardProfile(&one, size = 2));
    EXPECT_EQ(one, L'x') << "a buffer that is too small stays as it is";
    os::closeProfile(profile);
}

}
