/// What the rest of the library knows of files beyond their public interface.
#pragma once

#include "orn/foundation/Error.h"
#include "orn/text/RawFile.h"

#include <cstdint>
#include <string>

namespace ORN {

/// What every call of a file throws when it fails.
class RawFileError : public OrnError {
public:
    explicit RawFileError(std::wstring const& message) : OrnError{message} {}
    ~RawFileError() override = default;
};

/// A write of which the file took only the first bytes.
class RawWriteError final : public RawFileError {
public:
    RawWriteError(std::wstring const& message, std::uint64_t taken) : RawFileError{message}, taken_{taken} {}

    std::uint64_t taken() const noexcept { return taken_; }  ///< how many bytes the file took

private:
    std::uint64_t taken_;
};

/// As rawCreate, but the file must be new: null when a file or a folder has the name already.
[[nodiscard]] RawFileWriter* rawCreateNew(std::wstring const& name);

}
