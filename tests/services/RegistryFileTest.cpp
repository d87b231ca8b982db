#include "orn/platform/RegistryKey.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

using testing::EndsWith;
using namespace std::chrono_literals;
using Path = std::filesystem::path;

namespace {

/// Reads and writes below the user's root.
/// @{
RegWriteKey made(std::wstring const& key) { return RegWriteKey{RegKey::currentUser(), key}; }
bool thereIs(std::wstring const& key) { return RegReadKey{RegKey::currentUser(), key}.valid(); }
bool write(std::wstring const& key, std::wstring const& text) { return made(key).setString(L"name", text); }
std::wstring read(std::wstring const& key, std::wstring const& name = L"name") {
    std::wstring text;
    RegReadKey{RegKey::currentUser(), key}.getString(name, text);
    return text;
}
std::wstring refusal(std::wstring const& key) { return made(key).errorMessage(); }
/// @}

class RegistryFile : public testing::Test {
protected:
    RegistryFile() { use(file_); }
    ~RegistryFile() override {
        for (char const* name : {"ORN_REGISTRY", "XDG_CONFIG_HOME"}) ::unsetenv(name);
    }

    static void use(Path const& file) { ::setenv("ORN_REGISTRY", file.c_str(), 1); }
    std::unique_ptr<ChildProcess> start(std::vector<std::string> const& words) const {
        return std::make_unique<ChildProcess>("orn-services-probe", words, std::map<std::string, Path>{},
                                              path_ / words.back());
    }
    /// What SQLite itself answers about a file.
    std::string ask(std::string const& sql, std::string const& file = "registry.db") const {
        sqlite3* database = nullptr;
        std::string answer;
        auto const keep = [](void* place, int, char** columns, char**) {
            *static_cast<std::string*>(place) += columns[0];
            return 0;
        };
        EXPECT_EQ(sqlite3_open((path_ / file).c_str(), &database), SQLITE_OK);
        sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), keep, &answer, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
        sqlite3_close(database);
        return answer;
    }
    static unsigned int rights(Path const& file) {
        struct stat status {};
        return ::stat(file.c_str(), &status) == 0 ? status.st_mode & 0777 : 0;
    }

    TemporaryFolder folder_;
    Path const path_ = folder_.path(), file_ = path_ / "registry.db";
    std::wstring const damaged_ = L"The configuration registry database is corrupt.";
};

TEST_F(RegistryFile, IsMadeForWritingOnlyWithTheFoldersAboveIt) {
    use("");
    ::setenv("XDG_CONFIG_HOME", (path_ / "a/b").c_str(), 1);
    RegReadKey missing{RegKey::currentUser(), L"key"};
    EXPECT_EQ(missing.errorMessage(), L"HKEY_CURRENT_USER\\key\r\nThe system cannot find the file specified.");
    std::vector<std::wstring> names;
    EXPECT_TRUE((RegReadKey{RegKey::currentUser(), L""}.getSubKeys(names) && names.empty()));
    EXPECT_FALSE(std::filesystem::exists(path_ / "a"));
    EXPECT_TRUE(made(L"key").valid());
    EXPECT_EQ(rights(path_ / "a/b/orn"), 0700u);
    EXPECT_EQ(rights(path_ / "a/b/orn/registry.db"), 0600u);

    // A folder that cannot be one, and a name that is too long.
    use(path_ / "a/b/orn/registry.db/file");
    EXPECT_THAT(refusal(L"key"), EndsWith(L"\r\nThe system cannot find the path specified."));
    use(file_);
    EXPECT_THAT(refusal(L"key\\" + std::wstring(256, L'x')), EndsWith(L"\r\nThe parameter is incorrect."));
    EXPECT_FALSE(thereIs(L"key"));
}

