#include "tests/board/varo/StoreTest.h"

namespace {

using namespace varotest;
using varo::column;
using varo::Group;
using varo::Rows;
using varo::Schema;

struct Old {
    int port;
};

struct New {
    int port;
    char name[16];
};

const Group<Old> oldGroup("service", Rows::single, Old{23}, {column("port", &Old::port)});
const Group<New> newGroup("service", Rows::single, New{23, ""},
                          {column("tcp_port", &New::port), column("name", &New::name)});
const Group<Old> addedGroup("added", Rows::single, Old{7}, {column("port", &Old::port)});

const Schema version1{{&oldGroup}, {}};
const Schema version1WithOneMoreGroup{{&oldGroup, &addedGroup}, {}};
const Schema version3{{&newGroup},
                      {"ALTER TABLE service RENAME COLUMN port TO tcp_port",
                       "ALTER TABLE service ADD COLUMN name TEXT NOT NULL DEFAULT 'upgraded'"}};
const Schema failingVersion3{
    {&newGroup},
    {"ALTER TABLE service RENAME COLUMN port TO tcp_port", "UPDATE service SET missing = 1"}};

/// A file that every release from now on has to be able to read.
constexpr const char* version1File = R"sql(
    PRAGMA journal_mode = WAL;
    CREATE TABLE internal_config (
        id INTEGER PRIMARY KEY CHECK (id = 1),
        severity INTEGER NOT NULL
    ) STRICT;
    CREATE TABLE dns (
        source INTEGER PRIMARY KEY,
        domain TEXT NOT NULL,
        primary_server TEXT NOT NULL,
        secondary_server TEXT NOT NULL
    ) STRICT;
    CREATE TABLE dns6 (
        source INTEGER PRIMARY KEY,
        domain TEXT NOT NULL,
        primary_server TEXT NOT NULL,
        secondary_server TEXT NOT NULL
    ) STRICT;
    INSERT INTO internal_config VALUES (1, 6);
    INSERT INTO dns VALUES (1, 'dhcp.example.net', '192.0.2.1', '');
    INSERT INTO dns VALUES (2, 'cli.example.net', '192.0.2.2', '192.0.2.3');
    INSERT INTO dns6 VALUES (2, 'six.example.net', '2001:db8::1', '2001:db8::2');
    PRAGMA user_version = 1;
)sql";

class Upgrade : public StoreTest {
protected:
    void writeVersion1(int port) {
        open(version1).session().write(oldGroup, varo::singleRow, Old{port});
        log.take();
    }

    /// The failure of opening the file.
    varo::Failure openingFailure(const Schema& schema = varo::schema()) {
        return failureOf([&] { open(schema); });
    }
};

TEST_F(Upgrade, TakesAnOlderFileThroughEveryStep) {
    writeVersion1(2323);
    auto store = open(version3);
    const New read = store.session().read(newGroup);
    EXPECT_EQ(read.port, 2323);
    EXPECT_STREQ(read.name, "upgraded");
    EXPECT_EQ(sql(file, "PRAGMA user_version"), "3");
    EXPECT_THAT(log.lines(), ElementsAre("6 upgraded " + file.string() + " from version 1 to 3"));
}

TEST_F(Upgrade, IsMadeOnce) {
    writeVersion1(2323);
    open(version3);
    log.take();
    EXPECT_EQ(open(version3).session().read(newGroup).port, 2323);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Upgrade, ThatFailsLeavesTheOldFile) {
    writeVersion1(2323);
    const varo::Failure failure = openingFailure(failingVersion3);
    EXPECT_EQ(failure.code(), varo::storageFailed);
    EXPECT_STREQ(failure.what(),
                 ("cannot open " + file.string() + ": no such column: missing").c_str());
    EXPECT_EQ(sql(file, "PRAGMA user_version"), "1");
    EXPECT_EQ(open(version1).session().read(oldGroup).port, 2323);
}

