#include "view/Log.h"

namespace view {

Log::Log(std::wstring const& file) {
    if (!file.empty()) writer_.reset(ORN::TextWriter::create(file, ORN::textCreate, ORN::encUTF8));
}

void Log::write(std::wstring const& line) noexcept {
    std::lock_guard const lock{mutex_};
    // After a failure nothing more is written: a record with a gap would be taken for a whole one.
    if (writer_ == nullptr || failure_) return;
    try {
        writer_->writeLine(line);
        // The line goes out at once, because other programs read the record while this one runs.
        writer_->flush();
    } catch (...) {
        failure_ = std::current_exception();
    }
}

void Log::close() {
    std::lock_guard const lock{mutex_};
    if (failure_) std::rethrow_exception(failure_);
    if (writer_ != nullptr) writer_->close();
    writer_.reset();
}

}
