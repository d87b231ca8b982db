#include "orn/platform/RegistryKey.h"

#include "orn/os/Environment.h"
#include "orn/os/ErrorText.h"
#include "orn/os/Registry.h"
#include "orn/os/Scratch.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <new>
#include <utility>

namespace os = ORN::os;

namespace {

// Most values fit into so many units on the stack. A string may have one less, which leaves room for a terminator.
constexpr std::size_t shortUnits = 260;

/// The data of a value, in UTF-16 units.
struct Data {
    os::Scratch<char16_t, shortUnits> units;
    DWORD type = 0, bytes = 0;

    char16_t const* begin() const noexcept { return units.data(); }
    char16_t const* end() const noexcept { return begin() + bytes / 2; }

    /// Whether the value is a string of either type. The text is given without one terminator at its end.
    bool isText(std::wstring& text) const {
        if (type != os::typeString && type != os::typeExpandString) return false;
        char16_t const* last = end();
        // Writers count the terminator in, and some do not write one. Zeros before it belong to the text.
        if (last != begin() && last[-1] == u'\0') --last;
        text.assign(begin(), last);
        return true;
    }

    /// Reads a value, and keeps `spare` bytes of room behind it.
    DWORD query(HKEY key, wchar_t const* name, DWORD spare) {
        DWORD const room = 2 * shortUnits - spare;
        bytes = room;
        DWORD const status = os::queryValue(key, name, type, units.data(), bytes);
        if (status != os::errorMoreData) return status;

        // Another program may have shortened the value meanwhile.
        bytes = std::max(bytes, room);
        units.reserve((std::size_t{bytes} + spare + 1) / 2);
        // The value may also have grown. Then errorMoreData is the status that the caller gets.
        return os::queryValue(key, name, type, units.data(), bytes);
    }
};

/// Calls read(fresh), and moves what it has read to `result` at the end, because `result` may also hold the value's name.
/// After a failure `result` is empty.
template <typename Result, typename Read>
bool readInto(Result& result, Read read) {
    Result fresh;
    bool const done = read(fresh);
    result.clear();
    if (done) result.swap(fresh);
    return done;
}

/// Replaces a text's references to environment variables. Leaves the text as it is when that fails.
void expand(std::wstring& text) {
    wchar_t shortBuffer[shortUnits];
    // The count that the system gives includes the terminator.
    DWORD const needed = os::expandEnvironment(text.c_str(), shortBuffer, shortUnits);
    if (needed == 0) return;
    if (needed <= shortUnits) {
        text.assign(shortBuffer, needed - 1);
        return;
    }
    std::wstring longer(needed, L'\0');
    DWORD const given = os::expandEnvironment(text.c_str(), longer.data(), needed);
    if (given == 0 || given > needed) return;  // the environment has changed meanwhile
    // The environment may also have become shorter.
    longer.resize(std::wcslen(longer.c_str()));
    text.swap(longer);
}

/// Whether a name has no zero inside. The system would read such a name only up to the zero, and so mean another one.
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
    // The path is made before the key is opened: when there is no memory for it, no key stays open.
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

RegKey::RegKey(RegKey&& other) noexcept
    // The other key is invalid afterwards, and has nothing to close.
    : valid_{std::exchange(other.valid_, false)},
      lastStatus_{std::exchange(other.lastStatus_, 0)},
      key_{std::exchange(other.key_, nullptr)},
      path_{std::exchange(other.path_, {})} {}

RegKey& RegKey::operator=(RegKey&& other) noexcept {
    if (this == &other) return *this;
    if (valid_) os::closeKey(key_);
    valid_ = std::exchange(other.valid_, false);
    lastStatus_ = std::exchange(other.lastStatus_, 0);
    key_ = std::exchange(other.key_, nullptr);
    path_ = std::exchange(other.path_, {});
    return *this;
}

void RegKey::open(Mode mode, HKEY parent, std::wstring const& subKey, DWORD access) {
    HKEY opened = nullptr;
    DWORD const rights = access | (mode == Mode::read ? os::registryRead : os::registryReadWrite);
    DWORD const status = !isWhole(subKey)     ? os::errorInvalidParameter
                         : mode == Mode::read ? os::openKey(parent, subKey.c_str(), rights, opened)
                                              : os::createKey(parent, subKey.c_str(), rights, opened);
    // After a failure the handle stays null, which the system refuses in every call.
    valid_ = keepStatus(status);
    if (valid_) key_ = opened;
}

bool RegKey::mayAsk(std::wstring const& name) const noexcept {
    return valid_ && (isWhole(name) || keepStatus(os::errorInvalidParameter));
}

bool RegKey::keepStatus(DWORD status) const noexcept {
    lastStatus_ = status;
    return status == 0;
}

std::wstring RegKey::errorMessage() {
    std::wstring text;
    // A code that the system has no text for leaves the path alone.
    if (lastStatus_ == 0 || !os::systemErrorText(lastStatus_, text)) return path_;
    return path_ + L"\r\n" + text;
}

bool RegKey::getString(std::wstring const& name, std::wstring& value) const {
    return readInto(value, [&](std::wstring& text) { return mayAsk(name) && readString(name, text); });
}

// Every accessor reports its failures as a status, so a lack of memory becomes one, too.
bool RegKey::readString(std::wstring const& name, std::wstring& text) const {
    try {
        Data data;
        if (!keepStatus(data.query(key_, name.c_str(), sizeof(char16_t)))) return false;
        if (!data.isText(text)) return false;
        if (data.type == os::typeExpandString) expand(text);
        return true;
    } catch (std::bad_alloc const&) {
        return keepStatus(os::errorNotEnoughMemory);
    }
}

bool RegKey::getMultiString(std::wstring const& name, std::vector<std::wstring>& values) const {
    return readInto(values,
                    [&](std::vector<std::wstring>& texts) { return mayAsk(name) && readMultiString(name, texts); });
}

bool RegKey::readMultiString(std::wstring const& name, std::vector<std::wstring>& texts) const {
    try {
        Data data;
        if (!keepStatus(data.query(key_, name.c_str(), 0))) return false;
        auto const end = data.end();
        if (data.type != os::typeMultiString || end == data.begin() || end[-1] != u'\0') return false;

        for (auto text = data.begin(); text != end && *text != u'\0';) {
            // The data ends with a zero, so there is one to find.
            auto const terminator = std::find(text, end, u'\0');
            texts.emplace_back(text, terminator);
            text = terminator + 1;
        }
        return true;
    } catch (std::bad_alloc const&) {
        return keepStatus(os::errorNotEnoughMemory);
    }
}

bool RegKey::getDword(std::wstring const& name, DWORD& value) const {
    if (!mayAsk(name)) return false;
    // A value of fewer bytes is read as if zeros followed.
    DWORD type = 0, read = 0, size = sizeof read;
    if (!keepStatus(os::queryValue(key_, name.c_str(), type, &read, size)) || type != os::typeDword) return false;
    value = read;
    return true;
}

DWORD RegKey::getBinary(std::wstring const& name, void* data, DWORD size) const {
    if (!mayAsk(name)) return 0;
    // With a null pointer the system would succeed and give the size. A room of 0 bytes makes it fail.
    BYTE nowhere;
    DWORD type = 0, read = data != nullptr ? size : 0;
    DWORD const status = os::queryValue(key_, name.c_str(), type, data != nullptr ? data : &nowhere, read);
    return keepStatus(status) && type == os::typeBinary ? read : 0;
}

bool RegKey::getUnexpandedString(std::wstring const& name, std::wstring& value) const {
    return readInto(value, [&](std::wstring& text) {
        if (!mayAsk(name)) return false;
        try {
            Data data;
            return keepStatus(data.query(key_, name.c_str(), 0)) && data.isText(text);
        } catch (std::bad_alloc const&) {
            return keepStatus(os::errorNotEnoughMemory);
        }
    });
}

bool RegKey::getQword(std::wstring const& name, std::uint64_t& value) const {
    if (!mayAsk(name)) return false;
    std::uint64_t read = 0;
    DWORD type = 0, size = sizeof read;
    if (!keepStatus(os::queryValue(key_, name.c_str(), type, &read, size)) || type != os::typeQword) return false;
    value = read;
    return true;
}

bool RegKey::getBinary(std::wstring const& name, std::vector<BYTE>& bytes) const {
    DWORD type = 0;
    bool const read = getValue(name, type, bytes) && type == os::typeBinary;
    if (!read) bytes.clear();
    return read;
}

bool RegKey::getValue(std::wstring const& name, DWORD& type, std::vector<BYTE>& bytes) const {
    return readInto(bytes, [&](std::vector<BYTE>& read) {
        if (!mayAsk(name)) return false;
        try {
            Data data;
            if (!keepStatus(data.query(key_, name.c_str(), 0))) return false;
            auto const* const first = reinterpret_cast<BYTE const*>(data.begin());
            read.assign(first, first + data.bytes);
            type = data.type;
            return true;
        } catch (std::bad_alloc const&) {
            return keepStatus(os::errorNotEnoughMemory);
        }
    });
}

bool RegKey::getSubKeys(std::vector<std::wstring>& names) const {
    return readInto(names, [&](auto& found) { return valid_ && keepStatus(os::listSubKeys(key_, found)); });
}

bool RegKey::getValueNames(std::vector<std::wstring>& names) const {
    return readInto(names, [&](auto& found) { return valid_ && keepStatus(os::listValues(key_, found)); });
}

RegReadKey::RegReadKey(HKEY root, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::read, root, subKey, access} {}
RegReadKey::RegReadKey(RegKey const& parent, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::read, parent, subKey, access} {}
RegReadKey::RegReadKey(RegReadKey&&) noexcept = default;
RegReadKey& RegReadKey::operator=(RegReadKey&&) noexcept = default;
RegReadKey::~RegReadKey() = default;

RegWriteKey::RegWriteKey(HKEY root, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::write, root, subKey, access} {}
RegWriteKey::RegWriteKey(RegWriteKey const& parent, std::wstring const& subKey, DWORD access)
    : RegKey{Mode::write, parent, subKey, access} {}
RegWriteKey::RegWriteKey(RegWriteKey&&) noexcept = default;
RegWriteKey& RegWriteKey::operator=(RegWriteKey&&) noexcept = default;
RegWriteKey::~RegWriteKey() = default;

bool RegWriteKey::setValue(std::wstring const& name, DWORD type, void const* data, std::size_t size) const {
    if (!mayAsk(name)) return false;
    if (size > 0xFFFFFFFF) return keepStatus(os::errorInvalidParameter);
    return keepStatus(os::setValue(key(), name.c_str(), type, data, static_cast<DWORD>(size)));
}

bool RegWriteKey::setText(std::wstring const& name, DWORD type, std::wstring const& text) const {
    if (!mayAsk(name)) return false;
    try {
        // The registry keeps UTF-16 on every system, with the terminator.
        std::u16string const units(text.begin(), text.end());
        return setValue(name, type, units.c_str(), 2 * (units.size() + 1));
    } catch (std::bad_alloc const&) {
        return keepStatus(os::errorNotEnoughMemory);
    }
}

bool RegWriteKey::setString(std::wstring const& name, std::wstring const& value) const {
    return setText(name, os::typeString, value);
}

bool RegWriteKey::setExpandString(std::wstring const& name, std::wstring const& value) const {
    return setText(name, os::typeExpandString, value);
}

bool RegWriteKey::setMultiString(std::wstring const& name, std::vector<std::wstring> const& values) const {
    if (!mayAsk(name)) return false;
    try {
        std::wstring all;
        for (std::wstring const& value : values) {
            // An empty text ends the list, and a zero would make two texts of one. setText adds the zero that ends the
            // list.
            if (value.empty() || !isWhole(value)) return keepStatus(os::errorInvalidParameter);
            all += value;
            all += L'\0';
        }
        return setText(name, os::typeMultiString, all);
    } catch (std::bad_alloc const&) {
        return keepStatus(os::errorNotEnoughMemory);
    }
}

bool RegWriteKey::setDword(std::wstring const& name, DWORD value) const {
    return setValue(name, os::typeDword, &value, sizeof value);
}

bool RegWriteKey::setQword(std::wstring const& name, std::uint64_t value) const {
    return setValue(name, os::typeQword, &value, sizeof value);
}

bool RegWriteKey::setBinary(std::wstring const& name, void const* data, std::size_t size) const {
    return setValue(name, os::typeBinary, data, size);
}

bool RegWriteKey::deleteValue(std::wstring const& name) const {
    if (!mayAsk(name)) return false;
    // What was not there counts as deleted. The status tells it apart.
    DWORD const status = os::deleteValue(key(), name.c_str());
    return keepStatus(status) || status == os::errorFileNotFound;
}

bool RegWriteKey::deleteSubKey(std::wstring const& name) const {
    if (!mayAsk(name)) return false;
    // The system would take an empty name for the key itself, and delete all that is in it.
    if (name.find_first_not_of(L'\\') == std::wstring::npos) return keepStatus(os::errorInvalidParameter);
    DWORD const status = os::deleteTree(key(), name.c_str());
    return keepStatus(status) || status == os::errorFileNotFound;
}
