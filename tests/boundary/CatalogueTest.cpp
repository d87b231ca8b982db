#include "orn/text/Printf.h"
#include "ornmsg/ornmsg.h"

#include <gtest/gtest.h>

namespace {

/// The message tells all that its sender passes, in the order given here.
template <typename... Arguments>
void expectTold(unsigned int number, std::vector<std::wstring> const& texts, Arguments... arguments) {
    std::wstring const message = stringPrintf(ornMsg(number).c_str(), arguments...);
    std::size_t place = 0;
    for (std::wstring const& text : texts) {
        place = message.find(text, place);
        ASSERT_NE(place, std::wstring::npos) << number << ": " << message;
    }
}

TEST(Catalogue, EveryNumberInUseTakesItsSendersArguments) {
    expectTold(218, {L"no uuid"}, L"no uuid");
    expectTold(248, {L"some/file"}, L"some/file");
    for (unsigned int const number : {249u, 250u, 251u, 252u, 253u})
        expectTold(number, {L"some/file", L"the reason"}, L"some/file", "the reason");
    expectTold(254, {L"U+DC00", L"some/file"}, L"U+DC00", L"some/file");
    EXPECT_EQ(stringPrintf(ornMsg(271).c_str(), L"sRGB"), L"sRGB");
    for (unsigned int const number : {278u, 280u})
        expectTold(number, {L"http://x/", L"the reason"}, L"http://x/", L"the reason");
    expectTold(283, {L"not closed"});
    expectTold(282, {L"maker", L"model", L"description"}, L"maker", L"model", L"description");
}

TEST(Catalogue, AnUnknownNumberSaysItself) {
    EXPECT_EQ(ornMsg(0), L"Message 0");
    EXPECT_EQ(ornMsg(4294967295u), L"Message 4294967295");
}

}
