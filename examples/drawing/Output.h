/// The file or stream that a picture or a table is written to.
#pragma once

#include "orn/text/RawFile.h"

#include <filesystem>
#include <memory>
#include <string>

namespace drawing {

/// A file that is replaced in one step once its new content is complete, or standard output (the name "-"). Links are
/// followed, and a file that was there keeps its permissions; what is no plain file (a device, a pipe) is written to.
/// Every failure is an ORN::OrnError.
class Output final : public ORN::RawWriter {
public:
    explicit Output(std::wstring const& name);

    /// Unless finish() was called, what was there stays as it was.
    ~Output() override;
    Output(Output const&) = delete;
    Output& operator=(Output const&) = delete;

    std::wstring name() const override { return name_; }
    void write(void const* bytes, std::uint64_t count) override;
    void flush() override {}
    void finish();

private:
    std::wstring name_;
    std::filesystem::path target_;  ///< empty: nothing is replaced
    std::wstring part_;
    std::unique_ptr<ORN::RawFileWriter> file_;  ///< null for standard output
};

}
