#include "mngctl/procedures.h"
#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;

class Rpc : public testing::TestWithParam<Protocol> {
protected:
    Outcome run(const std::vector<std::string>& command) const {
        return board.run(command, GetParam());
    }
    Outcome run(const std::string& line) const { return run(words(line)); }

    CannedBoard board{{"--rules", "2"}};
};

INSTANTIATE_TEST_SUITE_P(Over, Rpc, bothProtocols, nameOfProtocol);

TEST_P(Rpc, CallsTheNullProcedure) {
    EXPECT_EQ(run("rpc null"), done("answered\n"));
    EXPECT_EQ(run("rpc --json null"), done("{}\n"));
    EXPECT_THAT(board.requests(), ElementsAre("null", "null"));
}

TEST_P(Rpc, SendsEveryKindOfArgument) {
    EXPECT_EQ(run("rpc ftp_enable on"), done("result: 0\n"));
    EXPECT_EQ(run("rpc set_timezone_offset -3600"), done("result: 0\n"));
    EXPECT_EQ(run("rpc set_vlan 4294967295"), done("result: 0\n"));
    EXPECT_EQ(run("rpc set_gateway 192.0.2.254"), done("result: 0\n"));
    EXPECT_EQ(run("rpc set_http_sproto ssl"), done("result: 0\n"));
    EXPECT_EQ(run({"rpc", "set_timezone_name", "Europe/Zürich \xFF"}), done("result: 0\n"));
    EXPECT_EQ(run("rpc snmpcommunity_add public read-write on"), done("result: 0\n"));
    EXPECT_EQ(run({"rpc", "set_ont_nmg", R"({"ipAddress":"192.0.2.9","mngVlanId":7})"}),
              done("result: 0\n"));
    EXPECT_THAT(
        board.requests(),
        ElementsAre("ftp_enable 1", "set_timezone_offset -3600", "set_vlan 4294967295",
                    "set_gateway 3221226238", "set_http_sproto 1",
                    "set_timezone_name Europe/Zürich \xFF",
                    R"(snmpcommunity_add {"name":"public","access":"read-write","flag":true})",
                    R"(set_ont_nmg {"ipAddress":"192.0.2.9","netmask":"0.0.0.0",)"
                    R"("macAddress":"00:00:00:00:00:00","macAddress2":"00:00:00:00:00:00",)"
                    R"("dhcpEnabled":false,"vendorClassEnabled":false,"mngVlanId":7,)"
                    R"("option82Enabled":false,"flag4":false,"flag5":false,)"
                    R"("mngVlanMode":"none","defVid":0,"defVlanMode":"none"})"));
}

TEST_P(Rpc, CallsEveryProcedure) {
    for (const Procedure& procedure : procedures()) {
        const Json described = procedure.describeArgument();
        std::vector<std::string> command{"rpc", std::string(procedure.name)};
        if (std::ranges::any_of(described, [](auto& field) { return field.contains("fields"); })) {
            command.push_back(R"({"mode":1})");
        } else {
            for (unsigned i = 0; i < described.size(); ++i) {
                command.push_back(sampleOf(described[i]["type"], i));
            }
        }
        const Outcome outcome = run(command);
        const bool refused = procedure.name == "set_hostname";
        EXPECT_EQ(outcome.exit, refused ? Exit::Refused : Exit::Done) << procedure.name << outcome;
        EXPECT_NE(outcome.out, "") << procedure.name;
        const auto requests = board.requests();
        ASSERT_EQ(requests.size(), 1U) << procedure.name;
        EXPECT_EQ(words(requests[0]).at(0), procedure.name);
        if (described.size() > 1) {
            const Json sent = Json::parse(requests[0].substr(requests[0].find('{')));
            EXPECT_EQ(sent, procedure.checkArgument(
                                argumentFromWords(procedure, std::span(command).subspan(2))))
                << procedure.name;
        }
    }
}