TEST_F(RegistryFile, ThatIsNoneOrDamagedIsNeverWrittenTo) {
    for (int number = 0; number < 200; ++number)
        ASSERT_TRUE(write(L"key\\" + std::to_wstring(number), std::wstring(100, L'x')));
    ask("PRAGMA wal_checkpoint(TRUNCATE)");
    std::string const whole = folder_.get("registry.db");
    ask("CREATE TABLE t(x); INSERT INTO t VALUES(1)", "foreign.db");
    ask("VACUUM", "hollow.db");
    std::string newer = whole, wrecked = whole;
    newer[63] = 2;  // the format's number
    std::fill(wrecked.begin() + 3 * 4096, wrecked.begin() + 5 * 4096, '\x55');
    ASSERT_GT(whole.size(), 10 * 4096u);

    std::wstring const foreign = L"specified file is not in a registry file format.";
    struct {
        std::string bytes;
        std::wstring text;
    } const cases[] = {
        {"a letter to somebody\n" + std::string(5000, ' '), foreign},
        {folder_.get("foreign.db"), foreign},
        {folder_.get("hollow.db"), foreign},
        {newer, foreign},
        {wrecked, damaged_},
        {whole.substr(0, whole.size() - 1), damaged_},
        {whole.substr(0, 4096), damaged_},
        {whole.substr(0, 5000), damaged_},
    };
    for (int number = 0; auto const& [bytes, text] : cases) {
        std::string const name = "case" + std::to_string(number++);
        folder_.put(name, bytes);
        use(path_ / name);
        EXPECT_THAT((RegReadKey{RegKey::currentUser(), L"key\\7"}.errorMessage()), EndsWith(text)) << name;
        EXPECT_THAT(refusal(L"key\\7"), EndsWith(text)) << name;
        EXPECT_FALSE(write(L"key\\7", L"y"));
        EXPECT_EQ(folder_.get(name), bytes) << name;
    }
    use("/dev/null");
    EXPECT_THAT(refusal(L"key"), EndsWith(foreign));
    // Nor is the log of another program written back.
    ask("PRAGMA journal_mode = WAL; CREATE TABLE t(x)", "logged.db");
    std::string const logged = folder_.get("logged.db");
    use(path_ / "logged.db");
    EXPECT_THAT(refusal(L"key"), EndsWith(foreign));
    EXPECT_EQ(folder_.get("logged.db"), logged);

    // A file of no bytes has nothing in it yet.
    folder_.put("empty", "");
    use(path_ / "empty");
    EXPECT_FALSE(thereIs(L"key"));
    EXPECT_EQ(folder_.get("empty"), "");
    EXPECT_TRUE(made(L"key").valid());
}

TEST_F(RegistryFile, IsWalkedToAnEndWhateverItsKeysSayOfEachOther) {
    ASSERT_TRUE(write(L"key\\x\\y", L"gone") && write(L"kept", L"kept"));
    // The user's root below one of its keys, a key below itself, and all of them below one key without end.
    ask("PRAGMA ignore_check_constraints = ON;"
        "INSERT INTO keys SELECT -2147483647, id, x'5200', 'r' FROM keys WHERE name = 'y';"
        "INSERT INTO keys SELECT 0, id, x'5A00', 'z' FROM keys WHERE name = 'y';"
        "INSERT INTO keys VALUES(1000, 1000, x'5300', 's')");
    EXPECT_FALSE(thereIs(L"key\\x\\y\\r") || thereIs(L"key\\x\\y\\z"));
    EXPECT_TRUE(made(L"key").deleteSubKey(L"x"));
    EXPECT_FALSE(thereIs(L"key\\x"));
    EXPECT_EQ(read(L"kept"), L"kept");

    // A connection that finds such keys takes nothing from the file.
    ask("VACUUM INTO '" + (path_ / "copy").string() + "'");
    use(path_ / "copy");
    EXPECT_THAT(refusal(L"kept"), EndsWith(damaged_));
}

TEST_F(RegistryFile, ThatMayNotBeWrittenIsReadAllTheSameAndWrittenAsSoonAsItMayBe) {
    ASSERT_TRUE(write(L"key", L"value"));
    for (std::string const end : {"", "-wal", "-shm"}) {
        ASSERT_EQ(::chmod((file_.string() + end).c_str(), 0444), 0);
        ASSERT_EQ(::chown((file_.string() + end).c_str(), 65534, 65534) == 0, ::geteuid() == 0);
    }
    EXPECT_EQ(start({"only-reading"})->wait(60s), 0);
    EXPECT_EQ(folder_.get("only-reading"), "value; HKEY_CURRENT_USER\\key\r\nAccess is denied.\n");
    EXPECT_EQ(read(L"key"), L"changed");
}

TEST_F(RegistryFile, OfAnotherUsersProgramIsNotTheOneThatTheEnvironmentNames) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a program another user's";
#if defined(ORN_ADDRESS_SANITIZER)
    GTEST_SKIP() << "the sanitizer cannot look at its own process";
#endif
    Path const program = path_ / "probe", home = path_ / "home";
    std::filesystem::copy_file(std::filesystem::read_symlink("/proc/self/exe").replace_filename("orn-services-probe"),
                               program);
    std::filesystem::create_directory(home);
    for (auto const& name : {path_, program, home}) ASSERT_EQ(::chown(name.c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chmod(path_.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(program.c_str(), 04755), 0);
    ChildProcess process{program,
                         {"privileged"},
                         {{"HOME", home}, {"XDG_CONFIG_HOME", home}, {"ORNDEBUGPRINTFILE", path_ / "diagnosis"}},
                         path_ / "printed"};
    EXPECT_EQ(process.wait(60s), 0);
    EXPECT_FALSE(std::filesystem::exists(file_) || std::filesystem::exists(path_ / "diagnosis"));
    EXPECT_TRUE(std::filesystem::is_empty(home));
}

TEST_F(RegistryFile, IsSharedByProcessesAndThreadsFromItsFirstMomentOn) {
    std::vector<std::unique_ptr<ChildProcess>> processes;
    std::vector<std::jthread> threads;
    for (int number = 0; number < 4; ++number)
        processes.push_back(start({"write", "process" + std::to_string(number)}));
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([number] {
            RegWriteKey const key = made(L"shared\\thread" + std::to_wstring(number));
            for (std::wstring time, text; time.size() < 100; time += L'x')
                EXPECT_TRUE(key.setString(time, L"written") && key.getString(time, text));
        });
    }
    threads.clear();
    for (auto const& process : processes) EXPECT_EQ(process->wait(120s), 0);
    for (int number = 0; number < 400; ++number) {
        std::wstring const name = L"process" + std::to_wstring(number / 100), time = std::to_wstring(number % 100);
        EXPECT_EQ(read(L"SHARED\\" + name, time), name + time);
    }
    EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(ask("SELECT count(*) FROM data"), "800");
}

