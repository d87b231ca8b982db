#include "orn/text/TextReader.h"

#include "orn/foundation/Error.h"
#include "tests/support/MemoryStreams.h"

#include <gtest/gtest.h>

#include <memory>

using namespace ORN;

namespace {

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

}
