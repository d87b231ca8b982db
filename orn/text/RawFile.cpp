#include "orn/text/RawFile.h"

#include "orn/os/File.h"
#include "orn/text/Printf.h"
#include "orn/text/RawFileImp.h"
#include "ornmsg/ornmsg.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <utility>

namespace ORN {

RawReader::~RawReader() = default;
RawWriter::~RawWriter() = default;
RawFileReader::~RawFileReader() = default;
RawFileWriter::~RawFileWriter() = default;

namespace {

// The numbers of the catalogue's messages.
constexpr unsigned int cannotOpen = 249, cannotCreate = 250, cannotRead = 251, cannotWrite = 252, cannotClose = 253;

// How many bytes of small pieces a writer collects, and a quarter more at most. A piece is small when it takes less than a
// quarter of the room.
// Files that are appended to are often logs, of which a crash should lose little.
constexpr std::size_t noRoom = 0, logRoom = 2048, fileRoom = 16384;

class RawFileImp final : public RawFileWriter {
public:
    RawFileImp(std::wstring const& name, wchar_t const* mode, unsigned int failure, std::size_t room)
        : name_{name}, room_{room} {
        // Before the file is opened: a constructor that throws runs no destructor, and nothing would close the file.
        // Collecting needs no more memory than this, so it cannot fail later.
        collected_.reserve(room + room / 4);
        file_ = os::openFile(name, mode);
        if (file_ == nullptr) fail(failure);
        // The runtime's own buffer stays unused: when the runtime fails to empty it, nobody learns how much the file
        // took.
        if (room != 0) std::setvbuf(file_, nullptr, _IONBF, 0);
    }

    RawFileImp(std::wstring const& name, std::FILE* borrowed) : name_{name}, file_{borrowed}, owned_{false} {}

    ~RawFileImp() override {
        if (file_ != nullptr) closeFile();
    }

    RawFileImp(RawFileImp const&) = delete;
    RawFileImp& operator=(RawFileImp const&) = delete;

    std::wstring name() const override { return name_; }

    std::int64_t read(void* buffer, std::uint64_t count) override {
        turnTo(Way::reading, cannotRead);
        if (std::exchange(ended_, false))
            os::seekFile(file_, 0, SEEK_CUR);  // some runtimes would report the old end again
        char* const to = static_cast<char*>(buffer);
        std::size_t const again = std::min<std::size_t>(kept_.size(), count);
        std::copy_n(kept_.data(), again, to);
        bool failed = false;
        std::size_t const done = os::readFile(file_, to + again, count - again, failed);
        if (failed) {
            // A read that throws counts as having read nothing, so the next one must return these bytes again.
            int const reason = errno;
            kept_.append(to + again, done);
            goBack();
            errno = reason;
            fail(cannotRead);
        }
        kept_.erase(0, again);
        ended_ = again + done < count;
        return static_cast<std::int64_t>(again + done);
    }

    std::uint64_t seek(std::int64_t offset, std::int32_t origin) override {
        checkOpen();
        // The collected bytes belong to the old position.
        if (!writeCollected()) fail(cannotWrite);
        if (!goBack()) fail(cannotRead);
        // Asking for the position moves nothing, so it does not allow a change between reading and writing.
        if (offset != 0 || origin != 1) {
            if (!os::seekFile(file_, offset, origin == 0 ? SEEK_SET : origin == 1 ? SEEK_CUR : SEEK_END)) {
                fail(cannotRead);
            }
            way_ = Way::either;
        }
        std::int64_t const position = os::tellFile(file_);
        if (position == -1) fail(cannotRead);
        return static_cast<std::uint64_t>(position);
    }

    void close() override {
        if (file_ == nullptr) return;
        if (!closeFile()) fail(cannotClose);
    }

