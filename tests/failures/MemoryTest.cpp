// What each owner of memory does when an allocation fails.
#include "orn/colour/ColourProfile.h"
#include "orn/colour/ColourTransform.h"
#include "orn/colour/DIBitmap.h"
#include "orn/events/EventSubscription.h"
#include "orn/foundation/Collection.h"
#include "orn/os/Locale.h"
#include "orn/platform/RegistryKey.h"
#include "orn/text/AutoLocale.h"
#include "orn/text/CSVParser.h"
#include "orn/text/CSVReader.h"
#include "orn/text/Encoding.h"
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

using faults::expectOwners;

namespace {

/// Runs an action; when it lacks memory, lets a check look at what is left before the exception goes on.
template <typename Action, typename Check>
bool checked(Action action, Check check) {
    try {
        action();
    } catch (std::bad_alloc const&) {
        check();
        throw;
    }
    return true;
}

/// Where an exception is copied another one would end the program. The two texts are of one message at any time.
template <typename Error>
void expectOwnersOf(char const* name) {
    std::wstring const text = L"a text that is long enough not to lie inside the string object", before = text + text;
    std::string const narrow = getMBS(text), narrowBefore = getMBS(before);
    Error const original{text};
    expectOwners({{std::string{name} + ", copied",
                   [&] {
                       Error const copy{original};
                       bool const none = *copy.wWhat() == 0 && *copy.what() == 0;
                       EXPECT_TRUE(none || (copy.wWhat() == text && copy.what() == narrow));
                       return !none;
                   },
                   2, 2},
                  {std::string{name} + ", assigned",
                   [&] {
                       Error assigned{before};
                       checked([&] { assigned = original; },
                               [&] { EXPECT_TRUE(assigned.wWhat() == before && assigned.what() == narrowBefore); });
                       return assigned.wWhat() == text && assigned.what() == narrow;
                   },
                   3}});
}

TEST(FailedAllocations, OfErrors) {
    expectOwnersOf<ORN::OrnError>("OrnError");
    expectOwnersOf<ORN::NotImplemented>("NotImplemented");
}

TEST(FailedAllocations, OfCollectionsAndEvents) {
    auto const collection = [] {
        ORN::Collection<std::string, 2> texts;
        std::size_t pushed = 0;
        return checked(
            [&] {
                for (; pushed < 30; ++pushed) texts.emplace_back(100, 'x');
                ORN::Collection<std::string, 2> copy{texts};
                copy = texts;
            },
            [&] {
                EXPECT_EQ(texts.size(), pushed);
                texts.emplace_back("next");
                EXPECT_EQ(texts.back(), "next");
            });
    };
    auto const subscriptions = [] {
        int calls = 0;
        auto const count = [&calls] { ++calls; };
        using Counting = EVCallableSubscription<void, decltype(count)>;
        auto const list = EVSubscriptionList<void>::create();
        std::deque<std::unique_ptr<Counting>> attached;
        checked(
            [&] {
                for (int i = 0; i < 9; ++i) attached.push_back(std::make_unique<Counting>(*list, count));
            },
            [&] {
                list->notify();
                EXPECT_EQ(calls, static_cast<int>(attached.size()));
                attached.clear();
                EXPECT_TRUE(list.isLastHandle());
            });
        list->notify();
        return calls == 9;
    };
    auto const resized = [](std::initializer_list<std::size_t> sizes) {
        ORN::Collection<int, 4> numbers;
        for (std::size_t const size : sizes) numbers.resize(size);
        return true;
    };
    // Beside chunk 0, which is inline: the table with chunk 1, the table again for chunk 11. It does not shrink.
    expectOwners({{"four elements", [&] { return resized({4}); }, 0, 0},
                  {"five", [&] { return resized({5}); }, 2, 2},
                  {"44", [&] { return resized({44}); }, 11, 11},
                  {"45", [&] { return resized({45}); }, 13, 13},
                  {"44 after 45, and none, and 45",
                   [&] {
                       return resized({45, 44, 45, 0, 45});
                   },
                   25, 25},
                  {"collection", collection, 101},
                  {"subscriptions", subscriptions, 10}});
}

TEST(FailedAllocations, OfConversionsAndLocales) {
    std::wstring const wide(70, L'x'), text(5000, L'x'), name(100, L'n');
    std::string const narrow(5000, 'x'), process = std::setlocale(LC_ALL, nullptr);
    expectOwners({{"conversions",
                   [&] {
                       char buffer[8];
                       return utf8(narrow) == text && getWCS(narrow) == text && getMBS(wide).size() == 70 &&
                              packTo(wide, buffer, 8) == 7;
                   },
                   4},
                  {"a short format takes one block for its text",
                   [&] { return stringPrintf(L"%d %s %.3f", 5, name.c_str(), 0.5) == L"5 " + name + L" 0.500"; }, 3, 3},
                  {"a long format",  // buffers of 2048, 4096 and 8192 units, and the text
                   [&] { return stringPrintf(L"<%s>", text.c_str()).size() == 5002; }, 4},
                  {"upper case", [&] { return uppercase(wide) == std::wstring(70, L'X'); }, 2}});

    { AutoLocale const first{LC_ALL}; }  // what the system keeps for a locale, it keeps from its first use on
    long const before = faults::liveBlocks();
    faults::failEveryAllocation([] { AutoLocale const guard{LC_ALL}; },
                                [before](bool) {
                                    EXPECT_EQ(faults::liveBlocks(), before);
                                    EXPECT_EQ(ORN::os::threadLocaleMode(0), ORN::os::processLocale);
                                });
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), process);
}

