#include "orn/text/TextWriter.h"

#include "orn/foundation/Error.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"

using namespace ORN;

namespace {

class TextWriterFailures : public testing::Test {
protected:
    std::unique_ptr<TextWriter> open(TextOpenMode mode = textCreate) const {
        return std::unique_ptr<TextWriter>{TextWriter::create(folder_ / L"file", mode, encUTF8)};
    }
    void TearDown() override { EXPECT_NO_THROW(folder_.removeAll()) << "a file is still open"; }

    TemporaryFolder const folder_;
};

TEST_F(TextWriterFailures, ACallThatFailsLeavesTheOldTextAsItWas) {
    folder_.put("file", "old");
    for (char const* call : {"fopen", "fread", "fseek", "ftell"}) {
        faults::Refuse const refuse{call};
        EXPECT_THROW(open(textAppend), OrnError) << call;
        EXPECT_EQ(refuse.refusals(), 1);
    }
    EXPECT_EQ(folder_.get("file"), "old");
}

TEST_F(TextWriterFailures, WhatCannotBeWrittenIsReportedAndCanBeTriedAgain) {
    for (char const* call : {"fwrite", "fflush"}) {
        auto const writer = open();
        writer->writeLine(L"text");
        {
            faults::Refuse const refuse{call};
            EXPECT_THROW(writer->flush(), OrnError) << call;
            EXPECT_THROW(writer->close(), OrnError) << call;
        }
        writer->close();
        EXPECT_EQ(folder_.get("file"), "\xEF\xBB\xBFtext\r\n") << call;
    }
    auto const writer = open();
    {
        faults::Refuse const refuse{"fclose"};
        EXPECT_THROW(writer->close(), OrnError);
    }
    EXPECT_NO_THROW(writer->close()) << "it is closed all the same";
}

TEST_F(TextWriterFailures, DeletingSwallowsEveryFailure) {
    for (char const* call : {"fwrite", "fclose"}) {
        auto writer = open();
        writer->write(L"text");
        faults::Refuse const refuse{call};
        EXPECT_NO_THROW(writer.reset()) << call;
        EXPECT_EQ(refuse.refusals(), 1);
    }
}

TEST_F(TextWriterFailures, MemoryRunningOutLosesNothing) {
    for (TextOpenMode const mode : {textCreate, textAppend})
        EXPECT_GT(faults::failEveryAllocation([&] {
                      auto const writer = open(mode);
                      writer->write(L"text");
                      writer->close();
                  }),
                  3);
}

}
