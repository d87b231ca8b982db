#include "orn/text/CSVParser.h"

#include "orn/text/CSVReader.h"
#include "tests/support/Faults.h"

using namespace ORN;

namespace {

std::wstring const wide(200, L'w');

TEST(CSVParserFailures, MemoryRunningOutLeavesAParserThatStartsAfresh) {
    std::wstring const header = L"name,\"" + wide + L"\"\n", columns = wide + L",name";
    std::wstring const first = wide + L",\"" + wide, second = wide + L"\"," + wide + L"\n", next = L"a," + wide + L"\n";
    using Fields = std::vector<std::wstring>;
    Fields const expected{wide + wide, wide}, afresh{L"a", wide};
    EXPECT_GT(faults::failEveryAllocation([&] {
                  std::unique_ptr<CSVParser> const parser{CSVParser::create(columns)};
                  Fields fields;
                  for (auto const* text : {&header, &first, &second}) parser->parse(fields, *text);
                  EXPECT_TRUE(fields == expected);
              }),
              6);
    // The same parser goes on, whichever allocation failed.
    for (long number = 0; number < 8; ++number) {
        std::unique_ptr<CSVParser> const parser{CSVParser::create()};
        Fields fields;
        try {
            faults::AllocationFails const fails{number};
            parser->parse(fields, first);
            parser->parse(fields, second);
        } catch (std::bad_alloc const&) {}
        while (!parser->parse(fields, next)) {}
        EXPECT_EQ(fields, afresh) << number;
    }
}

TEST(CSVParserFailures, RowsOfOneKindCostNoAllocation) {
    std::wstring text;
    for (int i = 0; i < 100; ++i) text += L"some field of a length,\"a quoted \"\"field\"\" of a length\",7,\n";
    CSVReader rows{text};
    std::unique_ptr<CSVParser> const parser{CSVParser::create()};
    std::vector<std::wstring> fields, row;
    auto const next = [&] { return parser->parse(fields, text) && rows.read(row); };
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(next());
    faults::AllocationFails const fails{0};
    int count = 3;
    while (next()) ++count;
    EXPECT_EQ(count, 100);
    EXPECT_FALSE(fails.happened());
}

}
