#include "orn/foundation/TextWriterBufImp.h"

#include "orn/foundation/Error.h"
#include "tests/support/MemoryStreams.h"

#include <gtest/gtest.h>

namespace {

/// A stream as the debug stream is, over memory.
struct Written {
    MemoryWriter memory;
    std::unique_ptr<ORN::TextWriter> writer{ORN::TextWriter::create(memory, ORN::encUTF8, false)};
    DebugStream::TextWriterBuf buffer;
    std::wostream stream{&buffer};

    explicit Written(std::size_t room = 1000) : memory{room} {
        buffer.setWriter(writer.get());
        stream.exceptions(std::ios_base::badbit);
    }
    std::string bytes() {
        stream.flush();
        return memory.bytes;
    }
};

TEST(TextWriterBuf, WritesCharactersOneByOneAndHoldsALeadingSurrogateForItsPartner) {
    Written written;
    written.stream << L"a\r\nb" << wchar_t{0xD83D};
    EXPECT_EQ(written.memory.bytes, "");
    EXPECT_EQ(written.bytes(), "a\r\n\r\nb") << "a CR and a LF that come apart are two ends";
    EXPECT_EQ(written.memory.flushes, 1);
    written.stream << wchar_t{0xDE00} << L"\xD83D\xDE00z";
    EXPECT_EQ(written.bytes(), "a\r\n\r\nb\xF0\x9F\x98\x80\xF0\x9F\x98\x80z");
}

TEST(TextWriterBuf, RefusesALoneSurrogateAndGoesOnOnceCleared) {
    wchar_t const texts[][3] = {{0xD83D, L'x'}, {0xDE00}, {0xD83D, 0xD83D}};
    for (auto const& text : texts) {
        Written written;
        written.stream << L"before";
        EXPECT_THROW(written.stream << text, ORN::OrnError);
        EXPECT_TRUE(written.stream.bad());
        written.stream.clear();
        written.stream << L"after";
        EXPECT_EQ(written.bytes(), "beforeafter");
    }
}

TEST(TextWriterBuf, DropsEverythingWithoutAWriterAndLetsFailuresEscape) {
    Written written, full{0};
    EXPECT_EQ(written.buffer.sputc(L'a'), 0u);
    written.buffer.setWriter(nullptr);
    written.stream << L"nothing" << std::flush;
    EXPECT_TRUE(written.stream.good());
    written.buffer.setWriter(written.writer.get());
    EXPECT_EQ(written.bytes(), "a");
    full.stream << L"text";
    EXPECT_THROW(full.stream.flush(), std::runtime_error);
}

}
