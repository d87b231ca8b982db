#include "orn/text/RawFile.h"

#include "orn/text/RawFileImp.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <optional>

using namespace ORN;

namespace {

using Writer = std::unique_ptr<RawFileWriter>;

TEST(RawFileFailures, EveryRefusedCallGivesItsMessage) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "content");
    char byte;
    struct {
        char const* call;
        std::function<void(RawFileWriter&)> use;
        wchar_t const* says;
    } const cases[] = {
        {"fread", [&](RawFileWriter& file) { EXPECT_EQ(file.read(&byte, 1), 1); }, L"read"},
        {"fseek", [](RawFileWriter& file) { file.seek(2, 0); }, L"read"},
        {"ftell", [](RawFileWriter& file) { file.seek(0, 1); }, L"read"},
        {"fwrite", [](RawFileWriter& file) { file.write("x", 1), file.flush(); }, L"written"},
        {"fflush", [](RawFileWriter& file) { file.flush(); }, L"written"},
        {"fclose", [](RawFileWriter& file) { file.close(); }, L"closed"},
    };
    for (auto const& one : cases) {
        Writer const file{rawAppend(name)};
        {
            faults::Refuse const refuse{one.call};
            EXPECT_TRUE(thrown([&] {
                            one.use(*file);
                        }).starts_with(L"OrnError: The file \"" + name + L"\" cannot be " + one.says + L": "));
        }
        if (std::string{one.call} == "fclose") {
            EXPECT_NO_THROW(file->close()) << "it is closed all the same";
        } else {
            file->seek(0, 0);
            EXPECT_EQ(file->read(&byte, 1), 1) << "usable again after " << one.call;
        }
    }
    EXPECT_EQ(folder.get("file"), "contentx") << "what could not be written has not been lost";
}

// A disk that gets full at some write, and has room again for the next one.
TEST(RawFileFailures, NothingIsLostOrWrittenTwiceWhenACallIsMadeAgain) {
    TemporaryFolder const folder;
    for (int spared = 0; spared < 10; ++spared) {
        std::string expected;
        Writer const file{rawCreate(folder / L"file")};
        std::optional<faults::Refuse> refuse{std::in_place, "fwrite", spared};
        for (std::size_t const size : {1, 511, 512, 1024, 3000, 5, 300, 4000, 500, 501, 502, 503, 504, 505, 506, 507}) {
            std::string const piece(size, static_cast<char>('a' + expected.size() % 26));
            expected += piece;
            for (std::size_t done = 0;;) try {
                    file->write(piece.data() + done, size - done);
                    break;
                } catch (RawWriteError const& error) {
                    done += error.taken();
                    refuse.reset();
                } catch (OrnError const&) {
                    refuse.reset();
                }
        }
        refuse.reset();
        file->flush();
        ASSERT_TRUE(folder.get("file") == expected) << spared;

        refuse.emplace("fread");
        file->seek(0, 0);
        std::string head(700, '?');
        EXPECT_THROW(static_cast<void>(file->read(head.data(), head.size())), OrnError);
        refuse.reset();
        ASSERT_EQ(file->read(head.data(), head.size()), 700);
        EXPECT_EQ(head, expected.substr(0, 700));
    }
}

TEST(RawFileFailures, ATurnFromReadingToWritingThatFailsIsAWriteFailure) {
    TemporaryFolder const folder;
    Writer const file{rawAppend(folder.put("file", "content"))};
    char byte;
    file->seek(0, 0);
    EXPECT_EQ(file->read(&byte, 1), 1);
    {
        faults::Refuse const refuse{"fseek"};
        EXPECT_THROW(file->write("x", 1), OrnError);
    }
    file->write("y", 1);
    file->close();
    EXPECT_EQ(folder.get("file"), "contenty");
}

TEST(RawFileFailures, NothingIsLostWhenClosingFailsOrMemoryRunsOut) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "content"), missing = folder / L"missing";
    {
        Writer file{rawCreate(name)};
        file->write("x", 1);
        faults::Refuse const refuse{"fclose"};
        EXPECT_NO_THROW(file.reset());
        EXPECT_EQ(refuse.refusals(), 1);
    }
    for (auto const& [wanted, fewest] : {std::pair{name, 1}, std::pair{missing, 3}}) {
        long const before = faults::liveBlocks();
        int const failures = faults::failEveryAllocation(
            [&, &file = wanted] {
                try {
                    delete rawOpen(file);
                } catch (OrnError const&) {}
            },
            // A message's text may come from another module's memory, whose blocks are not counted.
            [&](bool) { EXPECT_LE(faults::liveBlocks(), before); });
        EXPECT_GT(failures, fewest);
    }
    std::wstring const longName = folder / L"a name of some length", mode = L"wb";
    std::FILE* file = nullptr;
    for (int number = 0; file == nullptr; ++number) {
        faults::AllocationFails const fails{number};
        EXPECT_NO_THROW(file = fileOpen(longName, mode));
    }
    std::fclose(file);
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

#if defined(__linux__)
TEST(RawFileFailures, AFullDiskIsReportedWhenTheBytesReachIt) {
    auto const full = [] { return Writer{rawAppend(L"/dev/full")}; };
    auto const flushed = full(), closed = full(), filled = full();
    flushed->write("x", 1);
    EXPECT_THROW(flushed->flush(), OrnError);
    closed->write("x", 1);
    EXPECT_THROW(closed->close(), OrnError);
    EXPECT_NO_THROW(closed->close());
    std::string const much(100'000, 'x');
    EXPECT_THROW(filled->write(much.data(), much.size()), OrnError);
}
#endif

}
