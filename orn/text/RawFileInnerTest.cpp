#include "orn/text/RawFile.h"

#include "orn/foundation/Error.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>

using namespace ORN;

namespace {

TEST(RawFileFailures, EveryRefusedCallGivesItsMessage) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "content");
    char byte;
    struct Case {
        char const* call;
        void (*use)(RawFileWriter&);
        wchar_t const* says;
    };
    Case const cases[] = {
        {"fread",
         [](RawFileWriter& file) {
             char b;
             file.read(&b, 1);
         },
         L"read"},
        {"fseek", [](RawFileWriter& file) { file.seek(2, 0); }, L"read"},
        {"ftell", [](RawFileWriter& file) { file.seek(0, 1); }, L"read"},
        {"fwrite", [](RawFileWriter& file) { file.write("x", 1); }, L"written"},
        {"fflush", [](RawFileWriter& file) { file.flush(); }, L"written"},
        {"fclose", [](RawFileWriter& file) { file.close(); }, L"closed"},
    };
    for (auto const& [call, use, says] : cases) {
        std::unique_ptr<RawFileWriter> const file{rawAppend(name)};
        try {
            faults::Refuse const refuse{call};
            use(*file);
            ADD_FAILURE() << call << " did not throw";
        } catch (OrnError const& error) {
            std::wstring const start = L"The file \"" + name + L"\" cannot be " + says + L": ";
            EXPECT_EQ(std::wstring{error.wWhat()}.substr(0, start.size()), start) << call;
        }
        if (std::string{call} == "fclose") {
            EXPECT_NO_THROW(file->close()) << "it is closed all the same";
        } else {
            file->seek(0, 0);
            EXPECT_EQ(file->read(&byte, 1), 1) << "usable again after " << call;
        }
    }
    EXPECT_EQ(folder.get("file"), "content");
}

TEST(RawFileFailures, ATurnFromReadingToWritingThatFailsIsAWriteFailure) {
    TemporaryFolder const folder;
    std::unique_ptr<RawFileWriter> const file{rawAppend(folder.put("file", "content"))};
    char byte;
    file->seek(0, 0);
    file->read(&byte, 1);
    {
        faults::Refuse const refuse{"fseek"};
        EXPECT_THROW(file->write("x", 1), OrnError);
    }
    file->write("y", 1);
    file->close();
    EXPECT_EQ(folder.get("file"), "contenty");
}

TEST(RawFileFailures, DeletingNeverThrowsAndAlwaysCloses) {
    TemporaryFolder const folder;
    {
        std::unique_ptr<RawFileWriter> file{rawCreate(folder / L"file")};
        file->write("x", 1);
        faults::Refuse const refuse{"fclose"};
        EXPECT_NO_THROW(file.reset());
        EXPECT_EQ(refuse.refusals(), 1);
    }
    EXPECT_NO_THROW(folder.removeAll());
}

TEST(RawFileFailures, OpeningLosesNothingWhenMemoryRunsOut) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "content");
    std::wstring const missing = folder / L"missing";
    for (auto const& [wanted, exists] : {std::pair{name, true}, std::pair{missing, false}}) {
        long const before = faults::liveBlocks();
        int const failures = faults::failEveryAllocation(
            [&, &file = wanted] {
                try {
                    delete rawOpen(file);
                } catch (OrnError const&) {}
            },
            // A message's text may come from another module's memory, whose blocks are not counted.
            [&](bool) { EXPECT_LE(faults::liveBlocks(), before); });
        EXPECT_GT(failures, exists ? 1 : 3);
    }
    EXPECT_NO_THROW(folder.removeAll());
}

TEST(RawFileFailures, FileOpenNeverThrows) {
    TemporaryFolder const folder;
    std::wstring const name = folder / L"a name of some length", mode = L"wb";
    std::FILE* file = nullptr;
    for (int number = 0; file == nullptr; ++number) {
        faults::AllocationFails const fails{number};
        EXPECT_NO_THROW(file = fileOpen(name, mode));
    }
    std::fclose(file);
}

#if defined(__linux__)
TEST(RawFileFailures, AFullDiskIsReportedWhenTheBytesReachIt) {
    auto const full = [] { return std::unique_ptr<RawFileWriter>{rawAppend(L"/dev/full")}; };
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
