#include "orn/text/RawFile.h"

#include "orn/text/RawFileImp.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <optional>

using namespace ORN;

namespace {

using Writer = std::unique_ptr<RawFileWriter>;

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
    }
}

#if defined(__linux__)
TEST(RawFileFailures, AFullDiskIsReportedWhenTheBytesReachIt) {
    Writer const flushed{rawAppend(L"/dev/full")}, closed{rawAppend(L"/dev/full")};
    flushed->write("x", 1);
    EXPECT_THROW(flushed->flush(), OrnError);
    closed->write("x", 1);
    EXPECT_THROW(closed->close(), OrnError);
    EXPECT_NO_THROW(closed->close());
}
#endif

}
