#include "orn/text/Printf.h"
#include "ornmsg/ornmsg.h"

#include <gtest/gtest.h>

namespace {

TEST(Catalogue, EveryNumberInUseTakesItsSendersArguments) {
    EXPECT_NE(stringPrintf(ornMsg(218).c_str(), L"no uuid").find(L"no uuid"), std::wstring::npos);
    EXPECT_NE(stringPrintf(ornMsg(248).c_str(), L"some/file").find(L"some/file"), std::wstring::npos);
    for (unsigned int const number : {249u, 250u, 251u, 252u, 253u}) {
        std::wstring const text = stringPrintf(ornMsg(number).c_str(), L"some/file", "the reason");
        EXPECT_LT(text.find(L"some/file"), text.find(L"the reason")) << number;
        EXPECT_NE(text.find(L"the reason"), std::wstring::npos) << number;
    }
    std::wstring const unwritable = stringPrintf(ornMsg(254).c_str(), L"U+DC00", L"some/file");
    EXPECT_NE(unwritable.find(L"U+DC00"), std::wstring::npos);
    EXPECT_NE(unwritable.find(L"some/file"), std::wstring::npos);
    EXPECT_EQ(stringPrintf(ornMsg(271).c_str(), L"sRGB"), L"sRGB");
    for (unsigned int const number : {278u, 280u}) {
        std::wstring const text = stringPrintf(ornMsg(number).c_str(), L"http://x/", L"the reason");
        EXPECT_LT(text.find(L"http://x/"), text.find(L"the reason")) << number;
        EXPECT_NE(text.find(L"the reason"), std::wstring::npos) << number;
    }
    std::wstring const profile = stringPrintf(ornMsg(282).c_str(), L"maker", L"model", L"description");
    EXPECT_LT(profile.find(L"maker"), profile.find(L"model"));
    EXPECT_LT(profile.find(L"model"), profile.find(L"description"));
    EXPECT_NE(profile.find(L"description"), std::wstring::npos);
}

TEST(Catalogue, AnUnknownNumberSaysItself) {
    EXPECT_EQ(ornMsg(0), L"Message 0");
    EXPECT_EQ(ornMsg(4294967295u), L"Message 4294967295");
}

}
