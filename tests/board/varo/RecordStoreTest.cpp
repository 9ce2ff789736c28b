#include "tests/board/varo/StoreTest.h"

#include <sys/stat.h>

namespace {

using namespace varotest;
using varo::dnsSetting;
using varo::internalConfigSetting;

class RecordStore : public StoreTest {};

TEST_F(RecordStore, ReadsFactoryValuesWhereNothingWasWritten) {
    auto store = open();
    EXPECT_EQ(store.session().read(internalConfigSetting().group()).severity, 3);
    const varoLib_s_dns dns = store.session().read(dnsSetting().group(), 2);
    EXPECT_STREQ(dns.domain, "");
    EXPECT_EQ(dns.ip_pri, 0U);
    EXPECT_EQ(dns.ip_sec, 0U);
}

TEST_F(RecordStore, SaysThatItMadeTheFile) {
    open();
    EXPECT_THAT(log.take(), ElementsAre("6 made " + file.string()));
    open();
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(RecordStore, KeepsRecordsWhenItIsOpenedAgain) {
    open().session().write(dnsSetting().group(), 2, dnsOf("example.net", 0xC0000201));
    const varoLib_s_dns read = open().session().read(dnsSetting().group(), 2);
    EXPECT_STREQ(read.domain, "example.net");
    EXPECT_EQ(read.ip_pri, 0xC0000201);
}

TEST_F(RecordStore, KeepsTheRowsOfSourcesApart) {
    auto store = open();
    store.session().write(dnsSetting().group(), 1, dnsOf("dhcp.example.net", 1));
    store.session().write(dnsSetting().group(), 2, dnsOf("cli.example.net", 2));
    EXPECT_STREQ(store.session().read(dnsSetting().group(), 1).domain, "dhcp.example.net");
    EXPECT_STREQ(store.session().read(dnsSetting().group(), 2).domain, "cli.example.net");
}

TEST_F(RecordStore, ShowsPeopleWhatItHolds) {
    auto store = open();
    store.session().write(dnsSetting().group(), 2, dnsOf("example.net", 0xC0000201));
    EXPECT_EQ(sql(file, "SELECT * FROM dns"), "2|example.net|192.0.2.1|");
    EXPECT_EQ(sql(file, "PRAGMA user_version"), "1");
}

TEST_F(RecordStore, TakesWhatPeopleWriteIntoIt) {
    auto store = open();
    sql(file, "INSERT INTO dns VALUES (2, 'example.net', '192.0.2.1', '255.255.255.255')");
    const varoLib_s_dns read = store.session().read(dnsSetting().group(), 2);
    EXPECT_EQ(read.ip_pri, 0xC0000201);
    EXPECT_EQ(read.ip_sec, 0xFFFFFFFF);
}

TEST_F(RecordStore, WritesNothingWhenNothingChanges) {
    auto store = open();
    const std::string walFile = file.string() + "-wal";
    const auto written = dnsOf("example.net", 0xC0000201);
    store.session().write(dnsSetting().group(), 2, written);
    const std::string before = readFile(walFile);
    store.session().write(dnsSetting().group(), 2, written);
    EXPECT_EQ(readFile(walFile), before);
    store.session().write(dnsSetting().group(), 2, dnsOf("example.net", 0xC0000202));
    EXPECT_NE(readFile(walFile), before);
}

TEST_F(RecordStore, CanBeReadByItsOwnerOnly) {
    auto store = open();
    store.session().write(dnsSetting().group(), 2, dnsOf("example.net", 1));
    for (const char* suffix : {"", "-wal", "-shm"}) {
        struct stat status{};
        ASSERT_EQ(::stat((file.string() + suffix).c_str(), &status), 0) << suffix;
        EXPECT_EQ(status.st_mode & 07777, 0600U) << suffix;
    }
}

TEST_F(RecordStore, LeavesOneFileWhenItIsClosed) {
    auto store = open();
    store.session().write(dnsSetting().group(), 2, dnsOf("example.net", 1));
    store.close();
    EXPECT_THAT(filesIn(directory.path()), ElementsAre("varo.db"));
    EXPECT_EQ(failureOf([&] { store.session().read(dnsSetting().group(), 2); }).code(),
              varo::notOpen);
}

}  // namespace
