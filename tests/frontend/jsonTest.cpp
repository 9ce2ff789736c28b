#include "mngctl/wire/json.h"
#include "mngctl/wire/recordFields.h"
#include "mngctlRun.h"

#include <cstring>

namespace mngctl::test {
namespace {

template <class Record>
void read(Record& record, const std::string& json) {
    Texts texts;
    readJson(Json::parse(json), texts, [&](FieldVisitor& visitor) { fields(visitor, record); });
}

template <class Record>
std::string refusalOf(const std::string& json) {
    Record record{};
    return test::refusalOf([&] { read(record, json); });
}

TEST(JsonWriter, WritesEveryKindOfField) {
    rpcNetworkInfo info{};
    info.ipAddress = 0xC0000209;
    info.netmask = 0xFFFFFF00;
    std::memcpy(info.macAddress.octets, "\x02\x00\x5e\x10\x00\x0a", 6);
    info.dhcpEnabled = 5;
    info.mngVlanId = 4094;
    info.mngVlanMode = rpcVlanTagged;
    info.defVid = 4294967295U;
    const int unknown = 77;
    std::memcpy(&info.defVlanMode, &unknown, sizeof unknown);
    EXPECT_EQ(toText(toJson(info)), R"({
  "ipAddress": "192.0.2.9",
  "netmask": "255.255.255.0",
  "macAddress": "02:00:5e:10:00:0a",
  "macAddress2": "00:00:00:00:00:00",
  "dhcpEnabled": true,
  "vendorClassEnabled": false,
  "mngVlanId": 4094,
  "option82Enabled": false,
  "flag4": false,
  "flag5": false,
  "mngVlanMode": "tagged",
  "defVid": 4294967295,
  "defVlanMode": 77
}
)");
}

TEST(JsonWriter, WritesRecordsInRecordsAndLists) {
    rpcSntpInfoWS answer{};
    answer.result = 2;
    answer.info.client.referenceAddress = 0xC0000201;
    std::strcpy(answer.info.client.lastUpdate, "2024-02-29 12:00:00");
    answer.info.client.offset = -12;
    answer.info.unicast = {64, 5, 3};
    answer.info.servers[2] = {3, 0xC0000203, 2, 255, -1, 7};
    EXPECT_EQ(toJson(answer).dump(),
              R"({"result":2,"info":{"client":{"state":0,"mode":0,"leapIndicator":0,"stratum":0,)"
              R"("pollInterval":0,"offset":-12,"referenceAddress":"192.0.2.1","delay":0,)"
              R"("dispersion":0,"lastUpdate":"2024-02-29 12:00:00"},)"
              R"("unicast":{"pollInterval":64,"timeout":5,"retries":3},"servers":[)"
              R"({"state":0,"ipAddress":"0.0.0.0","stratum":0,"reachability":0,"offset":0,)"
              R"("delay":0},)"
              R"({"state":0,"ipAddress":"0.0.0.0","stratum":0,"reachability":0,"offset":0,)"
              R"("delay":0},)"
              R"({"state":3,"ipAddress":"192.0.2.3","stratum":2,"reachability":255,"offset":-1,)"
              R"("delay":7}]}})");
}

TEST(JsonWriter, BoundsATextThatFillsItsArrayAndEscapesItsBytes) {
    rpcSnmpSystemConfig config{};
    std::memset(config.contact, 'c', sizeof config.contact);
    std::strcpy(config.location, "Z\xFCrich \"HB\"\n");
    EXPECT_EQ(toText(toJson(config)), "{\n  \"contact\": \"" + std::string(32, 'c') +
                                          "\",\n"
                                          "  \"location\": \"Z\\\\xfcrich \\\"HB\\\"\\n\",\n"
                                          "  \"name\": \"\"\n"
                                          "}\n");
}

TEST(JsonWriter, WritesAnAbsentTextAsEmpty) {
    controlReply reply{-1, nullptr};
    EXPECT_EQ(toJson(reply).dump(), R"({"result":-1,"reply":""})");
}

TEST(Lines, AreOneForEachValue) {
    const Json json = Json::parse(
        R"({"a":{"b":[{"on":true},{"on":false}]},"text":"x\ny","none":null,"empty":"","n":-1})");
    EXPECT_EQ(toLines(json),
              "a.b[0].on: on\n"
              "a.b[1].on: off\n"
              "text: x\\ny\n"
              "none: null\n"
              "empty:\n"
              "n: -1\n");
}

TEST(JsonReader, ReadsWhatTheWriterWrites) {
    rpcSntpConfigHost config{};
    config.mode = 1;
    std::strcpy(config.servers[0].host, "ntp.example.net");
    config.servers[0].ntpVersion = 4;
    config.servers[3].priority = 1;
    config.servers[3].addressType = 2;
    rpcSntpConfigHost copy{};
    read(copy, toJson(config).dump());
    EXPECT_EQ(std::memcmp(&copy, &config, sizeof config), 0);
}

TEST(JsonReader, TakesTextsForEveryKind) {
    rpcNetworkInfo info{};
    read(info, R"({"ipAddress":"192.0.2.9","netmask":"4294967040","macAddress":"02-00-5e-00-00-01",
                   "dhcpEnabled":"on","mngVlanId":"0x10","mngVlanMode":"native","defVid":7,
                   "defVlanMode":1,"flag4":1,"flag5":true})");
    EXPECT_EQ(info.ipAddress, 0xC0000209U);
    EXPECT_EQ(info.netmask, 0xFFFFFF00U);
    EXPECT_EQ(info.macAddress.octets[5], 1);
    EXPECT_EQ(info.dhcpEnabled, 1);
    EXPECT_EQ(info.mngVlanId, 16U);
    EXPECT_EQ(info.mngVlanMode, rpcVlanNative);
    EXPECT_EQ(info.defVid, 7U);
    EXPECT_EQ(info.defVlanMode, rpcVlanTagged);
    EXPECT_EQ(info.flag4, 1);
    EXPECT_EQ(info.flag5, 1);
    EXPECT_EQ(info.vendorClassEnabled, 0);
}

