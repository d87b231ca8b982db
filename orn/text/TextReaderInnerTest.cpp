#include "orn/text/TextReader.h"

#include "orn/foundation/Error.h"
#include "tests/support/Faults.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"

using namespace ORN;

namespace {

TEST(TextReaderFailures, ACallThatFailsLosesNothing) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "one\n");
    for (char const* call : {"fopen", "fread", "fseek", "ftell"}) {
        faults::Refuse const refuse{call};
        EXPECT_THROW(TextReader::create(name), OrnError) << call;
        EXPECT_EQ(refuse.refusals(), 1);
    }
    std::unique_ptr<TextReader> const reader{TextReader::create(name)};
    std::wstring line;
    {
        faults::Refuse const refuse{"fread"};
        EXPECT_THROW(reader->readLine(line), OrnError);
    }
    EXPECT_TRUE(reader->readLine(line));
    EXPECT_EQ(line, L"one");
    faults::Refuse const refuse{"fclose"};
    EXPECT_THROW(reader->close(), OrnError);
    EXPECT_NO_THROW(reader->close());
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

TEST(TextReaderFailures, MemoryRunningOutLosesNothing) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "\xEF\xBB\xBF" + std::string(3000, 'x') + "\nlast");
    std::wstring const expected(3000, L'x');
    EXPECT_GT(faults::failEveryAllocation([&] {
                  std::unique_ptr<TextReader> const reader{TextReader::create(name)};
                  std::wstring line;
                  EXPECT_TRUE(reader->readLine(line));
                  EXPECT_TRUE(line == expected);
                  EXPECT_TRUE(reader->readLine(line));
              }),
              4);
    EXPECT_NO_THROW(folder.removeAll());
}

TEST(TextReaderFailures, AnOrdinaryLineCostsNoAllocation) {
    MemoryReader raw{std::string(2000, '\n') + "a line of some length\n and another one, a little longer\n"};
    std::unique_ptr<TextReader> const reader{TextReader::create(raw, encUTF8)};
    std::wstring line;
    line.reserve(100);
    faults::AllocationFails const fails{0};
    while (reader->readLine(line)) {}
    EXPECT_FALSE(fails.happened());
}

}
