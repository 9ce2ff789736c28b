#include "tests/board/varo/VaroTest.h"

#include <fmt/format.h>
#include <sched.h>
#include <sqlite3.h>

#include <fstream>
#include <memory>
#include <stdexcept>

namespace {

using namespace varotest;

int write(const std::string& domain) { return store(2, dnsOf(domain)); }

/// The stored domain, or what the call returned.
std::string read() {
    varoLib_s_dns record{};
    int source = 2;
    const int result = varoGetDnsWS(&source, &record);
    return result == 0 ? record.domain : fmt::format("result {}", result);
}

/// Takes all the space that is left.
void fill(const std::filesystem::path& filler) {
    std::ofstream stream(filler, std::ios::binary | std::ios::app);
    const std::string block(4096, 'x');
    while (stream.write(block.data(), 4096) && stream.flush()) {
    }
}

class StorageFailure : public ClosedVaroTest {
protected:
    /// Runs the body with the state directory being a file system of its own.
    std::string onOwnDisk(const std::function<std::string()>& body) {
        return inOwnNamespaces(CLONE_NEWNS, [&] {
            mountTmpfs(state, 512 * 1024);
            return body();
        });
    }

    std::string logText() {
        const std::vector<std::string> lines = log.take();
        return lines.empty() ? "" : fmt::format("{}\n", fmt::join(lines, "\n"));
    }
};

TEST_F(StorageFailure, OnAFullDiskKeepsTheOldValueAndEndsWithTheCause) {
    const std::string result = onOwnDisk([&] {
        const int opened = varoLibInit();
        const int first = write("old");
        fill(state / "filler");
        const int second = write("new");
        const std::string lines = logText();
        const std::string kept = read();
        std::filesystem::remove(state / "filler");
        const int third = write("newer");
        const std::string last = read();
        varoLibDestroy();
        const int again = varoLibInit();
        return fmt::format("{} {} {} {} {} {} {} {}\n{}", opened, first, second, kept, third, last,
                           again, read(), lines);
    });
    EXPECT_THAT(result, StartsWith(fmt::format("0 0 {:d} old 0 newer 0 newer\n",
                                               int{varo::storageFailed})));
    EXPECT_THAT(result.substr(result.find('\n') + 1),
                MatchesRegex("3 varoUpdateDnsWS: cannot write dns in " + file.string() +
                             ": database or disk is full[^\n]*\n"));
}

TEST_F(StorageFailure, OnADiskThatIsFullFromTheStartLeavesNoFiles) {
    const std::string result = onOwnDisk([&] {
        fill(state / "filler");
        const int opened = varoLibInit();
        const std::string line = logText();
        const int written = write("new");
        const std::string files = fmt::format("{}", filesIn(state).size());
        std::filesystem::remove(state / "filler");
        const int writtenThen = write("newer");
        return fmt::format("{} {} {} files, then {} {}\n{}", opened, written, files, writtenThen,
                           read(), line);
    });
    EXPECT_THAT(result, StartsWith(fmt::format("{0:d} {0:d} 1 files, then 0 newer\n",
                                               int{varo::storageFailed})));
    EXPECT_THAT(result, HasSubstr("\n3 varoLibInit: cannot open " + file.string() + ": "));
}

TEST_F(StorageFailure, InAReadOnlyDirectoryNamesTheFileAndLeavesIt) {
    const std::string result = onOwnDisk([&] {
        varoLibInit();
        write("old");
        varoLibDestroy();
        const std::string before = readFile(file);
        log.take();
        remountReadOnly(state);
        const int opened = varoLibInit();
        const std::string lines = logText();
        const int written = write("new");
        return fmt::format("{} {} {}\n{}", opened, written,
                           readFile(file) == before ? "unchanged" : "changed", lines);
    });
    EXPECT_THAT(result,
                StartsWith(fmt::format("{0:d} {0:d} unchanged\n", int{varo::storageFailed})));
    EXPECT_THAT(result,
                MatchesRegex("[^\n]*\n3 varoLibInit: cannot open " + file.string() + ": [^\n]*\n"));
}

TEST_F(StorageFailure, InAReadOnlyDirectoryDoesNotLoseADamagedFile) {
    const std::string result = onOwnDisk([&] {
        writeFile(file, std::string(8192, 'x'));
        remountReadOnly(state);
        const int opened = varoLibInit();
        return fmt::format("{} {}\n{}", opened, readFile(file) == std::string(8192, 'x'),
                           logText());
    });
    EXPECT_THAT(result,
                MatchesRegex(fmt::format(
                    "{} true\n3 varoLibInit: {} is damaged \\(file is not a database\\) and "
                    "cannot be set aside: [^\n]*\n",
                    int{varo::storageFailed}, file.string())));
}

/// Another process' connection, as far as SQLite is concerned.
class Shell {
public:
    explicit Shell(const std::filesystem::path& file) {
        sqlite3* opened = nullptr;
        sqlite3_open(file.c_str(), &opened);
        database.reset(opened);
    }
    void run(const char* sql) {
        if (sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
            throw std::runtime_error(sqlite3_errmsg(database.get()));
        }
    }

private:
    struct Close {
        void operator()(sqlite3* opened) const { sqlite3_close(opened); }
    };
    std::unique_ptr<sqlite3, Close> database;
};

TEST_F(StorageFailure, WithALockedFileKeepsTheOldValueAndStillReads) {
    ASSERT_EQ(varoLibInit(), varo::success);
    ASSERT_EQ(write("old"), varo::success);
    Shell shell(file);
    shell.run("BEGIN IMMEDIATE");
    EXPECT_EQ(write("new"), varo::storageBusy);
    EXPECT_THAT(log.take(), ElementsAre("3 varoUpdateDnsWS: cannot write dns in " + file.string() +
                                        ": database is locked"));
    EXPECT_EQ(read(), "old");
    shell.run("ROLLBACK");
    EXPECT_EQ(write("new"), varo::success);
    EXPECT_EQ(read(), "new");
}

TEST_F(StorageFailure, WithAFileLockedAgainstReadingIsReportedByInit) {
    ASSERT_EQ(varoLibInit(), varo::success);
    ASSERT_EQ(write("old"), varo::success);
    varoLibDestroy();
    {
        Shell shell(file);
        shell.run("PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT");
        EXPECT_EQ(varoLibInit(), varo::storageBusy);
        EXPECT_THAT(log.take(), ElementsAre("3 varoLibInit: cannot open " + file.string() +
                                            ": database is locked"));
    }
    EXPECT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(read(), "old");
}

TEST_F(StorageFailure, WithAReaderInTheWayOfTheCheckpointLosesNothing) {
    ASSERT_EQ(varoLibInit(), varo::success);
    ASSERT_EQ(write("old"), varo::success);
    {
        Shell shell(file);
        shell.run("BEGIN; SELECT * FROM dns");
        ASSERT_EQ(write("new"), varo::success);
        varoLibDestroy();
    }
    ASSERT_EQ(varoLibInit(), varo::success);
    EXPECT_EQ(read(), "new");
}

}  // namespace
