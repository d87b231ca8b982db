/// The file or stream that a drawing is read from.
#pragma once

#include "orn/text/RawFile.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace drawing {

/// A file, a pipe or standard input, whose first bytes can be looked at before they are read.
class Input final : public ORN::RawReader {
public:
    /// The name "-" is standard input. Throws ORN::OrnError when the file cannot be opened.
    explicit Input(std::wstring const& file);
    ~Input() override;

    std::wstring name() const override { return name_; }
    std::int64_t read(void* buffer, std::uint64_t count) override;

    /// The next 512 bytes, which stay to be read; fewer only at the end of the file.
    std::string_view head();

private:
    std::int64_t readOn(void* buffer, std::uint64_t count);

    std::wstring name_;
    std::unique_ptr<ORN::RawFileReader> file_;  ///< null for standard input
    std::vector<char> head_;
    std::size_t at_ = 0;
};

}
