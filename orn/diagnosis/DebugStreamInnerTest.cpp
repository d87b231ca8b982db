#include "orn/diagnosis/TextWriterBufImp.h"

#include "orn/text/Encoding.h"
#include "orn/text/RawFileImp.h"
#include "tests/support/MemoryStreams.h"

#include <gtest/gtest.h>

#include <cstdio>
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

/// Refuses calls from one number on, until it is told otherwise; takes the head of the first.
class Disk : public MemoryWriter {
public:
    explicit Disk(int sound) : sound_{sound} {}
    void write(void const* buffer, std::uint64_t count) override {
        if (sound_-- <= 0 && full) {
            std::uint64_t const head = taken_ ? 0 : count / 2;
            taken_ = true;
            MemoryWriter::write(buffer, head);
            throw ORN::RawWriteError{L"full", head};
        }
        MemoryWriter::write(buffer, count);
    }
    bool full = true;

private:
    int sound_;
    bool taken_ = false;
};

// The disk gets full at write k and has room again after some lines.
TEST(TextWriterBuf, AFullDiskIsToldOnceAndInTheFileAsSoonAsThereIsRoom) {
    for (int sound = 0; sound != 6; ++sound)
        for (int const lines : {1, 2, 40, 200}) {
            Disk disk{sound};
            std::unique_ptr<ORN::TextWriter> const writer{ORN::TextWriter::create(disk, ORN::encUTF8, false)};
            DebugStream::TextWriterBuf buffer;
            buffer.setWriter(writer.get());
            std::wostream stream{&buffer};
            std::size_t written = 0;
            auto const line = [&](int number) {
                stream << L"line " << number << L" of some length" << L'\n';
                written += 21 + std::to_string(number).size();
                EXPECT_TRUE(stream.good());
            };
            int number = 0;
            do {
                line(number++);
                if (number % 30 == 0) stream.flush();
            } while (buffer.takeFailure() == nullptr);
            for (int more = 0; more != lines; ++more) line(number++);
            disk.full = false;
            line(number++);
            stream.flush();
            EXPECT_EQ(buffer.takeFailure(), nullptr) << "told once";

            // Whole lines in their order, a cut one at most, the notice, and whole lines again.
            std::istringstream file{disk.bytes};
            std::size_t kept = 0, dropped = 0;
            int next = 0;
            for (std::string text; std::getline(file, text);) {
                std::string const wanted = "line " + std::to_string(next) + " of some length\r";
                if (text == wanted) {
                    kept += text.size();
                    ++next;
                } else if (std::size_t count = 0;
                           std::sscanf(text.c_str(), "[%zu characters were dropped]", &count) == 1) {
                    EXPECT_EQ(dropped, 0u) << "told again";
                    dropped = count;
                    next = number - 1;
                } else {
                    EXPECT_EQ(wanted.substr(0, text.size() - 1) + "\r", text);
                    EXPECT_EQ(dropped, 0u);
                    kept += text.size() - 1;
                }
            }
            EXPECT_EQ(next, number) << "the last line is there";
            // A line that lacked nothing but its end looks whole.
            EXPECT_LE(kept + dropped - written, 1u) << sound << " " << lines;
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
