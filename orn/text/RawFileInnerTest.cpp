#include "orn/text/RawFile.h"

#include "orn/text/RawFileImp.h"
#include "tests/support/Faults.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Thrown.h"

#include <optional>

#if defined(__linux__)
#include <csignal>

#include <sys/time.h>
#include <unistd.h>
#endif

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

// It cannot go back when a read fails, and a signal may interrupt a read that waits.
TEST(RawFileFailures, APipeLosesNothing) {
    static int ends[2];
    ASSERT_TRUE(::pipe(ends) == 0 && ::write(ends[1], "head,", 5) == 5);
    std::unique_ptr<RawFileReader> const file{rawOpen(L"/dev/fd/" + std::to_wstring(ends[0]))};
    char bytes[10] = {};
    for (faults::Refuse const refuse{"fread"}; refuse.refusals() < 2;)
        EXPECT_THROW(static_cast<void>(file->read(bytes, 5)), OrnError);
    struct sigaction action = {}, before;
    action.sa_handler = [](int) {
        if (::write(ends[1], "rest", 4) == 4) ::close(ends[1]);
    };
    ::sigaction(SIGALRM, &action, &before);
    itimerval const soon{{}, {0, 50'000}};
    ::setitimer(ITIMER_REAL, &soon, nullptr);
    EXPECT_EQ(file->read(bytes, 9), 9);
    EXPECT_STREQ(bytes, "head,rest");
    ::sigaction(SIGALRM, &before, nullptr);
    ::close(ends[0]);
}
#endif

}
