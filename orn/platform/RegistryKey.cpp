#include "orn/platform/RegistryKey.h"

#include "orn/os/Environment.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Registry.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <memory>
#include <new>

namespace os = ORN::os;

namespace {

// What most values fit, on the stack: so many units, and for strings one less, which leaves room for a terminator.
constexpr std::size_t shortUnits = 260;

/// The data of a value, in UTF-16 units.
struct Data {
    char16_t shortBuffer[shortUnits];
    std::unique_ptr<char16_t[]> longBuffer;
    DWORD type = 0, bytes = 0;

    char16_t const* begin() const noexcept { return longBuffer ? longBuffer.get() : shortBuffer; }
    char16_t const* end() const noexcept { return begin() + bytes / 2; }

    /// Reads a value with `spare` bytes of room behind it.
    DWORD query(HKEY key, wchar_t const* name, DWORD spare) {
        bytes = sizeof shortBuffer - spare;
        DWORD const status = os::queryValue(key, name, type, shortBuffer, bytes);
        if (status != os::statusMoreData) return status;

        std::size_t const needed = std::size_t{bytes} + spare;
        if (needed <= sizeof shortBuffer) {  // it has been shortened meanwhile
            bytes = sizeof shortBuffer - spare;
            return os::queryValue(key, name, type, shortBuffer, bytes);
        }
        longBuffer = std::make_unique_for_overwrite<char16_t[]>((needed + 1) / 2);
        return os::queryValue(key, name, type, longBuffer.get(), bytes);
    }
};

/// Expands a text's references to the environment; leaves it as it is when that fails.
void expand(std::wstring& text) {
    wchar_t shortBuffer[shortUnits];
    DWORD const needed = os::expandEnvironment(text.c_str(), shortBuffer, shortUnits);
    if (needed == 0) return;
    if (needed <= shortUnits) {
        text.assign(shortBuffer, needed - 1);
        return;
    }
    std::wstring longer(needed, L'\0');
    DWORD const given = os::expandEnvironment(text.c_str(), longer.data(), needed);
    if (given == 0 || given > needed) return;  // the environment has changed meanwhile
    longer.resize(std::wcslen(longer.c_str()));
    text.swap(longer);
}

/// The system would take a name with a zero inside for what stands before it.
bool isWhole(std::wstring const& name) noexcept { return name.find(L'\0') == std::wstring::npos; }

wchar_t const* rootName(HKEY root) noexcept {
    switch (static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(root))) {
        case os::rootMachine: return L"HKEY_LOCAL_MACHINE";
        case os::rootClasses: return L"HKEY_CLASSES_ROOT";
        case os::rootUser: return L"HKEY_CURRENT_USER";
        default: return L"<?}";
    }
}

}

RegKey::RegKey(Mode mode, HKEY root, std::wstring const& subKey, DWORD access) {
    path_ = rootName(root) + (L'\\' + subKey);
    open(mode, root, subKey, access);
}

RegKey::RegKey(Mode mode, RegKey const& parent, std::wstring const& subKey, DWORD access) {
    path_ = parent.path_ + L'\\' + subKey;
    open(mode, parent.key_, subKey, access);
}

RegKey::~RegKey() {
    if (valid_) os::closeKey(key_);
}

void RegKey::open(Mode mode, HKEY parent, std::wstring const& subKey, DWORD access) {
    HKEY opened = nullptr;
    DWORD const rights = access | (mode == Mode::read ? os::registryRead : os::registryReadWrite);
    DWORD const status = !isWhole(subKey)     ? os::statusInvalidParameter
                         : mode == Mode::read ? os::openKey(parent, subKey.c_str(), rights, opened)
                                              : os::createKey(parent, subKey.c_str(), rights, opened);
    valid_ = keepStatus(status);
    if (valid_) key_ = opened;
}

bool RegKey::mayAsk(std::wstring const& name) const noexcept {
    return valid_ && (isWhole(name) || keepStatus(os::statusInvalidParameter));
}

bool RegKey::keepStatus(DWORD status) const noexcept {
    lastStatus_ = status;
    return status == 0;
}

std::wstring RegKey::errorMessage() {
    std::wstring text;
    if (lastStatus_ == 0 || !os::systemErrorText(lastStatus_, text)) return path_;
    return path_ + L"\r\n" + text;
}

