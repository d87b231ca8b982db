#include "orn/orn.h"

#include <iostream>
#include <unordered_set>

int main() {
    // Settings: a key that is made when there is none, and values of any length.
    RegWriteKey settings{RegKey::currentUser(), L"Software\\orn example\\Window"};
    if (!settings.setString(L"Title", L"Plan")) std::wcout << settings.errorMessage() << L'\n';
    if (!settings.setMultiString(L"Recent", {L"walls", L"doors"})) std::wcout << settings.errorMessage() << L'\n';

    // Reading fails quietly: the program has a default for what is not there.
    std::wstring title;
    DWORD width = 800;
    std::wcout << L"title: " << settings.getString(L"title", title) << L' ' << title << L", width: "
               << settings.getDword(L"Width", width) << L' ' << width << L'\n';
    std::vector<std::wstring> names;
    settings.getValueNames(names);
    std::wcout << names.size() << L" values\n";
    RegWriteKey{RegKey::currentUser(), L"Software"}.deleteSubKey(L"orn example");

    // An identifier is sixteen bytes; the text form is read in either case and written in upper case.
    ORN::UUID const known{L"6ba7b810-9dad-11d1-80b4-00c04fd430c8"};
    std::wcout << known << L' ' << ORN::UUID{}.isNull() << L' ' << ORN::UUID::valid(L"6ba7b810") << L'\n';

    std::unordered_set<ORN::UUID> seen{known, ORN::UUID::create(), ORN::UUID::create(), known};
    std::wcout << seen.size() << L" different ones\n";

    // What this process can use of the memory, with the limits that stand around it.
    ORN::WindowsMemoryStatus const memory;
    std::wcout << L"some memory: " << (memory.usefulRam() > 0) << L'\n';

    // Libraries come from the system's folder or the program's, never from a search.
    std::wcout << L"no such library: " << (ORN::LoadProgramLibrary(L"no-such-library") == nullptr) << L'\n';
}
