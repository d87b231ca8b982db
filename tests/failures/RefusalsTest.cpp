// What each refused call of the system leads to.
#include "orn/colour/ColourProfile.h"
#include "orn/colour/ColourTransform.h"
#include "orn/colour/ContextGdiplus.h"
#include "orn/colour/DIBitmap.h"
#include "orn/platform/RegistryKey.h"
#include "orn/platform/SystemLibrary.h"
#include "orn/platform/UUID.h"
#include "orn/platform/WindowsMemoryStatus.h"
#include "orn/text/AutoLocale.h"
#include "orn/text/Encoding.h"
#include "orn/text/Printf.h"
#include "orn/text/RawFile.h"
#include "orn/text/Strings.h"
#include "orn/text/TextReader.h"
#include "orn/text/TextWriter.h"
#include "orn/text/Url.h"
#include "tests/support/CacheFolder.h"
#include "tests/support/Faults.h"
#include "tests/support/IccProfile.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRegistry.h"

#include <clocale>

using faults::expectRefusals;
using faults::Refusal;

namespace {

/// WinError's text for a code of the system.
std::wstring failed(DWORD code, std::wstring const& call) {
    return L"WinError: Error \"" + formatMessage(code, static_cast<wchar_t const*>(nullptr)) + L"\" calling " + call;
}

TEST(Refusals, OfColourManagement) {
    using ORN::ColourProfile;
    using ORN::ColourProfileId;
    icc::Tags tags = icc::tags(icc::power(0x100));
    for (char const* tag : {"dmnd", "dmdd", "desc"}) tags.emplace_back(tag, icc::description("a text of some length"));
    icc::Bytes const bytes = icc::profile(tags);
    TemporaryFolder const folder;
    std::wstring const name = folder.put("profile.icc", bytes);
    auto const standard = [] { return !ColourProfile::create(ColourProfileId::sRGB).null(); };
    std::vector<Refusal> table{
        {"GetStandardColorSpaceProfile", standard, L"WinError: *calling GetStandardColorSpaceProfile"},
        {"GetStandardColorSpaceProfile", standard, L"WinError: *calling GetStandardColorSpaceProfile", 1}};

    faults::Outcome const creations[] = {
        [&] { return !ColourProfile::createFromFile(name).null(); },
        [&] { return !ColourProfile::create(ColourProfileId::fromData, icc::data(bytes), bytes.size()).null(); }};
    for (auto const& create : creations)
        for (auto const& [call, spared] : {std::pair{"OpenColorProfile", 0},
                                           {"GetColorProfileFromHandle", 0},
                                           {"GetColorProfileFromHandle", 1},
                                           {"GetColorProfileHeader", 0},
                                           {"GetColorProfileElement", 1},
                                           {"GetColorProfileElement", 3},
                                           {"GetColorProfileElement", 5}})
            table.push_back({call, create, L"WinError: *calling " + utf8(std::string{call}), spared});
    expectRefusals(table);

    auto const profile = ColourProfile::create(ColourProfileId::sRGB);
    auto const transform = ORN::ColourTransform::create({}, *profile, *profile);
    expectRefusals(
        {{"CreateMultiProfileTransform", [&] { return !ORN::ColourTransform::create({}, *profile, *profile).null(); },
          L"WinError: *calling CreateMultiProfileTransform"},
         {"TranslateColors",
          [&] {
              Colour const in = Colour::rgb(0.1, 0.2, 0.3);
              Colour out = Colour::rgb(0.4, 0.5, 0.6);
              std::wstring const failure = thrown([&] { transform->convert({&in, 1}, {&out, 1}); });
              return failure + (out.r() == 0.4 ? L", nothing converted" : L", converted");
          },
          L"WinError: *calling TranslateColors, nothing converted"}});
}

TEST(Refusals, OfBitmapsAndDrawing) {
    auto const start = [] { ContextGdiplus const context; };
    DIBitmap const large{2'000'000};
    expectRefusals({{"GdiplusStartup", start, failed(31, L"GdiplusStartup")},
                    {"NotificationHook", start, failed(31, L"NotificationHook")},
                    {"VirtualAlloc",
                     [&] {
                         DIBitmap target{3, 2, 24, 0};
                         std::wstring const failure = thrown([&] { target = large; });
                         return failure + L", bytes: " + std::to_wstring(target.fileSize());
                     },
                     L"bad_alloc, bytes: 78"}});
}

TEST(Refusals, OfTheRegistry) {
    TestRegistry registry;
    RegWriteKey key{registry.root(), registry.path(), 0};
    std::size_t const path = key.errorMessage().size();
    std::wstring text;
    std::vector<std::wstring> texts;
    std::vector<BYTE> bytes;
    DWORD number = 0;
    struct {
        char const* call;
        std::function<bool()> use;
    } const accessors[] = {
        {"RegQueryValueExW", [&] { return key.getString(L"v", text); }},
        {"RegQueryValueExW", [&] { return key.getMultiString(L"v", texts); }},
        {"RegQueryValueExW", [&] { return key.getDword(L"v", number); }},
        {"RegQueryValueExW", [&] { return key.getBinary(L"v", &number, 4) != 0; }},
        {"RegQueryValueExW", [&] { return key.getBinary(L"v", bytes); }},
        {"RegEnumKeyExW", [&] { return key.getSubKeys(texts); }},
        {"RegEnumValueW", [&] { return key.getValueNames(texts); }},
        {"RegSetValueExW", [&] { return key.setString(L"w", L"another"); }},
        {"RegSetValueExW", [&] { return key.setMultiString(L"w", {L"another"}); }},
        {"RegDeleteValueW", [&] { return key.setString(L"w", L"short-lived") && key.deleteValue(L"w"); }},
        {"SHDeleteKeyW", [&] { return key.deleteSubKey(L"none"); }}};
    std::vector<Refusal> table;
    for (auto const& [call, use] : accessors)
        table.push_back({call,
                         [&key, &use = use, path] {
                             bool const done = use();
                             std::wstring const told =
                                 key.errorMessage().size() > path + 2 ? L"failed: it says why" : L"";
                             return done ? L"done" + told : told;
                         },
                         L"failed: it says why"});
    table.push_back({"RegOpenKeyExW", [&] { return RegReadKey{key, L"", 0}.valid(); }, L"0"});
    table.push_back({"RegCreateKeyExW", [&] { return RegWriteKey{key, L"", 0}.valid(); }, L"0"});
    ASSERT_TRUE(key.setString(L"v", L"value"));
    expectRefusals(table);
    EXPECT_TRUE(key.getString(L"v", text));
    EXPECT_EQ(text, L"value");
    EXPECT_EQ(key.errorMessage().size(), path);
}

TEST(Refusals, OfThePlatform) {
    using ORN::UUID;
    UUID const nil, one{L"00000000-0000-0000-0000-000000000001"};
    std::wstring const compare = L"OrnError: UuidCompare 87";
    expectRefusals({
        {"UuidCreate", [] { return UUID::create().isNull(); }, L"OrnError: UuidCreate 1824"},  // on this computer only
        {"UuidCreateNil", [] { return UUID{}.isNull(); }, L"OrnError: UuidCreateNil 14"},
        {"UuidIsNil", [&] { return nil.isNull(); }, L"OrnError: UuidIsNil 87"},
        {"UuidCompare", [&] { return nil < one; }, compare},
        {"UuidCompare", [&] { return nil == one; }, compare},
        {"UuidCompare", [&] { return nil != one; }, compare},
        {"UuidCompare", [&] { return std::less<UUID>{}(nil, one); }, compare},
        {"GlobalMemoryStatusEx", [] { return ORN::WindowsMemoryStatus{}.usefulRam() > 0; },
         failed(8, L"GlobalMemoryStatusEx")},
        {"GetSystemDirectory", [] { return ORN::LoadSystemLibrary(L"kernel32.dll") != nullptr; }, L"0"},
        {"GetSystemDirectory", [] { return ORN::LoadSystemLibrary(L"libc.so.6") != nullptr; }, L"0"},
        {"GetModuleFileName", [] { return ORN::LoadProgramLibrary(L"orn-beside.library") != nullptr; }, L"0"},
    });
}

TEST(Refusals, OfConversionsAndLocales) {
    char buffer[8] = "";
    auto const pack = [&buffer](int size) {
        return [&buffer, size] {
            buffer[0] = 'x';
            std::wstring const failure = thrown([&] { packTo(L"abc", buffer, size); });
            return failure + L" -> " + utf8(std::string{buffer});
        };
    };
    DWORD const invalidFlags = 1004;
    std::wstring const packed = failed(invalidFlags, L"WideCharToMultiByte in packTo") + L" -> ";
    std::string const process = std::setlocale(LC_ALL, nullptr);
    auto const inScope = [&] {
        AutoLocale const guard{LC_ALL};
        return std::setlocale(LC_ALL, nullptr) == process;
    };
    expectRefusals({{"WideCharToMultiByte", [] { return utf8(getMBS(L"text")); }, L""},
                    {"WideCharToMultiByte", [] { return utf8(getMBS(std::wstring(500, L'x'))); }, L""},
                    {"MultiByteToWideChar", [] { return getWCS("text"); }, L""},
                    {"WideCharToMultiByte", pack(8), packed},     // the whole text
                    {"WideCharToMultiByte", pack(3), packed, 1},  // its first prefix, after the whole did not fit
                    {"_vsnwprintf", [] { return stringPrintf(L"%d units", 5); }, L"%d units"},
                    {"wcscoll", [] { return collateStrings(L"a", L"b"); }, L"0"},
                    {"_configthreadlocale", inScope, L"1"},
                    {"setlocale", inScope, L"1"}});
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
}

TEST(Refusals, OfRawFiles) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "content"), says = L"OrnError: The file \"" + name + L"\" cannot be ";
    std::unique_ptr<ORN::RawFileWriter> file{ORN::rawAppend(name)};
    auto const readHead = [&] {
        char byte;
        file->seek(0, 0);
        return file->read(&byte, 1);
    };
    auto const closeTwice = [&] {
        std::unique_ptr<ORN::RawFileWriter> const other{ORN::rawAppend(name)};
        std::wstring const failure = thrown([&] { other->close(); });
        return failure + L", then " + thrown([&] { other->close(); });
    };
    expectRefusals({{"fread", readHead, says + L"read: *"},
                    {"fseek", readHead, says + L"read: *"},
                    {"ftell", [&] { file->seek(0, 1); }, says + L"read: *"},
                    {"fwrite", [&] { file->write("x", 1), file->flush(); }, says + L"written: *"},
                    {"fflush", [&] { file->flush(); }, says + L"written: *"},
                    {"fclose", closeTwice, says + L"closed: *, then nothing"}});
    EXPECT_EQ(folder.get("file"), "contentxxx") << "what could not be written has not been lost";
    file->write("x", 1);
    faults::Refuse const refuse{"fclose"};
    EXPECT_NO_THROW(file.reset());
    EXPECT_EQ(refuse.refusals(), 1);
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

