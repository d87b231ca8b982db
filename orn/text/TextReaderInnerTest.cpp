#include "orn/text/TextReader.h"

#include "orn/foundation/Error.h"
#include "tests/support/Faults.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"

using namespace ORN;

namespace {

TEST(TextReaderFailures, ACallThatFailsLosesNothing) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "one line\n");
    for (char const* call : {"fopen", "fread"}) {
        faults::Refuse const refuse{call};
        EXPECT_THROW(static_cast<void>(TextReader::create(name)), OrnError) << call;
        EXPECT_EQ(refuse.refusals(), 1);
    }
    std::unique_ptr<TextReader> const reader{TextReader::create(name)};
    std::wstring line;
    {
        faults::Refuse const refuse{"fread"};
        EXPECT_THROW(static_cast<void>(reader->readLine(line)), OrnError);
    }
    EXPECT_TRUE(reader->readLine(line));
    EXPECT_EQ(line, L"one line");
    faults::Refuse const refuse{"fclose"};
    EXPECT_THROW(reader->close(), OrnError);
    EXPECT_NO_THROW(reader->close());
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

// A call of the raw reader fails in the midst of a line, a character or a line end, and the next one does not.
TEST(TextReaderFailures, ALineThatAFailureInterruptedIsReadWhole) {
    class Failing : public MemoryReader {
    public:
        Failing(std::string const& bytes, int sound) : MemoryReader{bytes, 1}, sound_{sound} {}
        std::int64_t read(void* buffer, std::uint64_t count) override {
            if (sound_-- == 0) throw OrnError{L"broken"};
            return MemoryReader::read(buffer, count);
        }

    private:
        int sound_;
    };
    std::string const bytes = "first\r\nsecond \xE2\x82\xAC\r\rfourth\n\nlast\r";
    auto const lines = [&](int sound, int& failures) {
        Failing raw{bytes, sound};
        std::unique_ptr<TextReader> const reader{TextReader::create(raw, encUTF8)};
        std::wstring all;
        for (std::wstring line;;) try {
                if (!reader->readLine(line)) return all;
                all += line + L'|';
            } catch (OrnError const&) {
                ++failures;
                EXPECT_EQ(line, L"");
            }
    };
    int failures = 0;
    std::wstring const whole = lines(-1, failures);
    EXPECT_EQ(whole, L"first|second \u20ac||fourth||last|");
    int const calls = static_cast<int>(bytes.size()) + 1;
    for (int sound = 0; sound != calls; ++sound) EXPECT_EQ(lines(sound, failures), whole) << sound;
    EXPECT_EQ(failures, calls);
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
