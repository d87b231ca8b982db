#include "orn/text/TextWriter.h"

#include "orn/foundation/Error.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>

using namespace ORN;

namespace {

std::unique_ptr<TextWriter> open(std::wstring const& name, TextOpenMode mode = textCreate) {
    return std::unique_ptr<TextWriter>{TextWriter::create(name, mode, encUTF8)};
}

TEST(TextWriterFailures, ACallThatFailsLeavesNoFileOpenAndTheOldTextAsItWas) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "old");
    for (char const* call : {"fopen", "fread", "fseek", "ftell"}) {
        faults::Refuse const refuse{call};
        EXPECT_THROW(open(name, textAppend), OrnError) << call;
        EXPECT_EQ(refuse.refusals(), 1);
    }
    EXPECT_EQ(folder.get("file"), "old");
    EXPECT_NO_THROW(folder.removeAll());
}

TEST(TextWriterFailures, WhatCannotBeWrittenIsReportedAndCanBeTriedAgain) {
    TemporaryFolder const folder;
    for (char const* call : {"fwrite", "fflush"}) {
        auto const writer = open(folder / L"file");
        writer->writeLine(L"text");
        {
            faults::Refuse const refuse{call};
            EXPECT_THROW(writer->flush(), OrnError) << call;
            EXPECT_THROW(writer->close(), OrnError) << call;
        }
        writer->close();
        EXPECT_EQ(folder.get("file"), "\xEF\xBB\xBFtext\r\n") << call;
    }
}

TEST(TextWriterFailures, AFileThatCannotBeClosedIsClosedAllTheSame) {
    TemporaryFolder const folder;
    auto const writer = open(folder / L"file");
    {
        faults::Refuse const refuse{"fclose"};
        EXPECT_THROW(writer->close(), OrnError);
    }
    EXPECT_NO_THROW(writer->close());
    EXPECT_NO_THROW(folder.removeAll());
}

TEST(TextWriterFailures, DeletingSwallowsEveryFailure) {
    TemporaryFolder const folder;
    for (char const* call : {"fwrite", "fclose"}) {
        auto writer = open(folder / L"file");
        writer->write(L"text");
        faults::Refuse const refuse{call};
        EXPECT_NO_THROW(writer.reset()) << call;
        EXPECT_EQ(refuse.refusals(), 1);
    }
    EXPECT_NO_THROW(folder.removeAll());
}

TEST(TextWriterFailures, MemoryRunningOutLosesNothing) {
    TemporaryFolder const folder;
    for (TextOpenMode const mode : {textCreate, textAppend}) {
        long const before = faults::liveBlocks();
        int const failures = faults::failEveryAllocation(
            [&] {
                auto const writer = open(folder / L"file", mode);
                writer->write(L"text");
                writer->close();
            },
            [&](bool) { EXPECT_EQ(faults::liveBlocks(), before); });
        EXPECT_GT(failures, 3);
    }
    EXPECT_NO_THROW(folder.removeAll());
}

}
