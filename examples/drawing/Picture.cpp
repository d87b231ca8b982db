#include "drawing/Picture.h"

#include "drawing/Canvas.h"
#include "drawing/System.h"

#include "orn/foundation/Error.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"
#include "orn/text/RawFile.h"

#include <memory>
#include <random>
#include <system_error>

namespace drawing {

bool endsIn(std::wstring const& name, std::wstring const& ending) {
    if (name.size() <= ending.size()) return false;
    for (std::size_t i = 1; i <= ending.size(); ++i) {
        wchar_t const c = name[name.size() - i];
        if ((c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c) != ending[ending.size() - i]) return false;
    }
    return true;
}

namespace {

bool isPng(std::wstring const& name) { return endsIn(name, L".png"); }

/// A new file beside the one that it is to replace; it goes away again unless it does.
class Replacement {
public:
    explicit Replacement(std::wstring const& name)
        : target_{name}, name_{name + stringPrintf(L".%08x.part", static_cast<unsigned int>(std::random_device{}()))} {
        file_.reset(ORN::rawCreate(name_));
    }

    ~Replacement() {
        file_.reset();
        std::error_code ignored;
        if (!done_) std::filesystem::remove(pathOf(name_), ignored);
    }
    Replacement(Replacement const&) = delete;
    Replacement& operator=(Replacement const&) = delete;

    void write(void const* bytes, std::uint64_t count) { file_->write(bytes, count); }

    void replace() {
        file_->flush();
        file_->close();
        std::error_code error;
        std::filesystem::rename(pathOf(name_), pathOf(target_), error);
        if (error) throw ORN::OrnError{L"the file cannot be replaced: " + getWCS(error.message())};
        done_ = true;
    }

private:
    std::wstring target_;
    std::wstring name_;
    std::unique_ptr<ORN::RawFileWriter> file_;
    bool done_ = false;
};

}

bool isPictureName(std::wstring const& name) { return isPng(name) || endsIn(name, L".bmp"); }

void savePicture(DIBitmap const& bitmap, std::wstring const& name) {
    try {
        std::vector<unsigned char> const png = isPng(name) ? pngFile(bitmap) : std::vector<unsigned char>{};
        Replacement file{name};
        if (isPng(name)) {
            file.write(png.data(), png.size());
        } else {
            file.write(bitmap.fileData(), bitmap.fileSize());
        }
        file.replace();
    } catch (ORN::OrnError const& error) {
        throw ORN::OrnError{name + L": " + error.wWhat()};
    }
}

}
