/// A record of what the program did, in order.
#pragma once

#include "orn/text/TextWriter.h"

#include <exception>
#include <memory>
#include <mutex>
#include <string>

namespace view {

/// A text file in UTF-8 that holds every line as soon as it is written. Any thread may write.
class Log {
public:
    /// With an empty name nothing is recorded. Throws ORN::OrnError when the file cannot be written.
    explicit Log(std::wstring const& file);

    /// Keeps a failure for close(), because the worker, which writes most lines, could report it to nobody.
    void write(std::wstring const& line) noexcept;

    void close();  ///< throws the first failure

private:
    std::mutex mutex_;
    std::unique_ptr<ORN::TextWriter> writer_;
    std::exception_ptr failure_;
};

}
