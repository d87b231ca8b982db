#include "orn/diagnosis/DebugStream.h"

#include "orn/diagnosis/TextWriterBufImp.h"
#include "orn/os/Environment.h"
#include "orn/os/File.h"
#include "orn/os/Waitable.h"
#include "orn/text/AutoLocale.h"
#include "orn/text/Printf.h"
#include "orn/text/RawFileImp.h"
#include "orn/threading/Lock.h"

#include <atomic>
#include <clocale>
#include <cstddef>
#include <exception>
#include <memory>
#include <new>
#include <ostream>

namespace os = ORN::os;

namespace DebugStream {

namespace {

// Room for an object that is never destroyed, because the destructors of other static objects may still write.
template <typename T>
struct Undying {
    alignas(T) std::byte bytes[sizeof(T)];
};

constinit Undying<TextWriterBuf> bufferRoom{};
constinit Undying<std::wostream> streamRoom{};

constinit std::atomic<std::wostream*> madeStream{nullptr};  // null until the file has been made, or could not be
constinit std::atomic<ORN::TextWriter*> textWriter{nullptr};
constinit std::atomic<std::int32_t> activity{0};  // 0 not yet known, positive active, negative inactive
constinit LONG volatile lockWord = 0;
constinit LONG volatile makingWord = 0;  // a second lock: first callers may come at once, all with lockWord shared

/// A new file. Its name is the template with the first '#' replaced by the first number that gives a free name.
std::unique_ptr<ORN::RawFileWriter> makeFreeFile(std::wstring const& pattern, std::size_t mark) {
    for (int n = 0;; ++n) {
        std::wstring name = pattern;
        name.replace(mark, 1, decimal(n));
        if (os::fileExists(name)) continue;
        // Another process may have made a file of that name, or a link that must not be followed, since the question.
        if (auto* const file = ORN::rawCreateNew(name)) return std::unique_ptr<ORN::RawFileWriter>{file};
    }
}

/// The writer of the file that the environment names, or null. Neither the writer nor its file is ever closed.
ORN::TextWriter* openFile() {
    std::wstring const pattern = os::environmentVariable(L"ORNDEBUGPRINTTEMPLATE");
    std::wstring const file = os::environmentVariable(L"ORNDEBUGPRINTFILE");
    if (std::size_t const mark = pattern.find(L'#'); mark != std::wstring::npos) {
        std::unique_ptr<ORN::RawFileWriter> raw = makeFreeFile(pattern, mark);
        ORN::TextWriter* const writer = ORN::TextWriter::create(*raw, ORN::encUTF8, true);
        static_cast<void>(raw.release());
        return writer;
    }
    return file.empty() ? nullptr : ORN::TextWriter::create(file, ORN::textAppend, ORN::encUTF8);
}

void makeFile(TextWriterBuf& buffer, std::wostream& out) {
    textWriter = openFile();
    buffer.setWriter(textWriter);
    out << L"Tessaforge debug file created at " << os::localTimeText(os::secondsSince1970()).c_str();
    out.flush();
    out.precision(15);
}

}

namespace {

/// The stream, which the first call makes.
std::wostream& made() {
    if (std::wostream* const there = madeStream.load()) return *there;
    ExclusiveLock const guard{makingWord};
    if (madeStream.load() == nullptr) {
        auto* const buffer = new (bufferRoom.bytes) TextWriterBuf;
        auto* const out = new (streamRoom.bytes) std::wostream{buffer};
        struct Made {
            std::wostream* out;
            ~Made() { madeStream = out; }
        } const made{out};
        makeFile(*buffer, *out);
    }
    return *madeStream;
}

/// Throws a failure that the buffer has kept. Only after the stream has been made.
void throwKeptFailure() {
    // Destructors write diagnostics, too; a second exception would end the program.
    if (std::uncaught_exceptions() != 0) return;
    auto* const buffer = std::launder(reinterpret_cast<TextWriterBuf*>(bufferRoom.bytes));
    if (auto const failure = buffer->takeFailure()) std::rethrow_exception(failure);
}

}

std::wostream& stream() {
    std::wostream& out = made();
    if (!out.good()) out.clear();  // an insertion that failed must not silence the next writer
    throwKeptFailure();
    return out;
}

bool testActive() {
    AutoLocale const locale{LC_CTYPE};
    made();  // and looks at nothing else: other threads may hold the lock shared, too
    activity = textWriter.load() != nullptr ? 1 : -1;
    return activity > 0;
}

bool isActive() {
    if (std::int32_t const known = activity; known != 0) return known > 0;
    SharedLock const guard{lockWord};
    return testActive();
}

void flush() {
    ExclusiveLock const guard{lockWord};
    std::wostream* const out = madeStream;
    if (out == nullptr || textWriter.load() == nullptr) return;
    out->clear();
    out->flush();
    throwKeptFailure();
}

LONG volatile& lock() noexcept { return lockWord; }

std::wstring decimal(int n) { return stringPrintf(L"%d", n); }
std::wstring hexadecimal(int n) { return stringPrintf(L"%x", n); }

std::wostream& operator<<(std::wostream& stream, SetVerbose const& verbose) {
    if (&stream == madeStream.load()) verbose.doVerbose();
    return stream;
}

std::wostream& operator<<(std::wostream& stream, GCTID) {
    return stream << stringPrintf(L"%lu", static_cast<unsigned long>(os::currentThreadId()));
}

}
