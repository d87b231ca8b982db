#include "tests/support/ChildProcess.h"

#include <windows.h>

#include <stdexcept>

struct ChildProcess::Imp {
    HANDLE process = nullptr;
    bool ended = false;

    ~Imp() {
        if (process != nullptr) CloseHandle(process);
    }
};

namespace {

std::wstring wide(std::string const& utf8) {
    return std::filesystem::path{std::u8string{utf8.begin(), utf8.end()}}.wstring();
}

/// A child inherits the test's own variables.
void setVariables(std::map<std::string, std::filesystem::path> const& variables, bool present) {
    for (auto const& [name, value] : variables)
        SetEnvironmentVariableW(wide(name).c_str(), present ? value.c_str() : nullptr);
}

/// As the C runtime takes an argument apart again.
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

HANDLE file(std::filesystem::path const& path) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, CREATE_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

}

ChildProcess::ChildProcess(std::filesystem::path const& program, std::vector<std::string> const& arguments,
                           std::map<std::string, std::filesystem::path> const& environment,
                           std::filesystem::path const& output, std::filesystem::path const& errors)
    : imp_{std::make_unique<Imp>()} {
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
    imp_->process = child.hProcess;
}

ChildProcess::~ChildProcess() { kill(); }

std::optional<int> ChildProcess::wait(std::chrono::seconds limit) {
    auto const milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(limit).count();
    if (WaitForSingleObject(imp_->process, static_cast<DWORD>(milliseconds)) != WAIT_OBJECT_0) {
        kill();
        return std::nullopt;
    }
    imp_->ended = true;
    DWORD code = 0;
    GetExitCodeProcess(imp_->process, &code);
    return static_cast<int>(code);
}

void ChildProcess::kill() {
    if (imp_->ended) return;
    TerminateProcess(imp_->process, 9);
    WaitForSingleObject(imp_->process, INFINITE);
    imp_->ended = true;
}
