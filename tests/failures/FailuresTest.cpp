// What the library's actions do when a call of the system is refused, and when memory ends.
#include "orn/colour/ColourProfile.h"
#include "orn/colour/ColourTransform.h"
#include "orn/colour/ContextGdiplus.h"
#include "orn/colour/DIBitmap.h"
#include "orn/events/EventSubscription.h"
#include "orn/foundation/Collection.h"
#include "orn/os/Locale.h"
#include "orn/platform/RegistryKey.h"
#include "orn/platform/SystemLibrary.h"
#include "orn/platform/UUID.h"
#include "orn/platform/WindowsMemoryStatus.h"
#include "orn/text/AutoLocale.h"
#include "orn/text/CSVParser.h"
#include "orn/text/CSVReader.h"
#include "orn/text/CSVWriter.h"
#include "orn/text/Encoding.h"
#include "orn/text/FileName.h"
#include "orn/text/Printf.h"
#include "orn/text/QuarkTableImp.h"
#include "orn/text/RawFile.h"
#include "orn/text/Strings.h"
#include "orn/text/TextReader.h"
#include "orn/text/TextWriter.h"
#include "orn/text/Url.h"
#include "tests/support/CacheFolder.h"
#include "tests/support/Faults.h"
#include "tests/support/IccProfile.h"
#include "tests/support/MemoryStreams.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRegistry.h"

#include <clocale>
#include <cstring>
#include <deque>
#include <set>

using faults::expectFailures;

