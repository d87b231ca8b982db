#include "orn/diagnosis/DebugStream.h"

#include "orn/diagnosis/TextWriterBufImp.h"
#include "orn/os/Types.h"
#include "orn/text/RawFileImp.h"
#include "orn/threading/Lock.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/Tally.h"

#include <gtest/gtest.h>

#include <climits>
#include <regex>
#include <sstream>
#include <thread>

namespace {

/// A stream as the debug stream is, over memory.
template <typename Memory = MemoryWriter>
struct Written {
    Memory memory;
    std::unique_ptr<ORN::TextWriter> writer{ORN::TextWriter::create(memory, ORN::encUTF8, false)};
    DebugStream::TextWriterBuf buffer;
    std::wostream stream{&buffer};

    explicit Written(auto... arguments) : memory{arguments...} { buffer.setWriter(writer.get()); }
    std::string bytes() {
        stream.flush();
        return memory.bytes;
    }
};

TEST(TextWriterBuf, WritesCharactersOneByOneAndHoldsALeadingSurrogateForItsPartner) {
    Written<> written;
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
        Written<> written;
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
            Written<Disk> written{sound};
            auto& [disk, writer, buffer, stream] = written;
            std::string all;
            int number = 0, roomAt = -1;
            auto const line = [&, &disk = disk, &stream = stream] {
                stream << L"line " << number;
                if (number == roomAt) disk.full = false;
                stream << L" of " << std::wstring(19, L'\u20ac') << L'\n';
                all += "line " + std::to_string(number++) + " of " + std::string(19, '*') + '\n';
                if (number % 30 == 0) stream.flush();
                EXPECT_TRUE(stream.good());
            };
            do line();
            while (buffer.takeFailure() == nullptr);
            roomAt = number + lines - 1;  // in the midst of the last line that is dropped
            for (int more = 0; more != lines; ++more) line();
            if (lines != 2) line();
            // The whole text; or its head, how much was dropped, and its tail from the beginning of a line on.
            std::string const euro = "\xE2\x82\xAC", bytes = std::regex_replace(written.bytes(), std::regex{"\r"}, "");
            std::string const file = std::regex_replace(bytes, std::regex{euro}, "*");
            std::regex const notice{"([^[]*)\\[(\\d+) characters were dropped\\]\n((?:line [^[]*)?)"};
            std::smatch parts;
            EXPECT_EQ(buffer.takeFailure(), nullptr) << "once";
            if (!std::regex_match(file, parts, notice)) {
                EXPECT_EQ(file, all);
                continue;
            }
            std::string const head = parts[1], tail = parts[3];
            EXPECT_TRUE(all.starts_with(head.substr(0, head.size() - 1)) && head.ends_with('\n') &&
                        all.ends_with(tail));
            EXPECT_EQ(tail.empty(), lines == 2) << "the first line that begins when there is room is written";
            // The end of the line that was cut stands in the head, whether it was dropped or not.
            EXPECT_LE(head.size() + std::stoul(parts[2]) + tail.size() - all.size(), 1u) << sound << " " << lines;
        }
}

TEST(TextWriterBuf, DropsEverythingWithoutAWriter) {
    Written<> written;
    EXPECT_EQ(written.buffer.sputc(L'a'), 0u);
    written.buffer.setWriter(nullptr);
    written.stream << L"nothing" << std::flush;
    EXPECT_TRUE(written.stream.good());
    written.buffer.setWriter(written.writer.get());
    EXPECT_EQ(written.bytes(), "a");
}

TEST(DebugStream, WritesIntegersInBothBases) {
    EXPECT_EQ(DebugStream::decimal(-1) + DebugStream::decimal(INT_MIN), L"-1-2147483648");
    EXPECT_EQ(DebugStream::hexadecimal(-1) + DebugStream::hexadecimal(0x1AF) + DebugStream::hexadecimal(0),
              L"ffffffff1af0");
}

TEST(DebugStream, FlushWaitsForThoseWhoWrite) {
    DebugStream::stream();
    Tally flushed;
    std::thread flusher;
    {
        ExclusiveLock const writing{DebugStream::lock()};
        flusher = std::thread{[&] {
            DebugStream::flush();
            ++flushed;
        }};
        // Long enough for a flush that does not wait.
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
        EXPECT_EQ(flushed, 0);
    }
    flusher.join();
    EXPECT_EQ(flushed, 1);
    EXPECT_EQ(DebugStream::lock(), 0);
}

TEST(DebugStream, NamesTheCallingThread) {
    std::wostringstream here, again, there;
    here << DebugStream::GCTID{};
    again << DebugStream::GCTID{};
    std::thread{[&] { there << DebugStream::GCTID{}; }}.join();
    EXPECT_TRUE(here.str() == again.str() && here.str() != there.str());
    EXPECT_EQ((here.str() + there.str()).find_first_not_of(L"0123456789"), std::wstring::npos);
}

}