    void write(void const* buffer, std::uint64_t count) override {
        turnTo(Way::writing, cannotWrite);
        bool const small = count < room_ / 4;
        if (!small && !writeCollected()) fail(cannotWrite);
        // There is room for a quarter more, so that the file gets pieces of one size: its system is slow at parts of pages.
        if (small && collected_.size() + count > room_ + room_ / 4 && !writeFirst(room_)) fail(cannotWrite);
        if (small) {
            collected_.append(static_cast<char const*>(buffer), static_cast<std::size_t>(count));
            return;
        }
        bool failed = false;
        std::size_t const done = os::writeFile(file_, buffer, count, failed);
        if (failed) throw RawWriteError{message(cannotWrite), done};
    }

    void flush() override {
        checkOpen();
        if (way_ == Way::reading) return;  // nothing waits, and flushing an input stream is undefined
        if (!writeCollected() || !os::flushFile(file_)) fail(cannotWrite);
    }

private:
    enum class Way { either, reading, writing };

    void checkOpen() const {
        if (file_ == nullptr) throw std::logic_error{"the file is closed"};
    }

    // The C standard demands a positioning call between reading and writing.
    void turnTo(Way way, unsigned int failure) {
        checkOpen();
        if (way_ == way) return;
        if (!writeCollected()) fail(cannotWrite);
        if (way_ != Way::either && (!goBack() || !os::seekFile(file_, 0, SEEK_CUR))) fail(failure);
        way_ = way;
    }

    // Gives the kept bytes back to the file. False, with errno set, when it cannot go back, as a pipe cannot.
    bool goBack() noexcept {
        if (kept_.empty()) return true;
        if (!os::seekFile(file_, -static_cast<std::int64_t>(kept_.size()), SEEK_CUR)) return false;
        kept_.clear();
        return true;
    }

    // Hands the collected bytes to the file, and keeps those that it does not take. False, with errno set, when any are
    // left.
    bool writeCollected() noexcept { return collected_.empty() || writeFirst(collected_.size()); }

    bool writeFirst(std::size_t count) noexcept {
        bool failed = false;
        std::size_t const done = os::writeFile(file_, collected_.data(), count, failed);
        collected_.erase(0, failed ? done : count);
        return !failed;
    }

    // Closes the file in any case. False, with errno set, when something failed.
    bool closeFile() noexcept {
        bool const written = writeCollected();
        int const reason = errno;
        std::FILE* const file = std::exchange(file_, nullptr);
        if (owned_ && !os::closeFile(file)) return false;
        // Closing may have changed errno, even when it succeeded.
        if (!written) errno = reason;
        return written;
    }

    std::wstring message(unsigned int number) const {
        std::string const reason = os::errnoText();
        return stringPrintf(ornMsg(number).c_str(), name_.c_str(), reason.c_str());
    }

    [[noreturn]] void fail(unsigned int number) const { throw RawFileError{message(number)}; }

    std::wstring name_;
    std::FILE* file_ = nullptr;
    Way way_ = Way::either;
    bool ended_ = false;  // the last read met the end
    std::size_t room_ = noRoom;
    std::string collected_;  // small pieces that the file has not got yet
    std::string kept_;       // bytes of a read that threw, for the next one
    bool owned_ = true;
};

}

RawFileReader* rawOpen(std::wstring const& name) { return new RawFileImp{name, L"rb", cannotOpen, noRoom}; }
RawFileWriter* rawCreate(std::wstring const& name) { return new RawFileImp{name, L"w+b", cannotCreate, fileRoom}; }
RawFileWriter* rawAppend(std::wstring const& name) { return new RawFileImp{name, L"a+b", cannotCreate, logRoom}; }

RawFileReader* rawStandardInput() { return new RawFileImp{L"standard input", os::standardInput()}; }

RawFileWriter* rawCreateNew(std::wstring const& name) {
    try {
        return new RawFileImp{name, L"w+bx", cannotCreate, logRoom};
    } catch (RawFileError const&) {
        if (os::fileExists(name)) return nullptr;
        throw;
    }
}

std::FILE* fileOpen(std::wstring const& name, std::wstring const& mode) noexcept {
    try {
        return os::openFile(name, mode);
    } catch (std::bad_alloc const&) {
        errno = ENOMEM;
        return nullptr;
    }
}

}