TEST_F(Upgrade, AddsTheTableOfANewGroup) {
    writeVersion1(2323);
    auto store = open(version1WithOneMoreGroup);
    EXPECT_EQ(store.session().read(addedGroup).port, 7);
    EXPECT_EQ(store.session().read(oldGroup).port, 2323);
    store.session().write(addedGroup, varo::singleRow, Old{8});
    EXPECT_EQ(sql(file, "SELECT * FROM added"), "1|8");
}

TEST_F(Upgrade, LeavesANewerFileAsItIs) {
    {
        auto newer = open(version3);
        newer.session().write(newGroup, varo::singleRow, New{1, "new"});
    }
    log.take();
    const std::string before = readFile(file);
    const varo::Failure failure = openingFailure(version1);
    EXPECT_EQ(failure.code(), varo::newerFile);
    EXPECT_STREQ(failure.what(),
                 (file.string() +
                  " has version 3, this release knows versions up to 1: install the newer release "
                  "again, or move the file away to start from factory values")
                     .c_str());
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(readFile(file), before);
    EXPECT_STREQ(open(version3).session().read(newGroup).name, "new");
}

TEST_F(Upgrade, LeavesTheLogOfANewerFileAsItIs) {
    // What a newer release had not yet moved out of its log when it was killed.
    {
        auto newer = open(version3);
        newer.session().write(newGroup, varo::singleRow, New{1, "new"});
        for (const char* suffix : {"", "-wal"}) {
            std::filesystem::copy_file(file.string() + suffix, file.string() + ".copy" + suffix);
        }
    }
    const std::filesystem::path copy = file.string() + ".copy";
    const std::string before = readFile(copy.string() + "-wal");
    ASSERT_FALSE(before.empty());
    EXPECT_THROW(varo::RecordStore(copy, version1, log.receiver()), varo::Failure);
    EXPECT_EQ(readFile(copy.string() + "-wal"), before);
    varo::RecordStore newer(copy, version3, log.receiver());
    EXPECT_STREQ(newer.session().read(newGroup).name, "new");
}

TEST_F(Upgrade, ReadsAFileOfVersion1) {
    sql(file, version1File);
    auto store = open(varo::schema());
    auto session = store.session();
    EXPECT_EQ(session.read(varo::internalConfigSetting().group()).severity, 6);
    EXPECT_STREQ(session.read(varo::dnsSetting().group(), 1).domain, "dhcp.example.net");
    EXPECT_EQ(session.read(varo::dnsSetting().group(), 1).ip_pri, 0xC0000201);
    EXPECT_EQ(session.read(varo::dnsSetting().group(), 1).ip_sec, 0U);
    EXPECT_EQ(session.read(varo::dnsSetting().group(), 2).ip_sec, 0xC0000203);
    EXPECT_STREQ(session.read(varo::dns6Setting().group(), 2).ipv6_sec, "2001:db8::2");
}

TEST_F(Upgrade, RefusesADatabaseThatIsNoStore) {
    sql(file, "CREATE TABLE people (name); INSERT INTO people VALUES ('Ada')");
    const std::string before = readFile(file);
    const varo::Failure failure = openingFailure();
    EXPECT_EQ(failure.code(), varo::storageFailed);
    EXPECT_EQ(failure.what(), file.string() +
                                  " is a database, but no record store: move it away to start "
                                  "from factory values");
    EXPECT_EQ(readFile(file), before);
}

TEST_F(Upgrade, RefusesANegativeVersion) {
    sql(file, "PRAGMA user_version = -1");
    EXPECT_EQ(openingFailure().code(), varo::storageFailed);
}

TEST_F(Upgrade, RefusesATableThatLacksAColumn) {
    sql(file,
        "CREATE TABLE dns (source INTEGER PRIMARY KEY, domain TEXT); PRAGMA user_version = 1");
    const varo::Failure failure = openingFailure();
    EXPECT_EQ(failure.code(), varo::storageFailed);
    EXPECT_STREQ(
        failure.what(),
        ("cannot use table dns of " + file.string() + ": no such column: primary_server").c_str());
    EXPECT_THAT(filesIn(directory.path()), Contains("varo.db"));
}

}  // namespace
