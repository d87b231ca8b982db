#include "plot/TestSupport.h"

#include "orn/colour/ContextGdiplus.h"

#include <stdexcept>

#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>

namespace plottest {

namespace {

/// As the runtime and CommandLineToArgvW take it apart again.
std::wstring quoted(std::wstring const& argument) {
    std::wstring text = L"\"";
    std::size_t backslashes = 0;
    for (wchar_t const c : argument) {
        if (c == L'"') text.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, L'\\') + L'"';
}

HANDLE outputFile(std::filesystem::path const& path) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE const file =
        CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) throw std::runtime_error{"a test's file cannot be written"};
    return file;
}

}

int startAndWait(std::vector<std::wstring> const& arguments, std::filesystem::path const& out,
                 std::filesystem::path const& error) {
    wchar_t self[1024];
    GetModuleFileNameW(nullptr, self, 1024);
    std::wstring line = quoted(std::filesystem::path{self}.replace_filename(L"orn-plot.exe").wstring());
    for (std::wstring const& argument : arguments) line += L' ' + quoted(argument);

    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = INVALID_HANDLE_VALUE;
    start.hStdOutput = outputFile(out);
    start.hStdError = outputFile(error);
    PROCESS_INFORMATION process{};
    BOOL const started =
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process);
    CloseHandle(start.hStdOutput);
    CloseHandle(start.hStdError);
    if (!started) throw std::runtime_error{"orn-plot does not start"};
    DWORD status = 0;
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return static_cast<int>(status);
}

Image readPng(std::filesystem::path const& path) {
    ContextGdiplus const graphics;
    Gdiplus::Bitmap bitmap{path.c_str()};
    if (bitmap.GetLastStatus() != Gdiplus::Ok) throw std::runtime_error{"no PNG file"};
    Image image;
    image.width = static_cast<int>(bitmap.GetWidth());
    image.height = static_cast<int>(bitmap.GetHeight());
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            Gdiplus::Color colour;
            bitmap.GetPixel(x, y, &colour);
            image.pixels.push_back(colour.GetValue() & 0xFFFFFF);
        }
    }
    return image;
}

}
