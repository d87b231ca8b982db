#include "orn/text/RawFile.h"

#include "orn/foundation/Error.h"
#include "orn/os/File.h"
#include "orn/text/Printf.h"
#include "ornmsg/ornmsg.h"

#include <cerrno>
#include <new>
#include <stdexcept>
#include <utility>

namespace ORN {

RawReader::~RawReader() = default;
RawWriter::~RawWriter() = default;
RawFileReader::~RawFileReader() = default;
RawFileWriter::~RawFileWriter() = default;

namespace {

constexpr unsigned int cannotOpen = 249, cannotCreate = 250, cannotRead = 251, cannotWrite = 252, cannotClose = 253;

class RawFileError : public OrnError {
public:
    explicit RawFileError(std::wstring const& message) : OrnError{message} {}
    ~RawFileError() override = default;
};

class RawFileImp final : public RawFileWriter {
public:
    RawFileImp(std::wstring const& name, wchar_t const* mode, unsigned int failure)
        : name_{name}, file_{os::openFile(name, mode)} {
        if (file_ == nullptr) fail(failure);
    }

    ~RawFileImp() override {
        if (file_ != nullptr) os::closeFile(file_);
    }

    RawFileImp(RawFileImp const&) = delete;
    RawFileImp& operator=(RawFileImp const&) = delete;

    std::wstring name() const override { return name_; }

    std::int64_t read(void* buffer, std::uint64_t count) override {
        turnTo(Way::reading, cannotRead);
        bool failed = false;
        std::size_t const done = os::readFile(file_, buffer, count, failed);
        if (failed) fail(cannotRead);
        return static_cast<std::int64_t>(done);
    }

    std::uint64_t seek(std::int64_t offset, std::int32_t origin) override {
        checkOpen();
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
        if (!os::closeFile(std::exchange(file_, nullptr))) fail(cannotClose);
    }

    void write(void const* buffer, std::uint64_t count) override {
        turnTo(Way::writing, cannotWrite);
        bool failed = false;
        os::writeFile(file_, buffer, count, failed);
        if (failed) fail(cannotWrite);
    }

    void flush() override {
        checkOpen();
        if (way_ == Way::reading) return;  // nothing to hand over, and the runtime leaves flushing input undefined
        if (!os::flushFile(file_)) fail(cannotWrite);
    }

private:
    enum class Way { either, reading, writing };

    void checkOpen() const {
        if (file_ == nullptr) throw std::logic_error{"the file is closed"};
    }

    // Between reading and writing the runtime wants a positioning call.
    void turnTo(Way way, unsigned int failure) {
        checkOpen();
        if (way_ == way) return;
        if (way_ != Way::either && !os::seekFile(file_, 0, SEEK_CUR)) fail(failure);
        way_ = way;
    }

    [[noreturn]] void fail(unsigned int number) const {
        std::string const reason = os::errnoText();
        throw RawFileError{stringPrintf(ornMsg(number).c_str(), name_.c_str(), reason.c_str())};
    }

    std::wstring name_;
    std::FILE* file_;
    Way way_ = Way::either;
};

}

RawFileReader* rawOpen(std::wstring const& name) { return new RawFileImp{name, L"rb", cannotOpen}; }
RawFileWriter* rawCreate(std::wstring const& name) { return new RawFileImp{name, L"w+b", cannotCreate}; }
RawFileWriter* rawAppend(std::wstring const& name) { return new RawFileImp{name, L"a+b", cannotCreate}; }

std::FILE* fileOpen(std::wstring const& name, std::wstring const& mode) noexcept {
    try {
        return os::openFile(name, mode);
    } catch (std::bad_alloc const&) {
        errno = ENOMEM;
        return nullptr;
    }
}

}
