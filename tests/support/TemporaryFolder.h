/// A folder of its own for a test that makes files.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class TemporaryFolder {
public:
    TemporaryFolder() {
        static constinit std::atomic<unsigned int> number{0};
        auto const now = std::chrono::steady_clock::now().time_since_epoch().count();
        do {
            path_ = std::filesystem::temp_directory_path() /
                    ("orn-test-" + std::to_string(now) + "-" + std::to_string(number++));
        } while (!std::filesystem::create_directory(path_));
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::filesystem::path const& path() const { return path_; }

    /// Names as the library takes them; the folder's own one is plain ASCII.
    std::wstring name() const {
        std::string const narrow = path_.string();
        return {narrow.begin(), narrow.end()};
    }
    std::wstring operator/(wchar_t const* file) const { return name() + L"/" + file; }

    std::ptrdiff_t count() const { return std::distance(std::filesystem::directory_iterator{path_}, {}); }
    void removeAll() const { std::filesystem::remove_all(path_); }

    /// A file with an ASCII name, by its bytes.
    std::wstring put(std::string const& file, std::string const& bytes) const {
        std::ofstream{path_ / file, std::ios::binary} << bytes;
        return name() + L"/" + std::wstring{file.begin(), file.end()};
    }
    std::string get(std::string const& file) const {
        std::ifstream stream{path_ / file, std::ios::binary};
        return {std::istreambuf_iterator<char>{stream}, {}};
    }

private:
    std::filesystem::path path_;
};