namespace {

/// WinError's text for a code of the system.
std::wstring failed(DWORD code, std::wstring const& call) {
    return L"WinError: Error \"" + formatMessage(code, static_cast<wchar_t const*>(nullptr)) + L"\" calling " + call;
}

/// Runs an action. When it lacks memory, a check looks at what is left before the exception goes on.
template <typename Action, typename Check>
void checked(Action action, Check check) {
    try {
        action();
    } catch (std::bad_alloc const&) {
        check();
        throw;
    }
}

// ---- Errors, collections, events

/// Where an exception is copied another one would end the program. The two texts are of one message at any time.
template <typename Error>
void expectFailuresOf(std::string const& name) {
    std::wstring const text = L"a text that is long enough not to lie inside the string object", before = text + text;
    std::string const narrow = getMBS(text), narrowBefore = getMBS(before);
    Error const original{text};
    auto const copied = [&] {
        Error const copy{original};
        bool const none = *copy.wWhat() == 0 && *copy.what() == 0;
        EXPECT_TRUE(none || (copy.wWhat() == text && copy.what() == narrow));
        return !none;
    };
    auto const assigned = [&] {
        Error error{before};
        checked([&] { error = original; },
                [&] { EXPECT_TRUE(error.wWhat() == before && error.what() == narrowBefore); });
        return error.wWhat() == text && error.what() == narrow;
    };
    expectFailures({{name + ", copied", copied, {}, 2, 2}, {name + ", assigned", assigned, {}, 3}});
}

TEST(Failures, OfErrors) {
    expectFailuresOf<ORN::OrnError>("OrnError");
    expectFailuresOf<ORN::NotImplemented>("NotImplemented");
}

void pushTexts() {
    ORN::Collection<std::string, 2> texts;
    std::size_t pushed = 0;
    auto const push = [&] {
        for (; pushed < 30; ++pushed) texts.emplace_back(100, 'x');
        ORN::Collection<std::string, 2> copy{texts}, moved{texts};
        copy = texts;
        moved = std::move(copy);
    };
    checked(push, [&] {
        EXPECT_EQ(texts.size(), pushed);
        texts.emplace_back("next");
        EXPECT_EQ(texts.back(), "next");
    });
}

bool subscribe() {
    int calls = 0;
    auto const count = [&calls] { ++calls; };
    using Counting = EVCallableSubscription<void, decltype(count)>;
    auto const list = EVSubscriptionList<void>::create();
    std::deque<std::unique_ptr<Counting>> attached;
    auto const attach = [&] {
        while (attached.size() < 9) attached.push_back(std::make_unique<Counting>(*list, count));
    };
    checked(attach, [&] {
        list->notify();
        EXPECT_EQ(calls, static_cast<int>(attached.size()));
        attached.clear();
        EXPECT_TRUE(list.isLastHandle());
    });
    list->notify();
    return calls == 9;
}

TEST(Failures, OfCollectionsAndEvents) {
    auto const resize = [](std::vector<std::size_t> const& sizes) {
        return [sizes] {
            ORN::Collection<int, 4> numbers;
            for (std::size_t const size : sizes) numbers.resize(size);
        };
    };
    // Beside chunk 0, which is inline: the table with chunk 1, the table again for chunk 11. It does not shrink.
    expectFailures({{"4 elements", resize({4}), {}, 0, 0},
                    {"5 elements", resize({5}), {}, 2, 2},
                    {"44 elements", resize({44}), {}, 11, 11},
                    {"45 elements", resize({45}), {}, 13, 13},
                    {"45, none, 45", resize({45, 44, 45, 0, 45}), {}, 25, 25},
                    {"texts", pushTexts, {}, 101},
                    {"subscriptions", subscribe, {}, 10}});
}

// ---- Text

TEST(Failures, OfConversionsAndLocales) {
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
    std::wstring const text(5000, L'x'), name(100, L'n');
    std::string const narrow(5000, 'x'), process = std::setlocale(LC_ALL, nullptr);
    auto const inScope = [&] {
        AutoLocale const guard{LC_ALL};
        return std::setlocale(LC_ALL, nullptr) == process;
    };
    expectFailures({
        {"getMBS", [&] { return utf8(getMBS(text)); }, {{"WideCharToMultiByte", L""}}, 2},
        {"getMBS, short", [] { return utf8(getMBS(L"text")); }, {{"WideCharToMultiByte", L""}}, 0},
        {"getWCS", [&] { return getWCS(narrow); }, {{"MultiByteToWideChar", L""}}, 2},
        {"utf8", [&] { return utf8(narrow); }, {}, 1},
        {"packTo, the whole text", pack(8), {{"WideCharToMultiByte", packed}}},
        {"packTo, its first prefix that fits", pack(3), {{"WideCharToMultiByte", packed, 1}}},
        {"packTo, a long text", [&] { return packTo(text, buffer, 8); }, {}, 0},
        {"stringPrintf", [] { return stringPrintf(L"%d units", 5); }, {{"_vsnwprintf", L"%d units"}}, 0},
        {"a short format in one block", [&] { return stringPrintf(L"%s %.3f", name.c_str(), 0.5); }, {}, 1, 1},
        // Buffers of 2048, 4096 and 8192 units, and the text.
        {"a long format", [&] { return stringPrintf(L"<%s>", text.c_str()).size() == 5002; }, {}, 4},
        {"uppercase", [&] { return uppercase(name) == std::wstring(100, L'N'); }, {}, 2},
        {"collateStrings", [] { return collateStrings(L"a", L"b"); }, {{"wcscoll", L"0"}}},
        {"a full name", [] { return absoluteFilename(L"a"); }, {{"_wfullpath", L""}}},
        {"a locale's scope", inScope, {{"_configthreadlocale", L"1"}, {"setlocale", L"1"}}},
    });
    faults::failEveryAllocation([] { AutoLocale const guard{LC_ALL}; },
                                [](bool) { EXPECT_EQ(ORN::os::threadLocaleMode(0), ORN::os::processLocale); });
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);

