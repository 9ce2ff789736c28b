#include "tests/board/varo/StoreTest.h"

#include <fstream>

namespace {

using namespace varotest;
using varo::dnsSetting;

constexpr const char* asideName = "varo\\.db\\.damaged-[0-9]{8}T[0-9]{6}Z";

/// A store's file that gets damaged.
class RecordStoreFile : public StoreTest {
protected:
    RecordStoreFile() {
        open().session().write(dnsSetting().group(), 2, dnsOf("example.net"));
        log.take();
    }

    std::string storedDomain() { return open().session().read(dnsSetting().group(), 2).domain; }

    /// The contents of the files that stand beside the store's, with this end of their name.
    std::vector<std::string> contentsAside(const std::string& suffix) const {
        std::vector<std::string> contents;
        for (const std::string& name : filesIn(directory.path())) {
            if (name.starts_with("varo.db.damaged-") && name.ends_with(suffix)) {
                contents.push_back(readFile(directory.path() / name));
            }
        }
        return contents;
    }

    /// The file, being what it is now, is set aside, and factory values are read.
    void expectSetAside(const std::string& reason) {
        const std::string damaged = readFile(file);
        EXPECT_EQ(storedDomain(), "");
        auto files = filesIn(directory.path());
        // SQLite may have made an empty log and its index while the file was checked.
        std::erase_if(files, [](const std::string& name) {
            return name.ends_with("Z-wal") || name.ends_with("Z-shm");
        });
        ASSERT_THAT(files, ElementsAre("varo.db", MatchesRegex(asideName)));
        EXPECT_EQ(readFile(directory.path() / files[1]), damaged);
        // SQLite's own words follow what is known of the reason.
        const std::string name = ".*/" + std::string(asideName);
        EXPECT_THAT(log.lines(),
                    ElementsAre(AllOf(StartsWith("3 " + file.string() + " is damaged (" + reason),
                                      MatchesRegex(".*\\): it is kept as " + name +
                                                   ", and factory values are used")),
                                "6 made " + file.string()));
    }

    void overwrite(std::streamoff offset, const std::string& bytes) {
        std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(offset);
        stream << bytes;
    }
};

TEST_F(RecordStoreFile, IsSetAsideWithAGarbageHeader) {
    overwrite(0, std::string(100, 'x'));
    expectSetAside("file is not a database");
}

TEST_F(RecordStoreFile, IsSetAsideWhenItIsNoDatabaseAtAll) {
    writeFile(file, "nameserver 192.0.2.1\n");
    expectSetAside("file is not a database");
}

TEST_F(RecordStoreFile, IsSetAsideWhenItIsTruncated) {
    std::filesystem::resize_file(file, 2 * 4096);
    expectSetAside("");
}

TEST_F(RecordStoreFile, IsSetAsideWhenItIsCutWithinItsFirstPage) {
    std::filesystem::resize_file(file, 60);
    expectSetAside("");
}

TEST_F(RecordStoreFile, IsSetAsideWithACorruptPage) {
    const auto page = std::stoi(sql(file, "SELECT rootpage FROM sqlite_schema WHERE name = 'dns'"));
    overwrite((page - 1) * 4096, std::string(4096, '\xA5'));
    expectSetAside("");
}

TEST_F(RecordStoreFile, IsSetAsideWithACorruptCellInAPage) {
    const auto page = std::stoi(sql(file, "SELECT rootpage FROM sqlite_schema WHERE name = 'dns'"));
    // The pointer to the page's first cell.
    overwrite((page - 1) * 4096 + 8, "\xff\xff");
    expectSetAside("");
}

TEST_F(RecordStoreFile, IsSetAsideWhenItsTextsWouldBeConverted) {
    std::filesystem::remove(file);
    sql(file, "PRAGMA encoding = 'UTF-16le'; CREATE TABLE other (name); PRAGMA user_version = 1");
    expectSetAside("its text encoding is UTF-16le");
}

TEST_F(RecordStoreFile, TakesItsLogWithItWhenItIsSetAside) {
    // The state after a kill: the last value is in the log only.
    std::string wal;
    {
        auto store = open();
        store.session().write(dnsSetting().group(), 2, dnsOf("in the log only"));
        wal = readFile(file.string() + "-wal");
    }
    ASSERT_THAT(wal, HasSubstr("in the log only"));
    // The log of another file, as SQLite sees it: it is not used, but may be all that is left.
    writeFile(file, std::string(8192, 'x'));
    writeFile(file.string() + "-wal", wal.substr(1));
    writeFile(file.string() + "-shm", "shared memory");
    EXPECT_EQ(storedDomain(), "");
    EXPECT_THAT(contentsAside("Z-wal"), ElementsAre(wal.substr(1)));
}

TEST_F(RecordStoreFile, IsNotNeededForItsLogToBeSetAside) {
    for (const bool emptied : {false, true}) {
        std::filesystem::remove(file);
        if (emptied) {
            writeFile(file, "");
        }
        writeFile(file.string() + "-wal", "the last values");
        EXPECT_EQ(storedDomain(), "");
        EXPECT_THAT(log.take()[0],
                    HasSubstr(file.string() + " is damaged (it is empty or missing, but its "
                                              "write-ahead log is there): it is kept as "));
        EXPECT_THAT(contentsAside("-wal"), AllOf(SizeIs(emptied ? 2 : 1), Each("the last values")));
    }
}

TEST_F(RecordStoreFile, SetAsideTwiceInASecondGetsTwoNames) {
    for (const char* content : {"first", "second", "third"}) {
        writeFile(file, content);
        open();
    }
    std::vector<std::string> kept;
    for (const std::string& name : filesIn(directory.path())) {
        if (name != "varo.db") {
            kept.push_back(readFile(directory.path() / name));
        }
    }
    EXPECT_THAT(kept, UnorderedElementsAre("first", "second", "third"));
}

TEST_F(RecordStoreFile, IsUsedWithOneLineWhenItIsEmpty) {
    writeFile(file, "");
    EXPECT_EQ(storedDomain(), "");
    EXPECT_THAT(log.lines(),
                ElementsAre("6 made " + file.string(),
                            "3 " + file.string() + " was empty: factory values are used"));
}

TEST_F(RecordStoreFile, IsMadeAnewAtTheCallAfterTheOneThatFindsItDamaged) {
    varo::configure({directory.path(), {}, log.receiver()});
    ASSERT_EQ(varoLibInit(), varo::success);
    // Every page but the first turns to garbage under the open store, and its cache is made stale.
    sql(file, "UPDATE dns SET domain = 'changed'; PRAGMA wal_checkpoint(TRUNCATE)");
    const auto size = std::filesystem::file_size(file);
    overwrite(4096, std::string(size - 4096, '\xA5'));

    varoLib_s_dns record{};
    int source = 2;
    EXPECT_EQ(varoGetDnsWS(&source, &record), varo::storageFailed);
    EXPECT_THAT(log.take(), ElementsAre("3 varoGetDnsWS: cannot read dns in " + file.string() +
                                        ": database disk image is malformed"));
    EXPECT_EQ(varoGetDnsWS(&source, &record), varo::success);
    EXPECT_STREQ(record.domain, "");
    EXPECT_THAT(log.take(), ElementsAre(HasSubstr("is damaged")));
    EXPECT_EQ(store(2, dnsOf("again")), varo::success);
    varoLibDestroy();
    varo::configure({});
    EXPECT_THAT(filesIn(directory.path()),
                ElementsAre("varo.db", MatchesRegex(asideName), MatchesRegex(".*-shm"),
                            MatchesRegex(".*-wal")));
}

}  // namespace
