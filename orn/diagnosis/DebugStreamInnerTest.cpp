#include "orn/diagnosis/TextWriterBufImp.h"

#include "orn/text/Encoding.h"
#include "orn/text/RawFileImp.h"
#include "tests/support/MemoryStreams.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace {

/// A stream as the debug stream is, over memory.
struct Written {
    MemoryWriter memory;
    std::unique_ptr<ORN::TextWriter> writer{ORN::TextWriter::create(memory, ORN::encUTF8, false)};
    DebugStream::TextWriterBuf buffer;
    std::wostream stream{&buffer};

    Written() { buffer.setWriter(writer.get()); }
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

TEST(TextWriterBuf, WritesWhatIsNoCharacterAsAReplacement) {
    wchar_t const texts[][4] = {{0xD83D, L'x'}, {0xDE00, L'x'}, {0xD83D, 0xD83D, L'x'}};
    for (auto const& text : texts) {
        Written written;
        written.stream << L"before" << text << L"after";
        EXPECT_EQ(written.bytes(), std::string{"before\xEF\xBF\xBD"} + (text[2] ? "\xEF\xBF\xBD" : "") + "xafter");
        EXPECT_EQ(written.buffer.takeFailure(), nullptr);
    }
}

/// Gets full at one of its writes, of which it takes the head, and stays so until it is emptied.
class Disk : public MemoryWriter {
public:
    explicit Disk(int sound) : sound_{sound} {}
    void write(void const* buffer, std::uint64_t count) override {
        if (sound_-- > 0 || !full) return MemoryWriter::write(buffer, count);
        std::uint64_t const head = std::exchange(taken_, true) ? 0 : count / 2;
        MemoryWriter::write(buffer, head);
        throw ORN::RawWriteError{L"full", head};
    }
    bool full = true;

private:
    int sound_;
    bool taken_ = false;
};

TEST(TextWriterBuf, AFullDiskIsAFailureOnceAndInTheFileAsSoonAsThereIsRoom) {
    for (int sound = 0; sound != 6; ++sound)
        for (int const lines : {1, 2, 40, 200}) {
            Disk disk{sound};
            std::unique_ptr<ORN::TextWriter> const writer{ORN::TextWriter::create(disk, ORN::encUTF8, false)};
            DebugStream::TextWriterBuf buffer;
            buffer.setWriter(writer.get());
            std::wostream stream{&buffer};
            std::string all;
            int number = 0, roomAt = -1;
            auto const line = [&] {
                stream << L"line " << number;
                if (number == roomAt) disk.full = false;
                stream << L" of some length" << L'\n';
                all += "line " + std::to_string(number++) + " of some length\n";
                if (number % 30 == 0) stream.flush();
                EXPECT_TRUE(stream.good());
            };
            do line();
            while (buffer.takeFailure() == nullptr);
            roomAt = number + lines - 1;  // in the midst of the last line that is dropped
            for (int more = 0; more != lines; ++more) line();
            if (lines != 2) line();
            stream.flush();
            EXPECT_EQ(buffer.takeFailure(), nullptr) << "once";

            // The whole text; or its head, how much was dropped, and its tail from the beginning of a line on.
            std::string const file = std::regex_replace(disk.bytes, std::regex{"\r"}, "");
            std::regex const notice{"([^[]*)\\[(\\d+) characters were dropped\\]\n((?:line [^[]*)?)"};
            std::smatch parts;
            if (!std::regex_match(file, parts, notice)) {
                EXPECT_EQ(file, all);
                continue;
            }
            std::string const head = parts[1], tail = parts[3];
            EXPECT_TRUE(all.starts_with(head.substr(0, head.size() - 1)) && head.ends_with('\n') &&
                        all.ends_with(tail));
            // The end of the line that was cut stands in the head, whether it was dropped or not.
            EXPECT_LE(head.size() + std::stoul(parts[2]) + tail.size() - all.size(), 1u) << sound << " " << lines;
        }
}

TEST(TextWriterBuf, DropsEverythingWithoutAWriterAndWritesAQuestionMarkForWhatAnEncodingLacks) {
    Written written;
    EXPECT_EQ(written.buffer.sputc(L'a'), 0u);
    written.buffer.setWriter(nullptr);
    written.stream << L"nothing" << std::flush;
    EXPECT_TRUE(written.stream.good());
    written.buffer.setWriter(written.writer.get());
    EXPECT_EQ(written.bytes(), "a");

    std::unique_ptr<ORN::TextWriter> const multibyte{ORN::TextWriter::create(written.memory, ORN::encMultibyte, false)};
    written.buffer.setWriter(multibyte.get());
    std::wstring const text = L"\u0416\u4e00\xD83D\xDE00z";
    written.stream << text;
    std::string expected = "a";
    for (CodePointEnumerator e{text}; e; ++e) {
        std::wstring const character = *e;
        expected += getWCS(getMBS(character)) == character ? getMBS(character) : "?";
    }
    EXPECT_EQ(written.bytes(), expected);
    EXPECT_EQ(written.buffer.takeFailure(), nullptr);
}

}