TEST_F(RegistryFile, ThatAnotherProcessKeepsIsWaitedForTenSecondsAltogether) {
    ASSERT_TRUE(made(L"key").valid());
    use(path_ / "another");
    ASSERT_TRUE(made(L"key").valid());  // which lets the first file go
    use(file_);
    ASSERT_EQ(ask("PRAGMA journal_mode = DELETE"), "delete");
    // One who reads is in the way of those who would turn the log on.
    sqlite3* reader = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &reader), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(reader, "BEGIN; SELECT * FROM keys", nullptr, nullptr, nullptr), SQLITE_OK);
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_EQ(start({"write", "one"})->wait(40s), 1);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 9s);
    sqlite3_close(reader);
    EXPECT_EQ(start({"write", "one"})->wait(40s), 0);
}

TEST_F(RegistryFile, ServesBothSidesOfAFork) {
    EXPECT_EQ(start({"fork"})->wait(120s), 0);
    EXPECT_EQ(read(L"forked", L"child") + read(L"forked", L"parent"), L"donedone");
    EXPECT_EQ(read(L"forked\\child", L"49") + read(L"forked\\parent", L"49"), L"childparent");
}

TEST_F(RegistryFile, IsAsBeforeOrAfterACallWhenTheProcessIsKilled) {
    for (int round = 0; round < 12; ++round) {
        {
            std::filesystem::remove(path_ / "churn");
            auto const churn = start({"churn"});
            // Killed at a moment of its own in each round, but never before it has begun.
            for (int waited = 0; folder_.get("churn").empty() && waited < 60'000; ++waited)
                std::this_thread::sleep_for(1ms);
            std::this_thread::sleep_for(std::chrono::microseconds{round * 3'700});
            churn->kill();
        }
        std::string printed = folder_.get("churn");
        ASSERT_FALSE(printed.empty());
        printed.erase(printed.rfind('\n'));
        int const told = std::stoi(printed.substr(printed.rfind('\n') + 1));  // from the start where there is one line

        std::wstring const value = read(L"churn", L"value");
        ASSERT_GT(value.size(), 20'000u);
        int const number = std::stoi(value.substr(0, value.size() - 20'000));
        EXPECT_TRUE(number == told || number == told + 1) << number << " " << told;
        EXPECT_EQ(value.substr(value.size() - 20'000), std::wstring(20'000, static_cast<wchar_t>(L'a' + number % 26)));
        for (std::wstring const tree : {L"tree0", L"tree1", L"tree2"}) {
            std::wstring const leaf = L"churn\\" + tree + L"\\a\\b\\c", text = read(leaf, L"leaf");
            EXPECT_EQ(thereIs(leaf), thereIs(L"churn\\" + tree));
            EXPECT_TRUE(text.empty() || text == tree);
        }
        EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(ask("SELECT count(*) FROM data WHERE key NOT IN (SELECT id FROM keys)"), "0");
    }
}

TEST_F(RegistryFile, MayBeTakenAwayWhileItIsInUse) {
    {
        RegWriteKey const old = made(L"old");
        ASSERT_TRUE(old.setString(L"name", L"old"));
        std::filesystem::remove(file_);
        RegWriteKey const fresh = made(L"fresh");
        EXPECT_TRUE(fresh.setString(L"name", L"fresh") && old.setString(L"name", L"older"));
    }
    use(path_ / "another");
    EXPECT_TRUE(made(L"other").valid());
    use(file_);
    EXPECT_EQ(read(L"fresh"), L"fresh");
    EXPECT_FALSE(thereIs(L"old"));
    EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
}

TEST_F(RegistryFile, IsWhatACopyThatIsPutBackSays) {
    std::string copies[2];
    for (int number = 0; auto& copy : copies) {
        ASSERT_TRUE(write(L"key", std::to_wstring(number++)));
        use(path_ / "another");
        ASSERT_TRUE(made(L"key").valid());  // which lets the first file go
        use(file_);
        copy = folder_.get("registry.db");
    }
    folder_.put("registry.db", copies[0]);
    EXPECT_EQ(read(L"key"), L"0");
}

}
