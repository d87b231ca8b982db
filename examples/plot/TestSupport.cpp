#include "plot/TestSupport.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace plottest {

namespace fs = std::filesystem;

Folder::Folder() : before_{fs::current_path()} {
    std::random_device random;
    path_ = fs::temp_directory_path() / ("orn-plot-test-" + std::to_string(random()));
    fs::create_directory(path_);
    fs::current_path(path_);
}

Folder::~Folder() {
    std::error_code ignored;
    fs::current_path(before_, ignored);
    fs::remove_all(path_, ignored);
}

std::vector<std::string> Folder::names() const {
    std::vector<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator{path_}) {
        std::u8string const name = entry.path().filename().u8string();
        names.emplace_back(name.begin(), name.end());
    }
    std::sort(names.begin(), names.end());
    return names;
}

void writeFile(fs::path const& path, std::string const& bytes) {
    std::ofstream file{path, std::ios::binary};
    file << bytes;
    if (!file.flush()) throw std::runtime_error{"a test's file cannot be written"};
}

std::string readFile(fs::path const& path) {
    std::ifstream file{path, std::ios::binary};
    if (!file) throw std::runtime_error{"a test's file cannot be read: " + path.string()};
    return {std::istreambuf_iterator<char>{file}, {}};
}

Outcome runPlot(std::vector<std::wstring> const& arguments) {
    // The program's output goes to a place of its own: its folder is looked at.
    fs::path const base = fs::current_path().string() + ".run";
    fs::path const out = base.string() + "-out", error = base.string() + "-error";
    int const status = startAndWait(arguments, out, error);
    Outcome outcome{status, readFile(out), readFile(error)};
    fs::remove(out);
    fs::remove(error);
    return outcome;
}

Image readBmp(fs::path const& path) {
    std::string const file = readFile(path);
    auto const number = [&](std::size_t at, int size) {
        std::uint32_t value = 0;
        for (int i = size; i-- > 0;)
            value = value << 8 | static_cast<unsigned char>(file.at(at + static_cast<std::size_t>(i)));
        return value;
    };
    if (number(0, 2) != 0x4D42 || number(2, 4) != file.size() || number(28, 2) != 32 || number(30, 4) != 0) {
        throw std::runtime_error{"no 32-bit bitmap file"};
    }
    Image image;
    image.width = static_cast<int>(number(18, 4));
    int const height = static_cast<std::int32_t>(number(22, 4));
    image.height = std::abs(height);
    for (int y = 0; y < image.height; ++y) {
        int const row = height < 0 ? y : image.height - 1 - y;
        for (int x = 0; x < image.width; ++x) {
            std::size_t const at = number(10, 4) + static_cast<std::size_t>(row * image.width + x) * 4;
            image.pixels.push_back(number(at, 3));
        }
    }
    return image;
}

}
