/// What the end-to-end tests need: a folder of their own, the program as a process of its own, and pictures read back.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace plottest {

/// An empty folder, the current one while it lives.
class Folder {
public:
    Folder();
    ~Folder();
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;

    std::vector<std::string> names() const;  ///< what lies in it, sorted, as UTF-8

private:
    std::filesystem::path before_;
    std::filesystem::path path_;
};

void writeFile(std::filesystem::path const& path, std::string const& bytes);
std::string readFile(std::filesystem::path const& path);

struct Outcome {
    int status;
    std::string out;
    std::string error;
};

/// Starts orn-plot, which lies beside the test program, and waits for its end.
Outcome runPlot(std::vector<std::wstring> const& arguments);

/// Pixels as 0xRRGGBB, from the top left corner.
struct Image {
    int width = 0, height = 0;
    std::vector<std::uint32_t> pixels;

    std::uint32_t at(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
    }
    friend bool operator==(Image const&, Image const&) = default;
};

Image readBmp(std::filesystem::path const& path);  ///< byte by byte
Image readPng(std::filesystem::path const& path);  ///< through the system's library

/// The end of a process whose output goes to two files; for each system.
int startAndWait(std::vector<std::wstring> const& arguments, std::filesystem::path const& out,
                 std::filesystem::path const& error);

}
