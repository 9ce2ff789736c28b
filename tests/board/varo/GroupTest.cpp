#include "board/varo/store/Group.h"
#include "tests/board/varo/StoreTest.h"
#include "varo/records.h"
#include "varo/sntpRecords.h"

#include <limits>

namespace {

using namespace varo;
using namespace varotest;

struct Numbers {
    std::int16_t small;
    std::uint16_t port;
    std::int32_t offset;
    std::uint32_t word;
    std::int64_t wide;
    unsigned char byte;
};

const Group<Numbers> numbers("numbers", Rows::single, Numbers{5, 80, 0, 0, 0, 0},
                             {
                                 column("small", &Numbers::small),
                                 column("port", &Numbers::port),
                                 column("offset_minutes", &Numbers::offset),
                                 column("word", &Numbers::word),
                                 column("wide", &Numbers::wide),
                                 column("byte", &Numbers::byte),
                             });

using Manager = std::remove_extent_t<decltype(varoLib_s_subag::managers)>;
const Group<varoLib_s_subag> managers("managers", Rows::single,
                                      varoLib_s_subag{.port = 162, .managers = {}},
                                      {
                                          column("port", &varoLib_s_subag::port),
                                          entries("manager", &varoLib_s_subag::managers,
                                                  {ipv4Column("address", &Manager::ipAddress),
                                                   column("community", &Manager::community)}),
                                      });

const Group<rpcSntpConfigHost> timeServers("time_servers", Rows::bySource, rpcSntpConfigHost{},
                                           {
                                               column("mode", &rpcSntpConfigHost::mode),
                                               entries("server", &rpcSntpConfigHost::servers,
                                                       {
                                                           column("host", &rpcSntpSrvHost::host),
                                                           column("version",
                                                                  &rpcSntpSrvHost::ntpVersion),
                                                       }),
                                           });

const Schema testSchema{{&numbers, &managers, &timeServers}, {}};

class RecordGroup : public StoreTest {
protected:
    varo::RecordStore store = open(testSchema);
};

TEST_F(RecordGroup, NeverWrittenReadsAsTheFactoryRecord) {
    const Numbers read = store.session().read(numbers);
    EXPECT_EQ(read.small, 5);
    EXPECT_EQ(read.port, 80);
    EXPECT_EQ(read.wide, 0);
}

TEST_F(RecordGroup, CarriesTheLimitsOfEveryIntegerType) {
    using std::numeric_limits;
    const Numbers lowest{numeric_limits<std::int16_t>::min(), 0,
                         numeric_limits<std::int32_t>::min(), 0,
                         numeric_limits<std::int64_t>::min(), 0};
    const Numbers highest{
        numeric_limits<std::int16_t>::max(), numeric_limits<std::uint16_t>::max(),
        numeric_limits<std::int32_t>::max(), numeric_limits<std::uint32_t>::max(),
        numeric_limits<std::int64_t>::max(), numeric_limits<unsigned char>::max()};
    for (const Numbers& written : {lowest, highest}) {
        store.session().write(numbers, singleRow, written);
        const Numbers read = store.session().read(numbers);
        EXPECT_EQ(read.small, written.small);
        EXPECT_EQ(read.port, written.port);
        EXPECT_EQ(read.offset, written.offset);
        EXPECT_EQ(read.word, written.word);
        EXPECT_EQ(read.wide, written.wide);
        EXPECT_EQ(read.byte, written.byte);
    }
}

TEST_F(RecordGroup, RefusesAStoredIntegerOutsideItsType) {
    store.session().write(numbers, singleRow, Numbers{});
    for (const char* bad : {"small = 32768", "port = -1", "word = 4294967296", "byte = 256"}) {
        sql(file, std::string("UPDATE numbers SET ") + bad);
        const Failure failure = failureOf([&] { store.session().read(numbers); });
        EXPECT_EQ(failure.code(), storageFailed) << bad;
        EXPECT_THAT(failure.what(), HasSubstr("cannot read numbers")) << bad;
        sql(file, "UPDATE numbers SET small = 0, port = 0, word = 0, byte = 0");
    }
}

TEST_F(RecordGroup, KeepsEveryEntryOfAnArray) {
    varoLib_s_subag written{};
    written.port = 1162;
    for (std::uint32_t i = 0; i < 10; ++i) {
        written.managers[i].ipAddress = 0xC0000200 + i;
        setText(written.managers[i].community, "community " + std::to_string(i));
    }
    written.managers[4] = {};
    store.session().write(managers, singleRow, written);
    const varoLib_s_subag read = store.session().read(managers);
    EXPECT_EQ(std::memcmp(&read, &written, sizeof read), 0);
    EXPECT_EQ(sql(file,
                  "SELECT port, manager1_address, manager5_address, manager10_address, "
                  "manager10_community FROM managers"),
              "1162|192.0.2.0||192.0.2.9|community 9");
}

TEST_F(RecordGroup, KeepsArraysOfSourcesApart) {
    for (const int source : {1, 2}) {
        rpcSntpConfigHost written{};
        written.mode = source;
        setText(written.servers[3].host, "ntp" + std::to_string(source) + ".example.net");
        written.servers[3].ntpVersion = 4;
        store.session().write(timeServers, source, written);
    }
    for (const int source : {1, 2}) {
        const rpcSntpConfigHost read = store.session().read(timeServers, source);
        EXPECT_EQ(read.mode, source);
        EXPECT_EQ(read.servers[3].host, "ntp" + std::to_string(source) + ".example.net");
        EXPECT_EQ(read.servers[3].ntpVersion, 4);
        EXPECT_STREQ(read.servers[0].host, "");
    }
}

TEST_F(RecordGroup, RefusesAnUnterminatedTextInAnEntryAndStoresNothing) {
    varoLib_s_subag written{};
    written.port = 1162;
    std::memset(written.managers[9].community, 'x', sizeof written.managers[9].community);
    const Failure failure = failureOf([&] { store.session().write(managers, singleRow, written); });
    EXPECT_EQ(failure.code(), invalidValue);
    EXPECT_STREQ(failure.what(),
                 "managers: manager10_community: the text is not terminated within its 32 bytes");
    EXPECT_EQ(sql(file, "SELECT count(*) FROM managers"), "0");
    EXPECT_EQ(store.session().read(managers).port, 162);
}

TEST_F(RecordGroup, TellsPeopleInTheTableHowValuesAreStored) {
    EXPECT_EQ(managers.createSql().substr(0, 260),
              std::string("CREATE TABLE IF NOT EXISTS managers (\n"
                          "    id INTEGER PRIMARY KEY CHECK (id = 1),\n"
                          "    port INTEGER NOT NULL,\n"
                          "    manager1_address TEXT NOT NULL,"
                          "  -- IPv4 address in dotted form, empty for none\n"
                          "    manager1_community TEXT NOT NULL,  -- at most 31 bytes\n"
                          "    manager2_address TEXT NOT NULL,")
                  .substr(0, 260));
    EXPECT_THAT(sql(file, "SELECT sql FROM sqlite_schema WHERE name = 'time_servers'"),
                HasSubstr("whose values: 1 DHCP client, 2 management front ends"));
}

TEST_F(RecordGroup, IsUnknownToAStoreWhoseSchemaDoesNotListIt) {
    const Group<Numbers> unlisted("unlisted", Rows::single, Numbers{},
                                  {column("small", &Numbers::small)});
    const Failure failure = failureOf([&] { store.session().read(unlisted); });
    EXPECT_EQ(failure.code(), internalError);
    EXPECT_STREQ(failure.what(), "group unlisted is not in the schema");
}

}  // namespace
