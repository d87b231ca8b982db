#include "orn/text/TextWriter.h"

#include "orn/foundation/Error.h"
#include "orn/text/RawFileImp.h"
#include "tests/support/Faults.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <optional>

using namespace ORN;

namespace {

std::unique_ptr<TextWriter> open(TemporaryFolder const& folder) {
    return std::unique_ptr<TextWriter>{TextWriter::create(folder / L"file", textCreate, encUTF8)};
}

// The disk gets full at write k and has room again when the call is made again.
TEST(TextWriterFailures, NothingIsLostWrittenTwiceOrBehindAHole) {
    TemporaryFolder const folder;
    for (int spared = 0; spared < 12; ++spared)
        for (bool const deleted : {false, true}) {
            std::string expected = "\xEF\xBB\xBF";
            auto writer = open(folder);
            auto const put = [&](int number) {
                if (number % 50 == 7) return writer->flush();
                std::string const line =
                    std::to_string(number) + std::string(static_cast<std::size_t>(number % 40), 'x');
                writer->writeLine({line.begin(), line.end()});
                expected += line + "\r\n";
            };
            std::optional<faults::Refuse> refuse{std::in_place, "fwrite", spared};
            for (int number = 0; number < 600; ++number) try {
                    put(number);
                } catch (OrnError const&) {
                    if (deleted) break;
                    refuse.reset();
                    put(number);
                }
            if (deleted) {
                writer.reset();
                EXPECT_TRUE(expected.starts_with(folder.get("file"))) << spared;
            } else {
                writer->close();
                ASSERT_TRUE(folder.get("file") == expected) << spared;
            }
        }
}

// Takes only the bytes for which there is room.
struct SmallDisk : MemoryWriter {
    void write(void const* buffer, std::uint64_t count) override {
        std::uint64_t const taken = std::min(count, room - bytes.size());
        MemoryWriter::write(buffer, taken);
        if (taken != count) throw RawWriteError{L"full", taken};
    }
    std::uint64_t room = 0;
};

TEST(TextWriterFailures, ATextThatFitsIntoTheBufferCanBeWrittenAgain) {
    std::wstring const text = std::wstring(60, L'x') + L"\u20AC\u20AC";
    std::string expected;
    for (int i = 0; i < 40; ++i) expected += std::string(60, 'x') + "\xE2\x82\xAC\xE2\x82\xAC\r\n";
    for (std::uint64_t room = 900; room < 1100; ++room) {
        SmallDisk raw;
        raw.room = room;
        std::unique_ptr<TextWriter> const writer{TextWriter::create(raw, encUTF8, false)};
        for (int i = 0; i < 40; ++i)
            if (thrown([&] { writer->writeLine(text); }) != L"nothing") {
                raw.room = 5000;
                EXPECT_EQ(thrown([&] { writer->writeLine(text); }), L"nothing") << room;
            }
        writer->flush();
        ASSERT_EQ(raw.bytes, expected) << room;
    }
}

TEST(TextWriterFailures, BehindTheHeadOfALongTextNothingFollows) {
    TemporaryFolder const folder;
    for (int spared = 0; spared < 3; ++spared) {
        auto writer = open(folder);
        writer->writeLine(L"before");
        std::wstring const told = [&] {
            faults::Refuse const refuse{"fwrite", spared};
            return thrown([&] { writer->write(std::wstring(60000, L'x')); });
        }();
        EXPECT_NE(told, L"nothing");
        EXPECT_EQ(thrown([&] { writer->write(L"behind"); }), told);
        EXPECT_EQ(thrown([&] { writer->flush(); }), told);
        EXPECT_EQ(thrown([&] { writer->close(); }), told);
        writer.reset();
        std::string const bytes = folder.get("file");
        EXPECT_GT(bytes.size(), 10000u);
        EXPECT_TRUE(("\xEF\xBB\xBF"
                     "before\r\n" +
                     std::string(60000, 'x'))
                        .starts_with(bytes))
            << spared;
    }
}

}
