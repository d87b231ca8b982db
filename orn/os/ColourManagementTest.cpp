#include "orn/os/ColourManagement.h"

#include "orn/os/ErrorText.h"
#include "tests/support/IccProfile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

namespace os = ORN::os;

os::ProfileSource inMemory(icc::Bytes const& bytes) {
    return {os::ProfileKind::memory, bytes.data(), static_cast<DWORD>(bytes.size())};
}

os::ProfileSource inFile(std::wstring const& name) {
    return {os::ProfileKind::fileName, name.c_str(), static_cast<DWORD>(2 * (name.size() + 1))};
}

// What a call in two steps gives; empty when it fails.
template <typename Call>
std::string whole(Call call) {
    DWORD size = 0;
    call(nullptr, size);
    std::string bytes(size, '\0');
    return size != 0 && call(bytes.data(), size) ? bytes.substr(0, size) : std::string{};
}

TEST(ColourManagement, AnOpenProfileGivesItsBytesHeaderAndElementsAsTheyAreStored) {
    icc::Tags tags = icc::tags(icc::power(0x200));
    tags.emplace_back("desc", icc::description("plain"));
    icc::Bytes const bytes = icc::profile(tags);
    TemporaryFolder const folder;
    std::wstring const name = folder.put("plain.icc", bytes);
    for (os::ProfileSource const& source : {inMemory(bytes), inFile(name)}) {
        HPROFILE const profile = os::openProfile(source);
        ASSERT_NE(profile, nullptr);
        auto const element = [profile](DWORD tag) {
            return whole([=](void* buffer, DWORD& size) { return os::profileElement(profile, tag, buffer, size); });
        };
        EXPECT_EQ(whole([=](void* to, DWORD& size) { return os::profileBytes(profile, to, size); }), bytes);
        EXPECT_EQ(element(0x64657363), icc::description("plain"));
        EXPECT_EQ(element(0x77747074), icc::xyz({0.9642, 1, 0.8249}));
        EXPECT_EQ(element(0x646D6E64), "");

        os::ProfileHeader header{};
        EXPECT_TRUE(os::profileHeader(profile, header));
        EXPECT_EQ(header.profileClass, 0x6D6E7472u);
        EXPECT_EQ(header.colourSpace, 0x52474220u);
        EXPECT_EQ(header.connectionSpace, 0x58595A20u);
        os::closeProfile(profile);
    }
    folder.removeAll();
    EXPECT_EQ(os::openProfile(inFile(name)), nullptr);
    EXPECT_EQ(os::lastError() == 2 || os::lastError() == 3, true) << os::lastError();
}

TEST(ColourManagement, WhatIsNoProfileDoesNotOpen) {
    icc::Bytes const good = icc::profile(icc::tags(icc::power(0x100)));
    icc::Bytes unsigned_ = good;
    unsigned_.replace(36, 4, "none");
    for (icc::Bytes const& bytes : {icc::Bytes{}, good.substr(0, 100), unsigned_, icc::Bytes(300, 'x')})
        EXPECT_EQ(os::openProfile(inMemory(bytes)), nullptr) << bytes.size();
    TemporaryFolder const folder;
    EXPECT_EQ(os::openProfile(inFile(folder.name())), nullptr);
}

TEST(ColourManagement, TheStandardProfileIsAFile) {
    DWORD size = 0;
    os::standardProfile(nullptr, size);
    ASSERT_GT(size, 2u);
    std::wstring path(size, L'\0');
    ASSERT_TRUE(os::standardProfile(path.data(), size));
    HPROFILE const profile = os::openProfile({os::ProfileKind::fileName, path.data(), size});
    ASSERT_NE(profile, nullptr);
    os::ProfileHeader header{};
    EXPECT_TRUE(os::profileHeader(profile, header));
    EXPECT_EQ(header.colourSpace, 0x52474220u);
    os::closeProfile(profile);

    DWORD tooSmall = 2;
    wchar_t one = L'x';
    EXPECT_FALSE(os::standardProfile(&one, tooSmall));
    EXPECT_EQ(one, L'x');
}

TEST(ColourManagement, ATransformOutlivesItsProfiles) {
    icc::Bytes const square = icc::profile(icc::tags(icc::power(0x200)));
    icc::Bytes const linear = icc::profile(icc::tags(icc::power(0x100)));
    HPROFILE const profiles[] = {os::openProfile(inMemory(square)), os::openProfile(inMemory(linear))};
    HTRANSFORM const transform = os::createTransform(profiles, 2, 1);
    for (HPROFILE const profile : profiles) os::closeProfile(profile);
    ASSERT_NE(transform, nullptr);

    os::DeviceColour const in[2] = {{32768, 65535, 0, {}}, {16384, 0, 49152, {}}};
    os::DeviceColour out[2] = {};
    EXPECT_TRUE(os::translateColours(transform, in, 2, out));
    // x·x/65535
    EXPECT_NEAR(out[0].red, 16384, 40);
    EXPECT_NEAR(out[0].green, 65535, 40);
    EXPECT_NEAR(out[0].blue, 0, 40);
    EXPECT_NEAR(out[1].red, 4096, 40);
    EXPECT_NEAR(out[1].blue, 36864, 40);
    os::deleteTransform(transform);
}

}
