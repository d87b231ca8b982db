#include "tests/support/ChildProcess.h"

#include <windows.h>

#include <stdexcept>

namespace {

std::wstring wide(std::string const& utf8) {
    return std::filesystem::path{std::u8string{utf8.begin(), utf8.end()}}.wstring();
}

/// A child inherits the test's own variables.
void setVariables(std::map<std::string, std::filesystem::path> const& variables, bool present) {
    for (auto const& [name, value] : variables)
        SetEnvironmentVariableW(wide(name).c_str(), present ? value.c_str() : nullptr);
}

/// As the C runtime takes an argument apart again, if it has no backslash before a quote or at its end.
std::wstring quoted(std::wstring const& argument) {
    std::wstring text = L"\"";
    for (wchar_t const c : argument) text += c == L'"' ? L"\\\"" : std::wstring{c};
    return text + L'"';
}

HANDLE file(std::filesystem::path const& path) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, CREATE_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

HANDLE handle(std::intptr_t process) { return reinterpret_cast<HANDLE>(process); }

}

ChildProcess::ChildProcess(std::filesystem::path const& program, std::vector<std::string> const& arguments,
                           std::map<std::string, std::filesystem::path> const& environment,
                           std::filesystem::path const& output, std::filesystem::path const& errors) {
    wchar_t self[MAX_PATH];
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring line = quoted((std::filesystem::path{self}.parent_path() / program).wstring());
    for (std::string const& argument : arguments) line += L' ' + quoted(wide(argument));

    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = file(output);
    start.hStdError = errors.empty() ? start.hStdOutput : file(errors);
    PROCESS_INFORMATION child{};
    setVariables(environment, true);
    BOOL const started =
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &child);
    setVariables(environment, false);
    if (!errors.empty()) CloseHandle(start.hStdError);
    CloseHandle(start.hStdOutput);
    if (!started) throw std::runtime_error{"CreateProcess of " + program.string()};
    CloseHandle(child.hThread);
    process_ = reinterpret_cast<std::intptr_t>(child.hProcess);
}

ChildProcess::~ChildProcess() {
    kill();
    CloseHandle(handle(process_));
}

std::optional<int> ChildProcess::wait(std::chrono::milliseconds limit) {
    if (WaitForSingleObject(handle(process_), static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0)
        return kill(), std::nullopt;
    ended_ = true;
    DWORD code = 0;
    GetExitCodeProcess(handle(process_), &code);
    return static_cast<int>(code);
}

void ChildProcess::kill() {
    if (ended_) return;
    TerminateProcess(handle(process_), 9);
    WaitForSingleObject(handle(process_), INFINITE);
    ended_ = true;
}
