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
#include <deque>
#include <string>
#include <thread>

using testing::EndsWith;
using namespace std::chrono_literals;

namespace {

class RegistryFile : public testing::Test {
protected:
    RegistryFile() { ::setenv("ORN_REGISTRY", file_.c_str(), 1); }
    ~RegistryFile() override {
        for (char const* name : {"ORN_REGISTRY", "XDG_CONFIG_HOME"}) ::unsetenv(name);
    }

    ChildProcess probe(std::vector<std::string> const& words, std::string const& output = "printed") const {
        return {ORN_REGISTRY_PROBE, words, {}, path_ / output};
    }
    bool thereIs(std::string const& name) const { return std::filesystem::exists(path_ / name); }
    static std::wstring read(std::wstring const& key, std::wstring const& name) {
        std::wstring text;
        RegReadKey{HKEY_CURRENT_USER, key, 0}.getString(name, text);
        return text;
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
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), keep, &answer, nullptr), SQLITE_OK) << sqlite3_errmsg(database);
        sqlite3_close(database);
        return answer;
    }

    TemporaryFolder folder_;
    std::wstring const name_ = folder_.name();
    std::filesystem::path const path_{std::string{name_.begin(), name_.end()}};
    std::string const file_ = path_ / "registry.db";
};

TEST_F(RegistryFile, IsMadeForWritingOnlyWithTheFoldersAboveIt) {
    ::setenv("ORN_REGISTRY", "", 1);
    ::setenv("XDG_CONFIG_HOME", (path_ / "a/b").c_str(), 1);
    RegReadKey missing{HKEY_CURRENT_USER, L"key", 0};
    EXPECT_EQ(missing.errorMessage(), L"HKEY_CURRENT_USER\\key\r\nThe system cannot find the file specified.");
    EXPECT_TRUE((RegReadKey{HKEY_CURRENT_USER, L"", 0}.valid()));
    EXPECT_FALSE(thereIs("a"));
    EXPECT_TRUE((RegWriteKey{HKEY_CURRENT_USER, L"key", 0}.valid()));
    struct stat status;
    ASSERT_EQ(::stat((path_ / "a/b/orn").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0700u);
    ASSERT_EQ(::stat((path_ / "a/b/orn/registry.db").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);

    // A folder that cannot be one, and a name that is too long.
    ::setenv("ORN_REGISTRY", (path_ / "a/b/orn/registry.db/file").c_str(), 1);
    RegWriteKey nowhere{HKEY_CURRENT_USER, L"key", 0};
    EXPECT_THAT(nowhere.errorMessage(), EndsWith(L"\r\nThe system cannot find the path specified."));
    ::setenv("ORN_REGISTRY", file_.c_str(), 1);
    RegWriteKey overlong{HKEY_CURRENT_USER, L"key\\" + std::wstring(256, L'x'), 0};
    EXPECT_THAT(overlong.errorMessage(), EndsWith(L"\r\nThe parameter is incorrect."));
    EXPECT_FALSE((RegReadKey{HKEY_CURRENT_USER, L"key", 0}.valid()));
}

TEST_F(RegistryFile, ThatIsNoneOrDamagedIsNeverWrittenTo) {
    for (int number = 0; number < 200; ++number) {
        RegWriteKey const key{HKEY_CURRENT_USER, L"key\\" + std::to_wstring(number), 0};
        ASSERT_TRUE(key.setString(L"name", std::wstring(100, L'x')));
    }
    ask("PRAGMA wal_checkpoint(TRUNCATE)");
    std::string const whole = folder_.get("registry.db");
    ask("CREATE TABLE t(x); INSERT INTO t VALUES(1)", "foreign.db");
    ask("VACUUM", "hollow.db");
    std::string newer = whole, wrecked = whole;
    newer[63] = 2;  // the format's number
    std::fill(wrecked.begin() + 3 * 4096, wrecked.begin() + 5 * 4096, '\x55');
    ASSERT_GT(whole.size(), 10 * 4096u);

    std::wstring const foreign = L"specified file is not in a registry file format.",
                       damaged = L"The configuration registry database is corrupt.";
    struct {
        std::string bytes;
        std::wstring text;
    } const cases[] = {
        {"a letter to somebody\n" + std::string(5000, ' '), foreign},
        {folder_.get("foreign.db"), foreign},
        {folder_.get("hollow.db"), foreign},
        {newer, foreign},
        {wrecked, damaged},
        {whole.substr(0, whole.size() - 1), damaged},
        {whole.substr(0, 4096), damaged},
        {whole.substr(0, 5000), damaged},
    };
    int number = 0;
    for (auto const& [bytes, text] : cases) {
        std::string const name = "case" + std::to_string(number++);
        folder_.put(name, bytes);
        ::setenv("ORN_REGISTRY", (path_ / name).c_str(), 1);
        RegReadKey reading{HKEY_CURRENT_USER, L"key\\7", 0};
        RegWriteKey writing{HKEY_CURRENT_USER, L"key\\7", 0};
        EXPECT_THAT(reading.errorMessage(), EndsWith(text)) << name;
        EXPECT_THAT(writing.errorMessage(), EndsWith(text)) << name;
        EXPECT_FALSE(writing.setString(L"name", L"y"));
        EXPECT_EQ(folder_.get(name), bytes) << name;
    }
    ::setenv("ORN_REGISTRY", "/dev/null", 1);
    EXPECT_THAT((RegWriteKey{HKEY_CURRENT_USER, L"key", 0}.errorMessage()), EndsWith(foreign));

    // A file of no bytes has nothing in it yet.
    folder_.put("empty", "");
    ::setenv("ORN_REGISTRY", (path_ / "empty").c_str(), 1);
    EXPECT_FALSE((RegReadKey{HKEY_CURRENT_USER, L"key", 0}.valid()));
    EXPECT_EQ(folder_.get("empty"), "");
    EXPECT_TRUE((RegWriteKey{HKEY_CURRENT_USER, L"key", 0}.valid()));
}

TEST_F(RegistryFile, IsWalkedToAnEndWhateverItsKeysSayOfEachOther) {
    RegWriteKey const key{HKEY_CURRENT_USER, L"key", 0};
    ASSERT_TRUE((RegWriteKey{key, L"x\\y", 0}.setString(L"name", L"gone")));
    ASSERT_TRUE((RegWriteKey{HKEY_CURRENT_USER, L"kept", 0}.setString(L"name", L"kept")));
    // The user's root below one of its keys, a key below itself, and all of them below one key without end.
    ask("PRAGMA ignore_check_constraints = ON;"
        "INSERT INTO keys SELECT -2147483647, id, x'5200', 'r' FROM keys WHERE name = 'y';"
        "INSERT INTO keys SELECT 0, id, x'5A00', 'z' FROM keys WHERE name = 'y';"
        "INSERT INTO keys VALUES(1000, 1000, x'5300', 's')");
    EXPECT_FALSE((RegReadKey{key, L"x\\y\\r", 0}.valid() || RegReadKey{key, L"x\\y\\z", 0}.valid()));
    EXPECT_TRUE(key.deleteSubKey(L"x"));
    EXPECT_FALSE((RegReadKey{key, L"x", 0}.valid()));
    EXPECT_EQ(read(L"kept", L"name"), L"kept");

    // A connection that finds such keys takes nothing from the file.
    ask("VACUUM INTO '" + (path_ / "copy").string() + "'");
    ::setenv("ORN_REGISTRY", (path_ / "copy").c_str(), 1);
    RegReadKey damaged{HKEY_CURRENT_USER, L"kept", 0};
    EXPECT_THAT(damaged.errorMessage(), EndsWith(L"The configuration registry database is corrupt."));
}

TEST_F(RegistryFile, ThatMayNotBeWrittenIsReadAllTheSame) {
    ASSERT_TRUE((RegWriteKey{HKEY_CURRENT_USER, L"key", 0}.setString(L"name", L"value")));
    for (char const* name : {"registry.db", "registry.db-wal", "registry.db-shm"}) {
        ASSERT_EQ(::chmod((path_ / name).c_str(), 0444), 0);
    }
    ChildProcess nobody = probe({"nobody"});
    EXPECT_EQ(nobody.wait(60s), 0);
    EXPECT_EQ(folder_.get("printed"), "value; HKEY_CURRENT_USER\\key\r\nAccess is denied.\n");
    EXPECT_EQ(read(L"key", L"name"), L"value");
}

TEST_F(RegistryFile, OfAnotherUsersProgramIsNotTheOneThatTheEnvironmentNames) {
    if (::geteuid() != 0) GTEST_SKIP() << "only root can make a program another user's";
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer cannot look at its own process";
#endif
    std::filesystem::path const program = path_ / "probe", home = path_ / "home";
    std::filesystem::copy_file(ORN_REGISTRY_PROBE, program);
    std::filesystem::create_directory(home);
    for (auto const& name : {path_, program, home}) ASSERT_EQ(::chown(name.c_str(), 65534, 65534), 0);
    ASSERT_EQ(::chmod(path_.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(program.c_str(), 04755), 0);
    ChildProcess process{program,
                         {"privileged"},
                         {{"HOME", home}, {"XDG_CONFIG_HOME", home}, {"ORNDEBUGPRINTFILE", path_ / "diagnosis"}},
                         path_ / "printed"};
    EXPECT_EQ(process.wait(60s), 0);
    EXPECT_FALSE(thereIs("registry.db") || thereIs("diagnosis"));
    EXPECT_TRUE(std::filesystem::is_empty(home));
}

TEST_F(RegistryFile, IsSharedByProcessesAndThreadsFromItsFirstMomentOn) {
    int const count = 4;
    std::deque<ChildProcess> processes;
    for (int number = 0; number < count; ++number) {
        std::string const name = "process" + std::to_string(number);
        processes.emplace_back(ORN_REGISTRY_PROBE, std::vector<std::string>{"write", name},
                               std::map<std::string, std::filesystem::path>{}, path_ / name);
    }
    std::vector<std::thread> threads;
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([number] {
            RegWriteKey const key{HKEY_CURRENT_USER, L"shared\\thread" + std::to_wstring(number), 0};
            for (int time = 0; time < 100; ++time) {
                std::wstring text;
                EXPECT_TRUE(key.setString(std::to_wstring(time), L"written"));
                EXPECT_TRUE(key.getString(std::to_wstring(time), text));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (ChildProcess& process : processes) EXPECT_EQ(process.wait(120s), 0);
    for (int number = 0; number < count; ++number) {
        std::wstring const name = L"process" + std::to_wstring(number);
        for (int time = 0; time < 100; ++time) {
            EXPECT_EQ(read(L"SHARED\\" + name, std::to_wstring(time)), name + std::to_wstring(time));
        }
    }
    EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(ask("SELECT count(*) FROM data"), "800");
}

TEST_F(RegistryFile, ThatAnotherProcessKeepsIsWaitedForTenSecondsAltogether) {
    ASSERT_TRUE((RegWriteKey{HKEY_CURRENT_USER, L"key", 0}.valid()));
    ::setenv("ORN_REGISTRY", (path_ / "another").c_str(), 1);
    ASSERT_TRUE((RegWriteKey{HKEY_CURRENT_USER, L"key", 0}.valid()));  // which lets the first file go
    ::setenv("ORN_REGISTRY", file_.c_str(), 1);
    ASSERT_EQ(ask("PRAGMA journal_mode = DELETE"), "delete");
    // One who reads is in the way of those who would turn the log on.
    sqlite3* reader = nullptr;
    ASSERT_EQ(sqlite3_open(file_.c_str(), &reader), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(reader, "BEGIN; SELECT * FROM keys", nullptr, nullptr, nullptr), SQLITE_OK);
    auto const begin = std::chrono::steady_clock::now();
    ChildProcess process = probe({"write", "one"});
    EXPECT_EQ(process.wait(40s), 1);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 9s);
    sqlite3_close(reader);
    EXPECT_EQ(probe({"write", "one"}).wait(40s), 0);
}

TEST_F(RegistryFile, ServesBothSidesOfAFork) {
    ChildProcess process = probe({"fork"});
    EXPECT_EQ(process.wait(120s), 0);
    EXPECT_EQ(read(L"forked", L"child") + read(L"forked", L"parent"), L"donedone");
    EXPECT_EQ(read(L"forked\\child", L"49") + read(L"forked\\parent", L"49"), L"childparent");
}

TEST_F(RegistryFile, IsAsBeforeOrAfterACallWhenTheProcessIsKilled) {
    for (int round = 0; round < 12; ++round) {
        std::string const output = "printed" + std::to_string(round);
        {
            ChildProcess churn = probe({"churn"}, output);
            // Killed at a moment of its own in each round, but never before it has begun.
            for (int waited = 0; folder_.get(output).empty() && waited < 60'000; ++waited) {
                std::this_thread::sleep_for(1ms);
            }
            std::this_thread::sleep_for(std::chrono::microseconds{round * 3'700});
            churn.kill();
        }
        std::string printed = folder_.get(output);
        ASSERT_FALSE(printed.empty());
        printed.erase(printed.rfind('\n'));
        std::size_t const line = printed.rfind('\n');
        int const told = std::stoi(line == std::string::npos ? printed : printed.substr(line + 1));

        std::wstring const value = read(L"churn", L"value");
        ASSERT_GT(value.size(), 20'000u);
        int const number = std::stoi(value.substr(0, value.size() - 20'000));
        EXPECT_TRUE(number == told || number == told + 1) << number << " " << told;
        EXPECT_EQ(value.substr(value.size() - 20'000), std::wstring(20'000, static_cast<wchar_t>(L'a' + number % 26)));
        for (wchar_t const* tree : {L"churn\\tree0", L"churn\\tree1", L"churn\\tree2"}) {
            bool const there = RegReadKey{HKEY_CURRENT_USER, tree, 0}.valid();
            RegReadKey const leaf{HKEY_CURRENT_USER, std::wstring{tree} + L"\\a\\b\\c", 0};
            EXPECT_EQ(leaf.valid(), there);
            std::wstring text;
            EXPECT_TRUE(!leaf.getString(L"leaf", text) || L"churn\\" + text == tree);
        }
        EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
        EXPECT_EQ(ask("SELECT count(*) FROM data WHERE key NOT IN (SELECT id FROM keys)"), "0");
    }
}

TEST_F(RegistryFile, MayBeTakenAwayWhileItIsInUse) {
    {
        RegWriteKey const old{HKEY_CURRENT_USER, L"old", 0};
        ASSERT_TRUE(old.setString(L"name", L"old"));
        std::filesystem::remove(file_);
        RegWriteKey const fresh{HKEY_CURRENT_USER, L"fresh", 0};
        EXPECT_TRUE(fresh.setString(L"name", L"fresh"));
        EXPECT_TRUE(old.setString(L"name", L"older"));
    }
    ::setenv("ORN_REGISTRY", (path_ / "another").c_str(), 1);
    EXPECT_TRUE((RegWriteKey{HKEY_CURRENT_USER, L"other", 0}.valid()));
    ::setenv("ORN_REGISTRY", file_.c_str(), 1);
    EXPECT_EQ(read(L"fresh", L"name"), L"fresh");
    EXPECT_FALSE((RegReadKey{HKEY_CURRENT_USER, L"old", 0}.valid()));
    EXPECT_EQ(ask("PRAGMA integrity_check"), "ok");
}

}
