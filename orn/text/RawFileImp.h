/// What files, as raw streams, tell the rest of the library.
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

/// A write that the file took only the head of.
class RawWriteError final : public RawFileError {
public:
    RawWriteError(std::wstring const& message, std::uint64_t taken) : RawFileError{message}, taken_{taken} {}

    std::uint64_t taken() const noexcept { return taken_; }  ///< in bytes, of that call's

private:
    std::uint64_t taken_;
};

/// As rawCreate, but of a file that must be new; null when something bears the name.
[[nodiscard]] RawFileWriter* rawCreateNew(std::wstring const& name);

}