TEST(JsonReader, LeavesOutToZeroAndTextsEmpty) {
    rpc_network_snmptrap_add_1_argument argument{};
    Texts texts;
    readJson(Json::object(), texts, [&](FieldVisitor& visitor) { fields(visitor, argument); });
    ASSERT_NE(argument.community, nullptr);
    EXPECT_STREQ(argument.community, "");
    EXPECT_EQ(argument.ipAddress, 0U);
}

TEST(JsonReader, NamesTheFieldThatIsWrong) {
    EXPECT_EQ(refusalOf<rpcSntpConfig>(R"({"servers":[{},{"priority":"high"}]})"),
              "servers[1].priority: expected a whole number from -2147483648 to 2147483647, not "
              "'high'");
    EXPECT_EQ(refusalOf<rpcSntpConfig>(R"({"mode":1.5})"),
              "mode: expected a whole number from -2147483648 to 2147483647, not '1.5'");
    EXPECT_EQ(refusalOf<rpcSntpConfig>(R"({"mode":null})"),
              "mode: expected a whole number from -2147483648 to 2147483647, not 'null'");
    EXPECT_EQ(refusalOf<rpcSntpConfig>(R"({"servers":{}})"), "servers: expected an array");
    EXPECT_EQ(refusalOf<rpcSntpConfig>(R"({"servers":[1]})"),
              "servers[0]: expected an object with fields");
    EXPECT_EQ(refusalOf<rpcSntpConfig>(R"({"servers":[{},{},{},{}]})"),
              "servers: holds 4 items, where the board has room for 3");
    EXPECT_EQ(refusalOf<rpcSntpConfig>(R"({"servers":[{"address":"192.0.2.1"}]})"),
              "servers[0].address: there is no such field; expected ipAddress, ntpVersion or "
              "priority");
    EXPECT_EQ(refusalOf<rpcSntpConfigWS>(R"({"config":[]})"),
              "config: expected an object with fields");
    EXPECT_EQ(refusalOf<rpcNetworkInfo>(R"({"dhcpEnabled":2})"),
              "dhcpEnabled: expected on or off, not '2'");
    EXPECT_EQ(refusalOf<rpcNetworkInfo>(R"({"macAddress":5})"), "macAddress: expected a text");
}

TEST(JsonReader, BoundsTexts) {
    EXPECT_EQ(refusalOf<rpcSntpConfigHost>(R"({"servers":[{"host":")" + std::string(256, 'h') +
                                           R"("}]})"),
              "servers[0].host: a text of 256 bytes is too long: the board takes at most 255");
    EXPECT_EQ(refusalOf<rpcSntpConfigHost>(R"({"servers":[{"host":")" + std::string(255, 'h') +
                                           R"("}]})"),
              "");
    EXPECT_EQ(refusalOf<rpcSntpConfigHost>(R"({"servers":[{"host":"a\u0000b"}]})"),
              "servers[0].host: a text cannot hold a zero character");
}

TEST(Describer, TellsTypesAndBounds) {
    rpcSntpConfigHost config{};
    const Json described = describeJson([&](FieldVisitor& visitor) { fields(visitor, config); });
    EXPECT_EQ(described.dump(),
              R"([{"name":"mode","type":"integer"},{"name":"servers","type":"list","count":4,)"
              R"("fields":[{"name":"host","type":"text","maximum":255},)"
              R"({"name":"ntpVersion","type":"integer"},{"name":"priority","type":"integer"},)"
              R"({"name":"addressType","type":"integer"}]}])");
}

}  // namespace
}  // namespace mngctl::test
