#include "orn/os/ColourManagement.h"

#include "orn/os/ErrorText.h"
#include "tests/support/CacheFolder.h"
#include "tests/support/IccProfile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

namespace os = ORN::os;

os::ProfileSource inMemory(icc::Bytes const& bytes) {
    return {os::ProfileKind::memory, bytes.data(), static_cast<DWORD>(bytes.size())};
}

os::ProfileSource inFile(std::wstring const& name) {
    return {os::ProfileKind::fileName, name.c_str(), static_cast<DWORD>(2 * (name.size() + 1))};
}

TEST(ColourManagement, AnOpenProfileGivesItsElementsAndHeaderAsTheyAreStored) {
    icc::Bytes const bytes = icc::profile(icc::tags(icc::power(0x200)));
    TemporaryFolder const folder;
    std::wstring const name = folder.put("plain.icc", bytes);
    for (os::ProfileSource const& source : {inMemory(bytes), inFile(name)}) {
        HPROFILE const profile = os::openProfile(source);
        ASSERT_NE(profile, nullptr);
        DWORD size = 0;
        EXPECT_FALSE(os::profileElement(profile, 0x646D6E64, nullptr, size) && size != 0);
        os::profileElement(profile, 0x77747074, nullptr, size);
        icc::Bytes white(size, '\0');
        EXPECT_TRUE(os::profileElement(profile, 0x77747074, white.data(), size));
        EXPECT_EQ(white, icc::xyz({0.9642, 1, 0.8249}));
        os::ProfileHeader header{};
        EXPECT_TRUE(os::profileHeader(profile, header));
        EXPECT_EQ(header.connectionSpace, 0x58595A20u);
        os::closeProfile(profile);
    }
    folder.removeAll();
    EXPECT_EQ(os::openProfile(inFile(name)), nullptr);
    EXPECT_TRUE(os::lastError() == 2 || os::lastError() == 3) << os::lastError();

    DWORD tooSmall = 2;
    wchar_t one = L'x';
    EXPECT_FALSE(os::standardProfile(&one, tooSmall));
    EXPECT_EQ(one, L'x');
}

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
        HPROFILE const profile = os::openProfile(inFile(name.c_str()));
        os::ProfileHeader header{};
        EXPECT_TRUE(profile != nullptr && os::profileHeader(profile, header));
        if (profile != nullptr) os::closeProfile(profile);
        return header.colourSpace;
    };
    std::function<void()> const states[] = {
        [] {},
        [] {},
        [&] { put(file, "junk"); },
        [&] {
            std::ofstream{file, std::ios::app} << "more";
        },
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

TEST(ColourManagement, ATransformOutlivesItsProfiles) {
    icc::Bytes const square = icc::profile(icc::tags(icc::power(0x200)));
    icc::Bytes const linear = icc::profile(icc::tags(icc::power(0x100)));
    HPROFILE const profiles[] = {os::openProfile(inMemory(square)), os::openProfile(inMemory(linear))};
    HPROFILE const incomplete[] = {profiles[0], nullptr};
    EXPECT_EQ(os::createTransform(incomplete, 2, 1), nullptr);
    HTRANSFORM const transform = os::createTransform(profiles, 2, 1);
    for (HPROFILE const profile : profiles) os::closeProfile(profile);
    ASSERT_NE(transform, nullptr);
    os::DeviceColour const in{32768, 65535, 0, {}};
    os::DeviceColour out{};
    EXPECT_TRUE(os::translateColours(transform, &in, 1, &out));
    EXPECT_NEAR(out.red, 16384, 40);  // x·x/65535
    EXPECT_NEAR(out.green, 65535, 40);
    EXPECT_NEAR(out.blue, 0, 40);
    os::deleteTransform(transform);
}

}