TEST_P(Rpc, PrintsRecordsAsLinesOrJson) {
    EXPECT_EQ(run("rpc iterate_rules 1"), done("result: 0\n"
                                               "rule.index: 2\n"
                                               "rule.ipAddress: 192.0.2.0\n"
                                               "rule.netmask: 255.255.255.0\n"
                                               "rule.flag: on\n"));
    EXPECT_EQ(run("rpc iterate_rules 1 --json"), done(laidOut(R"({"result": 0,
              "rule": {"index": 2, "ipAddress": "192.0.2.0", "netmask": "255.255.255.0",
                "flag": true}})")));
    EXPECT_EQ(run("rpc get_telnet"), done("result: off\n"));
    EXPECT_EQ(run("rpc get_telnet --json"), done(laidOut(R"({"result": false})")));
}

TEST_P(Rpc, ReadsBackWhatJsonSet) {
    EXPECT_EQ(
        run({"rpc", "sntp_update",
             R"({"mode":1,"servers":[{"ipAddress":"192.0.2.1","ntpVersion":4,"priority":1}]})"}),
        done("result: 0\n"));
    const Outcome read = run("rpc sntp_get --json");
    EXPECT_EQ(run({"rpc", "sntp_update", read.out}), done("result: 0\n"));
    EXPECT_EQ(run("rpc sntp_get --json"), read);
    EXPECT_EQ(Json::parse(read.out)["servers"][0].dump(),
              R"({"ipAddress":"192.0.2.1","ntpVersion":4,"priority":1})");
}

TEST_P(Rpc, EscapesTextsThatAreNoUtf8) {
    std::string escaped;
    for (int i = 0; i < 100; ++i) {
        escaped += "\\xe9";
    }
    EXPECT_EQ(run("rpc get_domainname"), done("text: " + escaped + "\n"));
    const Outcome json = run("rpc get_domainname --json");
    EXPECT_EQ(Json::parse(json.out)["text"], escaped);
}

TEST_P(Rpc, PrintsWhatCameWithARefusal) {
    EXPECT_EQ(run("rpc set_hostname box"),
              (Outcome{Exit::Refused, "result: -1\n",
                       "mngctl: the board refused set_hostname: result -1 (failed)\n"}));
    const Outcome past = run("rpc iterate_rules 2 --json");
    EXPECT_EQ(past.exit, Exit::Refused);
    EXPECT_EQ(Json::parse(past.out)["result"], -1);
    EXPECT_EQ(past.err, "mngctl: the board refused iterate_rules: result -1 (failed)\n");
}

TEST_P(Rpc, AQuestionIsAnsweredNotRefused) {
    EXPECT_EQ(run("rpc is_ftp_enabled"), done("result: 1\n"));
}

TEST(RpcLength, FitsOverTcpButNotIntoADatagram) {
    CannedBoard board;
    const std::string text(50'000, 'x');
    const std::vector<std::string> command{"rpc", "set_sntp_timezone", "60", text};
    EXPECT_EQ(board.run(command), done("result: 0\n"));
    EXPECT_THAT(board.requests(),
                ElementsAre("set_sntp_timezone {\"offset\":60,\"name\":\"" + text + "\"}"));
    EXPECT_EQ(
        board.run(command, Protocol::Udp),
        failed(Exit::Usage, "the arguments do not fit into one datagram of 8800 bytes: use --tcp"));
}

TEST(RpcLength, OfALoneTextIsBoundedByTheRpcLibrary) {
    CannedBoard board;
    const std::string longest(9000, 'x');
    EXPECT_EQ(board.run({"rpc", "set_timezone_name", longest}), done("result: 0\n"));
    EXPECT_THAT(board.requests(), ElementsAre("set_timezone_name " + longest));
    EXPECT_EQ(board.run({"rpc", "set_timezone_name", longest + "x"}),
              failed(Exit::Usage,
                     "value: a text of 9001 bytes is too long: the board takes at most 9000"));
}

}  // namespace
}  // namespace mngctl::test
