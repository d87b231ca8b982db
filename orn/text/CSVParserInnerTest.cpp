#include "orn/text/CSVParser.h"

#include "orn/text/CSVReader.h"
#include "tests/support/Faults.h"

#include <gmock/gmock.h>

#include <memory>

using namespace ORN;
using testing::ElementsAre;

namespace {

std::wstring const wide(200, L'w');

TEST(CSVParserFailures, MemoryRunningOutLeavesAParserThatStartsAfresh) {
    std::wstring const header = L"name,\"" + wide + L"\"\n", first = wide + L",\"" + wide,
                       second = wide + L"\"," + wide + L"\n";
    std::wstring const columns = wide + L",name";
    std::vector<std::wstring> const expected{wide + wide, wide};
    long const before = faults::liveBlocks();
    int const failures = faults::failEveryAllocation(
        [&] {
            std::unique_ptr<CSVParser> const parser{CSVParser::create(columns)};
            std::vector<std::wstring> fields;
            for (auto const* text : {&header, &first, &second}) parser->parse(fields, *text);
            EXPECT_TRUE(fields == expected);
        },
        [&](bool) { EXPECT_EQ(faults::liveBlocks(), before); });
    EXPECT_GT(failures, 6);

    // The same parser goes on, whichever allocation failed.
    for (long number = 0; number < 8; ++number) {
        std::unique_ptr<CSVParser> const parser{CSVParser::create()};
        std::vector<std::wstring> fields;
        try {
            faults::AllocationFails const fails{number};
            parser->parse(fields, first);
            parser->parse(fields, second);
        } catch (std::bad_alloc const&) {}
        std::vector<std::wstring> others;
        std::wstring const next = L"a," + wide + L"\n";
        while (!parser->parse(others, next)) {}
        EXPECT_THAT(others, ElementsAre(L"a", wide)) << number;
    }
}

TEST(CSVParserFailures, RowsOfOneKindCostNoAllocation) {
    std::wstring text;
    for (int i = 0; i < 100; ++i) text += L"some field of a length,\"a quoted \"\"field\"\" of a length\",7,\n";
    CSVReader reader{text, L"nothing"};
    CSVReader rows{text};
    std::unique_ptr<CSVParser> const parser{CSVParser::create()};
    std::vector<std::wstring> fields, row;
    for (int i = 0; i < 3; ++i) {
        parser->parse(fields, text);
        rows.read(row);
    }
    faults::AllocationFails const fails{0};
    int count = 3;
    while (parser->parse(fields, text)) ++count;
    for (int i = 3; i < 100; ++i) rows.read(row);
    EXPECT_EQ(count, 100);
    EXPECT_FALSE(fails.happened());
}

}
