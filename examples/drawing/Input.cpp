#include "drawing/Input.h"

#include "drawing/System.h"

#include "orn/foundation/Error.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace drawing {

Input::Input(std::wstring const& file) : name_{file == L"-" ? L"standard input" : file} {
    if (file == L"-") return;
    std::error_code none;
    // Some systems open a folder like a file, and only refuse to read it.
    if (std::filesystem::is_directory(pathOf(file), none)) throw ORN::OrnError{file + L": this is a folder"};
    file_.reset(ORN::rawOpen(file));
}

Input::~Input() = default;

std::string_view Input::head() {
    // A pipe may give fewer bytes than are asked for, long before its end.
    constexpr std::size_t most = 512;
    if (head_.empty()) {
        head_.resize(most);
        std::size_t count = 0;
        while (count < most) {
            auto const came = static_cast<std::size_t>(readOn(head_.data() + count, most - count));
            if (came == 0) break;
            count += came;
        }
        head_.resize(count);
    }
    // read() moves at_: what it has given out is no part of the head any more.
    return {head_.data() + at_, head_.size() - at_};
}

std::int64_t Input::read(void* buffer, std::uint64_t count) {
    // This holds, too, when nobody has asked for the head: then both are 0.
    if (at_ == head_.size()) return readOn(buffer, count);
    std::size_t const size = std::min(static_cast<std::size_t>(count), head_.size() - at_);
    std::memcpy(buffer, head_.data() + at_, size);
    at_ += size;
    return static_cast<std::int64_t>(size);
}

std::int64_t Input::readOn(void* buffer, std::uint64_t count) {
    if (file_ != nullptr) return file_->read(buffer, count);
    // fread gives less than it was asked for only at the end or after an error.
    std::size_t const size = std::fread(buffer, 1, static_cast<std::size_t>(count), stdin);
    if (size == 0 && std::ferror(stdin) != 0) throw ORN::OrnError{L"standard input cannot be read"};
    return static_cast<std::int64_t>(size);
}

}