    // A long text is cut in few conversions.
    std::string large(400'000, '#');
    faults::Refuse const sparing{"WideCharToMultiByte", 30};
    EXPECT_EQ(packTo(std::wstring(1'000'000, L'x'), large.data(), 400'000), 399'999u);
}

/// Neither stuck nor half stored: a text that there was no memory for goes in when there is some, and once only.
bool internTexts() {
    auto const table = std::make_unique<QuarkTableImp>();
    std::set<wchar_t const*> stored;
    wchar_t given[15] = L"aaaaaaaaaaaaaa";
    auto const intern = [&] { stored.insert(table->intern(given)); };
    // Enough texts for a second block and a larger hash table.
    for (; given[0] != L'a' + 600; std::fill_n(given, 14, static_cast<wchar_t>(given[0] + 1)))
        checked(intern, [&] {
            wchar_t const* const place = table->intern(given);
            EXPECT_TRUE(std::equal(given, given + 15, place));
            EXPECT_EQ(table->intern(given), place);
            EXPECT_FALSE(stored.contains(place));
        });
    return stored.size() == 600;
}

using Fields = std::vector<std::wstring>;
std::wstring const field(200, L'f');

/// A record in two pieces. Without memory the parser starts afresh, so that the next whole record is read.
bool parseRecord() {
    std::wstring const head = field + L",\"" + field, tail = field + L"\"," + field + L"\n",
                       next = L"a," + field + L"\n";
    std::unique_ptr<ORN::CSVParser> const parser{ORN::CSVParser::create()};
    Fields fields;
    auto const parse = [&] { parser->parse(fields, head), parser->parse(fields, tail); };
    checked(parse, [&] {
        while (!parser->parse(fields, next)) {}
        EXPECT_TRUE(fields == (Fields{L"a", field}));
    });
    return fields == Fields{field, field + field, field};
}

bool parseColumns() {
    std::unique_ptr<ORN::CSVParser> const parser{ORN::CSVParser::create(field + L",name")};
    Fields fields;
    for (auto const& text : {L"name,\"" + field + L"\"\n", field + L",\"" + field, field + L"\"\n"})
        parser->parse(fields, text);
    return fields == Fields{field + field, field};
}

TEST(Failures, OfRecordsAndInternedTexts) {
    std::wstring text;
    for (int i = 0; i < 100; ++i) text += L"some field of a length,\"a quoted \"\"field\"\" of a length\",7,\n";
    ORN::CSVReader rows{text};
    std::unique_ptr<ORN::CSVParser> const parser{ORN::CSVParser::create()};
    Fields fields, row;
    auto const readRows = [&] {
        for (int i = 0; i < 30; ++i) EXPECT_TRUE(parser->parse(fields, text) && rows.read(row));
    };
    expectFailures({{"interned texts", internTexts, {}, 601},
                    {"a record", parseRecord, {}, 3},
                    {"columns", parseColumns, {}, 7},
                    {"rows of one kind", readRows, {}, 0, 0}});
}

// A record that memory was lacking for is read or written as a whole, or not at all; none is joined with another one.
TEST(Failures, OfOneRecordAmongOthers) {
    for (std::size_t const length : {1, 2, 3, 6, 7, 341, 342})
        for (int number = 0; number < 12; ++number) {
            auto const failureOf = [number](auto action) {
                return thrown([&] {
                    faults::AllocationFails const fails{number};
                    action();
                });
            };
            std::wstring const part(length, L'\u20AC');
            MemoryReader raw{utf8(L"\"c\n" + part + L"\nd\",e\nlast,y\n")};
            std::unique_ptr<ORN::TextReader> const lines{ORN::TextReader::create(raw, ORN::encUTF8)};
            ORN::CSVReader rows{*lines};
            Fields row;
            std::wstring read;
            auto const keep = [&] {
                for (std::wstring const& text : row) read += text + L'|';
            };
            std::wstring const failure = failureOf([&] { rows.read(row); });
            if (failure == L"nothing") keep();
            auto const readOthers = [&] {
                while (rows.read(row)) keep();
            };
            std::wstring const after = thrown(readOthers);
            EXPECT_TRUE(read == L"c\n" + part + L"\nd|e|last|y|" || (read.empty() && failure == after))
                << number << read;

            MemoryWriter file;
            std::unique_ptr<ORN::TextWriter> const out{
                ORN::TextWriter::create(file, ORN::encUTF8, false, ORN::lineEndLF)};
            Fields const first{part, L"b"}, next{L"c", L"d"};
            std::wstring text;
            for (ORN::CSVWriter writer : {ORN::CSVWriter{text, {}, L"\n"}, ORN::CSVWriter{*out}}) {
                failureOf([&] { writer.write(first); });
                writer.write(next);
            }
            out->flush();
            for (std::string const& written : {utf8(text), file.bytes})
                EXPECT_TRUE(written == "c,d\n" || written == utf8(part) + ",b\nc,d\n") << number << written;
        }
}

// ---- Files

TEST(Failures, OfRawFiles) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "content"), says = L"OrnError: The file \"" + name + L"\" cannot be ";
    std::unique_ptr<ORN::RawFileWriter> file{ORN::rawAppend(name)};
    auto const readHead = [&] {
        char byte;
        file->seek(0, 0);
        return file->read(&byte, 1);
    };
    auto const appendAfterReading = [&] {
        readHead();
        file->write("x", 1), file->flush();
    };
    auto const closeTwice = [&] {
        std::unique_ptr<ORN::RawFileWriter> const other{ORN::rawAppend(name)};
        std::wstring const failure = thrown([&] { other->close(); });
        return failure + L", then " + thrown([&] { other->close(); });
    };
    auto const openMissing = [&] {
        try {
            delete ORN::rawOpen(folder / L"missing");
        } catch (ORN::OrnError const&) {}
    };
    auto const openAsC = [&] {
        std::FILE* const opened = ORN::fileOpen(name, L"rb");
        return opened != nullptr && std::fclose(opened) == 0;
    };
    expectFailures({{"read", readHead, {{"fread", says + L"read: *"}, {"fseek", says + L"read: *"}}},
                    {"seek", [&] { file->seek(0, 1); }, {{"ftell", says + L"read: *"}}},
                    {"write", [&] { file->write("x", 1), file->flush(); }, {{"fwrite", says + L"written: *"}}},
                    {"flush", [&] { file->flush(); }, {{"fflush", says + L"written: *"}}},
                    {"write after reading", appendAfterReading, {{"fseek", says + L"written: *", 1}}},
                    {"close", closeTwice, {{"fclose", says + L"closed: *, then nothing"}}},
                    {"a file", [&] { delete ORN::rawOpen(name); }, {}, 2},
                    {"a missing file", openMissing, {}, 4},
                    {"a C file", openAsC, {}, 0}});
    EXPECT_EQ(folder.get("file"), "contentxxxxx") << "what could not be written has not been lost";
    file->write("x", 1);
    faults::Refuse const refuse{"fclose"};
    EXPECT_NO_THROW(file.reset());
    EXPECT_EQ(refuse.refusals(), 1);
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

TEST(Failures, OfTextFiles) {
    TemporaryFolder const folder;
    std::wstring const name = folder.put("file", "\xEF\xBB\xBFone line\n" + std::string(3000, 'x')),
                       other = folder / L"other";
    auto const read = [&] {
        std::unique_ptr<ORN::TextReader> const reader{ORN::TextReader::create(name)};
        std::wstring line, next;
        bool const whole = reader->readLine(line) && reader->readLine(next) && next.size() == 3000;
        std::wstring const failure = thrown([&] { reader->close(); });
        reader->close();
        return whole ? line + L", " + failure : L"";
    };
    auto const append = [&] {
        std::wstring const failure =
            thrown([&] { delete ORN::TextWriter::create(name, ORN::textAppend, ORN::encUTF8); });
        return failure + (folder.get("file").size() == 3012 ? L", nothing lost" : L"");
    };
    auto const create = [&](ORN::TextOpenMode mode) {
        std::unique_ptr<ORN::TextWriter> writer{ORN::TextWriter::create(other, mode, ORN::encUTF8)};
        writer->write(L"text");
        return writer;
    };
    auto const createAndClose = [&] {
        auto const writer = create(ORN::textCreate);
        std::wstring const failure = thrown([&] { writer->close(); });
        writer->close();
        return failure;
    };
    MemoryReader ordinary{std::string(2000, '\n') + "a line of some length\n and another one, a little longer\n"};
    std::unique_ptr<ORN::TextReader> const reader{ORN::TextReader::create(ordinary, ORN::encUTF8)};
    std::wstring line(100, L'x');
    auto const readOrdinary = [&] {
        while (reader->readLine(line)) {}
    };
    std::wstring const error = L"OrnError: *", unchanged = error + L", nothing lost";
    expectFailures({
        {"read",
         read,
         {{"fopen", error}, {"fread", error}, {"fread", error, 1}, {"fclose", L"one line, OrnError: *"}},
         5},
        {"an ordinary line", readOrdinary, {}, 0, 0},
        {"append", append, {{"fopen", unchanged}, {"fread", unchanged}, {"fseek", unchanged}, {"ftell", unchanged}}},
        {"close", createAndClose, {{"fclose", error}}},
        {"delete", [&] { create(ORN::textCreate).reset(); }, {{"fclose", L""}, {"fwrite", L""}}},
        {"write", [&] { create(ORN::textCreate)->close(); }, {}, 4},
        {"write at the end", [&] { create(ORN::textAppend)->close(); }, {}, 4},
    });
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

TEST(Failures, OfUrls) {
    CacheFolder const cache;
    TemporaryFolder const folder;
    std::wstring const name = folder.put("a file to download.txt", "content"), url = L"http://h/ a";
    std::wstring const file = (name.starts_with(L'/') ? L"file://" : L"file:///") + name;
    auto const says = [](std::wstring const& address, wchar_t const* what, wchar_t const* module) {
        return L"OrnError: The address \"" + address + L"\" cannot be " + what + L": " +
               formatMessage(DWORD{0x80004005}, module);
    };
    std::wstring const misunderstood = says(url, L"understood", nullptr);
    expectFailures({
        {"unescape", [&] { return unescapeUrl(url); }, {{"UrlUnescape", misunderstood}}, 1},
        {"canonicalize", [&] { return canonicalizeUrl(url); }, {{"UrlCanonicalize", misunderstood}}, 1},
        {"clean up",
         [&] { return cleanupUrl(url); },
         {{"UrlCanonicalize", misunderstood}, {"UrlApplyScheme", misunderstood}},
         1},
        {"guess", [] { return cleanupUrl(L"www.h.org/a long path/../b"); }, {}, 1},
        {"download",
         [&] { return !downloadUrlToCache(file).empty(); },
         {{"URLDownloadToCacheFile", says(file, L"downloaded", L"urlmon.dll")}},
         1},
    });
}

// ---- Colour

TEST(Failures, OfColours) {
    using ORN::ColourProfile;
    using ORN::ColourProfileId;
    icc::Tags tags = icc::tags(icc::power(0x100));
    for (char const* tag : {"dmnd", "dmdd", "desc"}) tags.emplace_back(tag, icc::description("a text of some length"));
    icc::Bytes const bytes = icc::profile(tags);
    TemporaryFolder const folder;
    std::wstring const name = folder.put("profile.icc", bytes);
    auto const refused = [](std::string const& call, int spared = 0) {
        return faults::Refusal{call, L"WinError: *calling " + utf8(call), spared};
    };
    std::vector<faults::Refusal> const refusals{refused("OpenColorProfile"),
                                                refused("GetColorProfileFromHandle"),
                                                refused("GetColorProfileFromHandle", 1),
                                                refused("GetColorProfileHeader"),
                                                refused("GetColorProfileElement", 1),
                                                refused("GetColorProfileElement", 3),
                                                refused("GetColorProfileElement", 5)};
    auto const fromFile = [&] { return !ColourProfile::createFromFile(name).null(); };
    auto const fromBytes = [&] {
        return !ColourProfile::create(ColourProfileId::fromData, icc::data(bytes), bytes.size()).null();
    };
    auto const standard = [] { return !ColourProfile::create(ColourProfileId::sRGB).null(); };
    std::string const asks = "GetStandardColorSpaceProfile", joins = "CreateMultiProfileTransform";
    auto const profile = ColourProfile::create(ColourProfileId::sRGB);
    auto const join = [&] { return !ORN::ColourTransform::create({}, *profile, *profile).null(); };
    auto const convert = [transform = ORN::ColourTransform::create({}, *profile, *profile)] {
        Colour const in = Colour::rgb(0.1, 0.2, 0.3);
        Colour out = Colour::rgb(0.4, 0.5, 0.6);
        std::wstring const failure = thrown([&] { transform->convert({&in, 1}, {&out, 1}); });
        return failure + (out.r() == 0.4 ? L", nothing converted" : L", converted");
    };
    expectFailures(
        {{"a profile's file", fromFile, refusals, 4},
         {"a profile's bytes", fromBytes, refusals, 4},
         {"the standard profile", standard, {refused(asks), refused(asks, 1)}, 4},
         {"a transform", join, {refused(joins)}, 1},
         {"a conversion", convert, {{"TranslateColors", L"WinError: *calling TranslateColors, nothing converted"}}}});
    EXPECT_TRUE(profile.isLastHandle());
}

TEST(Failures, OfBitmapsAndDrawing) {
    DIBitmap const large{2'000'000}, small{70}, wanted{3, 2, 24, 0};
    auto const assign = [&wanted](DIBitmap const& source) {
        return [&wanted, &source] {
            DIBitmap target{wanted};
            checked([&] { target = source; },
                    [&] { EXPECT_EQ(std::memcmp(target.fileData(), wanted.fileData(), 54), 0); });
            return target.fileSize() == source.fileSize();
        };
    };
    auto const start = [] { ContextGdiplus const context; };
    TemporaryFolder const folder;
    std::wstring const file = folder / L"a.bmp", error = L"OrnError: *";
    auto const write = [&] { wanted.writeToFile(file); };
    auto const read = [&] { return DIBitmap::createFromFile(file).fileSize(); };
    expectFailures(
        {{"a bitmap to a file", write, {{"fopen", error}, {"fwrite", error}, {"fclose", error}}, 1},
         {"a bitmap from a file", read, {{"fopen", error}, {"fread", error}, {"fread", error, 1}, {"fseek", error}}, 2},
         {"less than a mebibyte", [] { DIBitmap const bitmap{0x100000 - 2}; }, {}, 1, 1},
         {"a mebibyte and more", [] { DIBitmap const bitmap{0x100001 - 2}; }, {{"VirtualAlloc", L"bad_alloc"}}, 0, 0},
         {"a small bitmap", assign(small), {}, 2},
         {"a large bitmap", assign(large), {{"VirtualAlloc", L"bad_alloc"}}, 1},
         {"drawing",
          start,
          {{"GdiplusStartup", failed(31, L"GdiplusStartup")}, {"NotificationHook", failed(31, L"NotificationHook")}}}});
}

// ---- The platform

TEST(Failures, OfTheRegistry) {
    TestRegistry registry;
    RegWriteKey key{registry.root(), registry.path(), 0};
    std::size_t const path = key.errorMessage().size();
    std::wstring const longText(400, L'x');
    std::wstring text;
    Fields texts;
    std::vector<BYTE> bytes;
    DWORD number = 0;
    ASSERT_TRUE(key.setString(L"s", longText) && key.setMultiString(L"m", {longText}) && key.setDword(L"d", 5) &&
                key.setBinary(L"b", "1234", 4));
    auto const accessor = [&](char const* name, char const* call, std::function<bool()> const& use) {
        auto const used = [&, use] {
            bool const done = use();
            std::wstring{}.swap(text);  // so that it allocates again
            Fields{}.swap(texts);
            EXPECT_TRUE(done ? key.errorMessage().size() == path : key.errorMessage().size() > path + 2);  // says why
            return done;
        };
        return faults::Case{name, used, {{call, L"0"}}, 0};
    };
    char const *const query = "RegQueryValueExW", *const set = "RegSetValueExW";
    auto const open = [&] { return RegReadKey(registry.root(), registry.path(), 0).valid(); };
    auto const create = [&] { return RegWriteKey(key, L"a\\b\\c", 0).valid(); };
    auto const deleteValue = [&] { return key.setString(L"gone", L"") && key.deleteValue(L"gone"); };
    auto const deleteSubKey = [&] { return RegWriteKey(key, L"gone").valid() && key.deleteSubKey(L"gone"); };
    expectFailures({
        {"open", open, {{"RegOpenKeyExW", L"0"}}, 0},
        {"create", create, {{"RegCreateKeyExW", L"0"}}, 0},
        accessor("getString", query, [&] { return key.getString(L"s", text); }),
        accessor("getUnexpandedString", query, [&] { return key.getUnexpandedString(L"s", text); }),
        accessor("getMultiString", query, [&] { return key.getMultiString(L"m", texts); }),
        accessor("getDword", query, [&] { return key.getDword(L"d", number); }),
        accessor("getBinary", query, [&] { return key.getBinary(L"b", &number, 4) != 0; }),
        accessor("getBinary, all", query, [&] { return key.getBinary(L"b", bytes); }),
        accessor("getSubKeys", "RegEnumKeyExW", [&] { return key.getSubKeys(texts); }),
        accessor("getValueNames", "RegEnumValueW", [&] { return key.getValueNames(texts) && texts.size() >= 4; }),
        accessor("setString", set, [&] { return key.setString(L"another value", L"a text of some length"); }),
        accessor("setMultiString", set, [&] { return key.setMultiString(L"m", {L"a text of some length"}); }),
        accessor("deleteValue", "RegDeleteValueW", deleteValue),
        accessor("deleteSubKey", "SHDeleteKeyW", deleteSubKey),
    });
}

TEST(Failures, OfThePlatform) {
    using ORN::UUID;
    UUID const nil, one{L"00000000-0000-0000-0000-000000000001"};
    faults::Refusal const compare{"UuidCompare", L"OrnError: UuidCompare 87"}, folder{"GetSystemDirectory", L"0"};
    expectFailures({
        {"a new one",
         [] { return UUID::create().isNull(); },
         {{"UuidCreate", L"OrnError: UuidCreate 1824"}}},  // local only
        {"none", [] { return UUID{}.isNull(); }, {{"UuidCreateNil", L"OrnError: UuidCreateNil 14"}}},
        {"isNull", [&] { return nil.isNull(); }, {{"UuidIsNil", L"OrnError: UuidIsNil 87"}}},
        {"less", [&] { return nil < one; }, {compare}},
        {"equal", [&] { return nil == one; }, {compare}},
        {"not equal", [&] { return nil != one; }, {compare}},
        {"std::less", [&] { return std::less<UUID>{}(nil, one); }, {compare}},
        {"memory",
         [] { return ORN::WindowsMemoryStatus{}.usefulRam() > 0; },
         {{"GlobalMemoryStatusEx", failed(8, L"GlobalMemoryStatusEx")}}},
        {"Windows", [] { return ORN::LoadSystemLibrary(L"kernel32.dll") != nullptr; }, {folder}},
        {"Linux", [] { return ORN::LoadSystemLibrary(L"libc.so.6") != nullptr; }, {folder}},
        {"program",
         [] { return ORN::LoadProgramLibrary(L"orn-beside.library") != nullptr; },
         {{"GetModuleFileName", L"0"}}},
    });
}

}