bool RegKey::getString(std::wstring const& name, std::wstring& value) const {
    std::wstring text;  // the name may be the value
    bool const read = mayAsk(name) && readString(name, text);
    value.clear();
    if (read) value.swap(text);
    return read;
}

bool RegKey::readString(std::wstring const& name, std::wstring& text) const {
    try {
        Data data;
        if (!keepStatus(data.query(key_, name.c_str(), sizeof(char16_t)))) return false;
        if (data.type != os::typeString && data.type != os::typeExpandString) return false;

        auto end = data.end();
        if (end != data.begin() && end[-1] == u'\0') --end;
        text.assign(data.begin(), end);
        if (data.type == os::typeExpandString) expand(text);
        return true;
    } catch (std::bad_alloc const&) {
        return keepStatus(os::statusNoMemory);
    }
}

bool RegKey::getMultiString(std::wstring const& name, std::vector<std::wstring>& values) const {
    std::vector<std::wstring> texts;  // the name may be among the values
    bool const read = mayAsk(name) && readMultiString(name, texts);
    values.clear();
    if (read) values.swap(texts);
    return read;
}

bool RegKey::readMultiString(std::wstring const& name, std::vector<std::wstring>& texts) const {
    try {
        Data data;
        if (!keepStatus(data.query(key_, name.c_str(), 0))) return false;
        auto const end = data.end();
        if (data.type != os::typeMultiString || end == data.begin() || end[-1] != u'\0') return false;

        for (auto text = data.begin(); text != end && *text != u'\0';) {
            auto const terminator = std::find(text, end, u'\0');
            texts.emplace_back(text, terminator);
            text = terminator + 1;
        }
        return true;
    } catch (std::bad_alloc const&) {
        return keepStatus(os::statusNoMemory);
    }
}

bool RegKey::getDword(std::wstring const& name, DWORD& value) const {
    if (!mayAsk(name)) return false;
    DWORD type = 0, read = 0, size = sizeof read;
    if (!keepStatus(os::queryValue(key_, name.c_str(), type, &read, size)) || type != os::typeDword) return false;
    value = read;
    return true;
}

DWORD RegKey::getBinary(std::wstring const& name, void* data, DWORD size) const {
    if (!mayAsk(name)) return 0;
    // Asked without a place the system tells the size and reads nothing.
    BYTE nowhere;
    DWORD type = 0, read = data != nullptr ? size : 0;
    DWORD const status = os::queryValue(key_, name.c_str(), type, data != nullptr ? data : &nowhere, read);
    return keepStatus(status) && type == os::typeBinary ? read : 0;
}

RegReadKey::RegReadKey(HKEY root, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::read, root, subKey, access} {}
RegReadKey::RegReadKey(RegKey const& parent, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::read, parent, subKey, access} {}
RegReadKey::~RegReadKey() = default;

RegWriteKey::RegWriteKey(HKEY root, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::write, root, subKey, access} {}
RegWriteKey::RegWriteKey(RegWriteKey const& parent, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::write, parent, subKey, access} {}
RegWriteKey::~RegWriteKey() = default;

bool RegWriteKey::setString(std::wstring const& name, std::wstring const& value) const {
    if (!mayAsk(name)) return false;
    if (value.size() >= 0xFFFFFFFF / 2) return keepStatus(os::statusInvalidParameter);
    try {
        std::u16string const units(value.begin(), value.end());
        auto const bytes = static_cast<DWORD>(2 * units.size() + 2);
        return keepStatus(os::setValue(key(), name.c_str(), os::typeString, units.c_str(), bytes));
    } catch (std::bad_alloc const&) {
        return keepStatus(os::statusNoMemory);
    }
}

bool RegWriteKey::deleteValue(std::wstring const& name) const {
    if (!mayAsk(name)) return false;
    DWORD const status = os::deleteValue(key(), name.c_str());
    return keepStatus(status) || status == os::statusNotFound;
}

bool RegWriteKey::deleteSubKey(std::wstring const& name) const {
    if (!mayAsk(name)) return false;
    // The system takes a name of nothing for the key itself, with all that it has.
    if (name.find_first_not_of(L'\\') == std::wstring::npos) return keepStatus(os::statusInvalidParameter);
    DWORD const status = os::deleteTree(key(), name.c_str());
    return keepStatus(status) || status == os::statusNotFound;
}