/// Neither stuck nor half stored: a text that there was no memory for goes in when there is some, and once only.
bool internedTexts() {
    auto const table = std::make_unique<QuarkTableImp>();
    std::set<wchar_t const*> stored;
    wchar_t given[15] = L"aaaaaaaaaaaaaa";
    // Enough texts for a second block and a larger hash table.
    for (; given[0] != L'a' + 600; std::fill_n(given, 14, static_cast<wchar_t>(given[0] + 1)))
        checked([&] { stored.insert(table->intern(given)); },
                [&] {
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
bool parsedRecord() {
    std::wstring const head = field + L",\"" + field, tail = field + L"\"," + field + L"\n",
                       next = L"a," + field + L"\n";
    std::unique_ptr<ORN::CSVParser> const parser{ORN::CSVParser::create()};
    Fields fields;
    checked([&] { parser->parse(fields, head), parser->parse(fields, tail); },
            [&] {
                while (!parser->parse(fields, next)) {}
                EXPECT_TRUE(fields == (Fields{L"a", field}));
            });
    return fields == Fields{field, field + field, field};
}

bool parsedColumns() {
    std::unique_ptr<ORN::CSVParser> const parser{ORN::CSVParser::create(field + L",name")};
    Fields fields;
    for (auto const& text : {L"name,\"" + field + L"\"\n", field + L",\"" + field, field + L"\"\n"})
        parser->parse(fields, text);
    return fields == Fields{field + field, field};
}

TEST(FailedAllocations, OfRecordsAndInternedTexts) {
    std::wstring text;
    for (int i = 0; i < 100; ++i) text += L"some field of a length,\"a quoted \"\"field\"\" of a length\",7,\n";
    ORN::CSVReader rows{text};
    std::unique_ptr<ORN::CSVParser> const parser{ORN::CSVParser::create()};
    Fields fields, row;
    auto const nextRow = [&] { return parser->parse(fields, text) && rows.read(row); };
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(nextRow());
    expectOwners({{"interned texts", internedTexts, 601},
                  {"a record", parsedRecord, 3},
                  {"columns", parsedColumns, 7},
                  {"rows of one kind",
                   [&] {
                       for (int i = 0; i < 40; ++i) EXPECT_TRUE(nextRow());
                       return true;
                   },
                   0, 0}});
}

TEST(FailedAllocations, OfFiles) {
    TemporaryFolder const folder;
    std::wstring const text(3000, L'x'), raw = folder.put("raw file", "content"), missing = folder / L"missing";
    std::wstring const read = folder.put("file", "\xEF\xBB\xBF" + std::string(3000, 'x') + "\nlast");
    auto const opened = [](std::wstring const& name) {
        try {
            delete ORN::rawOpen(name);
        } catch (ORN::OrnError const&) {}
        return true;
    };
    auto const writes = [&](ORN::TextOpenMode mode) {
        std::unique_ptr<ORN::TextWriter> const writer{ORN::TextWriter::create(folder / L"new", mode, ORN::encUTF8)};
        writer->write(L"text");
        writer->close();
        return true;
    };
    MemoryReader ordinary{std::string(2000, '\n') + "a line of some length\n and another one, a little longer\n"};
    std::unique_ptr<ORN::TextReader> const reader{ORN::TextReader::create(ordinary, ORN::encUTF8)};
    std::wstring line;
    line.reserve(100);
    expectOwners({{"a file", [&] { return opened(raw); }, 2},
                  {"a missing file", [&] { return opened(missing); }, 4},
                  {"a C file",
                   [&] {
                       std::FILE* const file = ORN::fileOpen(raw, L"rb");
                       return file != nullptr && std::fclose(file) == 0;
                   },
                   0},
                  {"a text file read",
                   [&] {
                       std::unique_ptr<ORN::TextReader> const file{ORN::TextReader::create(read)};
                       std::wstring first, second;
                       return file->readLine(first) && file->readLine(second) && first == text && second == L"last";
                   },
                   5},
                  {"an ordinary line",
                   [&] {
                       while (reader->readLine(line)) {}
                       return true;
                   },
                   0, 0},
                  {"a text file written", [&] { return writes(ORN::textCreate); }, 4},
                  {"a text file appended to", [&] { return writes(ORN::textAppend); }, 4}});
    EXPECT_NO_THROW(folder.removeAll()) << "a file is still open";
}

TEST(FailedAllocations, OfUrls) {
    CacheFolder const cache;
    TemporaryFolder const folder;
    std::wstring const name = folder.put("a file to download.txt", "content");
    std::wstring const file = (name.starts_with(L'/') ? L"file://" : L"file:///") + name;
    std::wstring const pages = L"www.h.org/a long path/../b";
    expectOwners({{"unescaped", [&] { return !unescapeUrl(pages).empty(); }, 1},
                  {"canonical", [&] { return !canonicalizeUrl(pages).empty(); }, 1},
                  {"guessed", [&] { return !cleanupUrl(pages).empty(); }, 1},
                  {"downloaded", [&] { return !downloadUrlToCache(file).empty(); }, 1}});
}

TEST(FailedAllocations, OfColours) {
    using ORN::ColourProfile;
    using ORN::ColourProfileId;
    icc::Tags tags = icc::tags(icc::power(0x100));
    for (char const* tag : {"dmnd", "dmdd", "desc"}) tags.emplace_back(tag, icc::description("a text of some length"));
    icc::Bytes const bytes = icc::profile(tags);
    TemporaryFolder const folder;
    std::wstring const name = folder.put("profile.icc", bytes);
    auto const profile = ColourProfile::create(ColourProfileId::sRGB);
    DIBitmap const small{70};
    DIBitmap const wanted{3, 2, 24, 0};
    expectOwners(
        {{"a profile's file", [&] { return !ColourProfile::createFromFile(name).null(); }, 4},
         {"a profile's bytes",
          [&] { return !ColourProfile::create(ColourProfileId::fromData, icc::data(bytes), bytes.size()).null(); }, 4},
         {"the standard profile", [] { return !ColourProfile::create(ColourProfileId::sRGB).null(); }, 4},
         {"a transform", [&] { return !ORN::ColourTransform::create({}, *profile, *profile).null(); }, 1},
         {"a bitmap",
          [&] {
              DIBitmap target{wanted};
              checked([&] { target = small; },
                      [&] { EXPECT_EQ(std::memcmp(target.fileData(), wanted.fileData(), 54), 0); });
              return target.fileSize() == small.fileSize();
          },
          2}});
    EXPECT_TRUE(profile.isLastHandle());
}

TEST(FailedAllocations, OfTheRegistry) {
    TestRegistry registry;
    RegWriteKey key{registry.root(), registry.path(), 0};
    std::wstring const longText(400, L'x'), text = L"a text of some length";
    ASSERT_TRUE(key.setString(L"s", longText) && key.setMultiString(L"m", {longText}));
    std::wstring read;
    Fields texts;
    std::vector<faults::Owner> table{
        {"getString", [&] { return key.getString(L"s", read); }, 0},
        {"getMultiString", [&] { return key.getMultiString(L"m", texts); }, 0},
        {"setString", [&] { return key.setString(L"another value", text); }, 0},
        {"setMultiString", [&] { return key.setMultiString(L"m", {text}); }, 0},
        {"getUnexpandedString", [&] { return key.getUnexpandedString(L"s", read); }, 0},
        {"getValueNames", [&] { return key.getValueNames(texts) && texts.size() == 3; }, 0},
        {"getSubKeys", [&] { return key.getSubKeys(texts); }, 0},
        {"open",
         [&] {
             return RegReadKey{registry.root(), registry.path(), 0}.valid();
         },
         0},
        {"create",
         [&] {
             return RegWriteKey{key, L"a\\b\\c", 0}.valid();
         },
         0},
        {"deleteSubKey", [&] { return key.deleteSubKey(L"a"); }, 0},
        {"deleteValue", [&] { return key.setString(L"gone", text) && key.deleteValue(L"gone"); }, 0},
    };
    for (auto& owner : table)
        owner.use = [&, use = owner.use] {
            std::wstring{}.swap(read);  // so that it allocates again
            Fields{}.swap(texts);
            return use();
        };
    expectOwners(table);
}

}
