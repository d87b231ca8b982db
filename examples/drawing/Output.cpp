#include "drawing/Output.h"

#include "drawing/System.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"

#include <cstdio>
#include <random>
#include <system_error>

namespace drawing {

namespace {

namespace fs = std::filesystem;

/// What a chain of links ends at; a file that is not there yet, too.
fs::path followed(fs::path path) {
    std::error_code none;
    // Links may form a circle. Linux, too, gives up after 40.
    for (int links = 0; links < 40 && fs::is_symlink(path, none); ++links) {
        fs::path const target = fs::read_symlink(path, none);
        path = target.is_absolute() ? target : path.parent_path() / target;
    }
    return path;
}

}

Output::Output(std::wstring const& name) : name_{name} {
    if (name == L"-") return;
    std::error_code none;
    fs::file_status const status = fs::status(pathOf(name), none);
    if (fs::is_directory(status)) throw ORN::OrnError{L"this is a folder"};
    // Replacing a device or a pipe would put a plain file in its place.
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        file_.reset(ORN::rawCreate(name));
        return;
    }
    target_ = followed(pathOf(name));
    fs::path const folder = target_.parent_path();
    if (!folder.empty() && !fs::is_directory(folder, none)) {
        throw ORN::OrnError{L"the folder '" + nameOf(folder) + L"' is not there"};
    }
    // It lies in the same folder, so that it can take the target's place in one step. Its name differs from run to run, and
    // is short: that of the target may be as long as the system allows.
    part_ = nameOf(folder / stringPrintf(L"orn-%08x.part", static_cast<unsigned int>(std::random_device{}())));
    file_.reset(ORN::rawCreate(part_));
}

Output::~Output() {
    // Windows does not remove a file that is open.
    file_.reset();
    std::error_code ignored;
    if (!part_.empty()) fs::remove(pathOf(part_), ignored);
}

void Output::write(void const* bytes, std::uint64_t count) {
    if (file_ != nullptr) {
        file_->write(bytes, count);
    } else if (std::fwrite(bytes, 1, static_cast<std::size_t>(count), stdout) != count) {
        throw ORN::OrnError{L"standard output cannot be written"};
    }
}

void Output::finish() {
    if (file_ == nullptr) {
        if (std::fflush(stdout) != 0) throw ORN::OrnError{L"standard output cannot be written"};
        return;
    }
    // All errors of writing must show before the old file is replaced, and Windows renames no file that is open.
    file_->flush();
    file_->close();
    if (part_.empty()) return;
    std::error_code error;
    fs::file_status const old = fs::status(target_, error);
    if (fs::exists(old)) fs::permissions(pathOf(part_), old.permissions(), error);
    // This sets `error` anew: where permissions cannot be copied, the file is written all the same.
    fs::rename(pathOf(part_), target_, error);
    if (error) throw ORN::OrnError{L"the file cannot be replaced: " + getWCS(error.message())};
    // Nothing is left for the destructor to remove.
    part_.clear();
}

}
