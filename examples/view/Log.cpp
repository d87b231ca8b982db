#include "view/Log.h"

namespace view {

Log::Log(std::wstring const& file) {
    if (!file.empty()) writer_.reset(ORN::TextWriter::create(file, ORN::textCreate, ORN::encUTF8));
}

void Log::write(std::wstring const& line) noexcept {
    std::lock_guard const lock{mutex_};
    if (writer_ == nullptr || failure_) return;
    try {
        writer_->writeLine(line);
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