TEST(Refusals, OfTextFiles) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "one line\n"), other = folder / L"other";
    auto const readAll = [&] {
        std::unique_ptr<ORN::TextReader> const reader{ORN::TextReader::create(name)};
        std::wstring line;
        static_cast<void>(reader->readLine(line));
        std::wstring const failure = thrown([&] { reader->close(); });
        reader->close();
        return line + L", " + failure;
    };
    auto const append = [&] {
        std::wstring const failure =
            thrown([&] { delete ORN::TextWriter::create(name, ORN::textAppend, ORN::encUTF8); });
        return failure + L", " + utf8(folder.get("file"));
    };
    auto const create = [&] {
        std::unique_ptr<ORN::TextWriter> writer{ORN::TextWriter::create(other, ORN::textCreate, ORN::encUTF8)};
        writer->write(L"text");
        return writer;
    };
    auto const createAndClose = [&] {
        auto const writer = create();
        std::wstring const failure = thrown([&] { writer->close(); });
        writer->close();
        return failure;
    };
    auto const createAndDelete = [&] { create().reset(); };
    expectRefusals({{"fopen", readAll, L"OrnError: *"},
                    {"fread", readAll, L"OrnError: *"},
                    {"fread", readAll, L"OrnError: *", 1},
                    {"fclose", readAll, L"one line, OrnError: *"},
                    {"fopen", append, L"OrnError: *, one line\n"},
                    {"fread", append, L"OrnError: *, one line\n"},
                    {"fseek", append, L"OrnError: *, one line\n"},
                    {"ftell", append, L"OrnError: *, one line\n"},
                    {"fclose", createAndClose, L"OrnError: *"},
                    {"fclose", createAndDelete, L""},
                    {"fwrite", createAndDelete, L""}});
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

TEST(Refusals, OfUrls) {
    CacheFolder const cache;
    TemporaryFolder const folder;
    std::wstring const name = folder.put("a file.txt", "content"), url = L"http://h/ a";
    std::wstring const file = (name.starts_with(L'/') ? L"file://" : L"file:///") + name;
    DWORD const unspecified = 0x80004005;
    std::wstring const misunderstood = L"OrnError: The address \"" + url + L"\" cannot be understood: " +
                                       formatMessage(unspecified, static_cast<wchar_t const*>(nullptr));
    expectRefusals({{"UrlUnescape", [&] { return unescapeUrl(url); }, misunderstood},
                    {"UrlCanonicalize", [&] { return canonicalizeUrl(url); }, misunderstood},
                    {"UrlCanonicalize", [&] { return cleanupUrl(url); }, misunderstood},
                    {"UrlApplyScheme", [&] { return cleanupUrl(url); }, misunderstood},
                    {"URLDownloadToCacheFile", [&] { return !downloadUrlToCache(file).empty(); },
                     L"OrnError: The address \"" + file + L"\" cannot be downloaded: " +
                         formatMessage(unspecified, L"urlmon.dll")}});
}

}
