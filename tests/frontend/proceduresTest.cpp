#include "mngctl/procedures.h"
#include "mngctlRun.h"

#include <algorithm>
#include <sstream>

namespace mngctl::test {
namespace {

TEST(Procedures, AreAllThoseOfTheTableAndTheNullProcedure) {
    std::vector<std::pair<unsigned, std::string_view>> expected = {{0, "null"}};
#define PROCEDURE(number, name, argument, result) expected.emplace_back(number, #name);
#include "network/rpc/procedures.def"
#undef PROCEDURE
    std::vector<std::pair<unsigned, std::string_view>> found;
    for (const Procedure& procedure : procedures()) {
        found.emplace_back(procedure.number, procedure.name);
    }
    EXPECT_EQ(found, expected);
    EXPECT_TRUE(std::ranges::is_sorted(procedures(), {}, &Procedure::number));
}

TEST(Procedures, AreListedWithNumberNameResultAndArgument) {
    const Outcome outcome = run({"rpc", "--list"});
    EXPECT_EQ(outcome.exit, Exit::Done);
    EXPECT_EQ(outcome.err, "");
    std::istringstream lines(outcome.out);
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(words(line), words("No. Name Result Argument"));
    for (const Procedure& procedure : procedures()) {
        ASSERT_TRUE(std::getline(lines, line));
        EXPECT_EQ(words(line).at(0), std::to_string(procedure.number));
        EXPECT_EQ(words(line).at(1), procedure.name);
    }
    EXPECT_FALSE(std::getline(lines, line));
    EXPECT_THAT(outcome.out, testing::HasSubstr(" 28  set_dns_servers               "
                                                "rpcNetworkResult              "
                                                "primary:IPv4 secondary:IPv4\n"));
    EXPECT_THAT(outcome.out, testing::HasSubstr(" 40  sntp_update                   "
                                                "rpcNetworkResult              "
                                                "one JSON object (rpcSntpConfig)\n"));
}

TEST(Procedures, AreListedAsJson) {
    const Outcome outcome = run({"rpc", "--list", "--json"});
    const Json list = Json::parse(outcome.out);
    ASSERT_EQ(list.size(), procedures().size());
    EXPECT_EQ(list[28].dump(),
              R"({"number":32,"name":"add_ra_rule","argument":{)"
              R"("type":"rpc_network_add_ra_rule_1_argument","fields":[)"
              R"({"name":"ipAddress","type":"IPv4"},{"name":"netmask","type":"IPv4"},)"
              R"({"name":"flag","type":"on|off"},{"name":"index","type":"unsigned"}]},)"
              R"("result":{"type":"rpcNetworkResult","fields":[)"
              R"({"name":"result","type":"status"}]}})");
}

TEST(Procedures, AreDescribedOneByOne) {
    EXPECT_EQ(run({"rpc", "--list", "sntp_getws"}),
              done("86 sntp_getws\n"
                   "  argument: no argument\n"
                   "  result: rpcSntpConfigWS\n"
                   "    result: integer\n"
                   "    config.mode: integer\n"
                   "    config.servers[0..2].ipAddress: IPv4\n"
                   "    config.servers[0..2].ntpVersion: "
                   "integer\n"
                   "    config.servers[0..2].priority: "
                   "integer\n"));
    EXPECT_EQ(run({"rpc", "--list", "set_ipv6dns_servers"}),
              done("93 set_ipv6dns_servers\n"
                   "  argument: primary:text secondary:text, or one JSON object\n"
                   "    primary: text of at most 255 bytes\n"
                   "    secondary: text of at most 255 bytes\n"
                   "  result: rpcNetworkResult\n"
                   "    result: status\n"));
}

TEST(Procedures, AllTakeTheirArgumentsInOrderOrAsJson) {
    unsigned flat = 0;
    for (const Procedure& procedure : procedures()) {
        std::vector<std::string> arguments;
        bool nested = false;
        for (const Json& field : procedure.describeArgument()) {
            nested = nested || field.contains("fields");
            arguments.push_back(sampleOf(field["type"], static_cast<unsigned>(arguments.size())));
        }
        if (nested) {
            continue;
        }
        ++flat;
        const Json argument = argumentFromWords(procedure, arguments);
        const Json checked = procedure.checkArgument(argument);
        EXPECT_EQ(checked.size(), arguments.size()) << procedure.name;
        EXPECT_EQ(procedure.checkArgument(checked), checked) << procedure.name;
        if (arguments.size() > 1) {
            EXPECT_EQ(argumentFromWords(procedure, std::vector{checked.dump()}), checked)
                << procedure.name;
        }
        arguments.push_back("more");
        EXPECT_THROW(argumentFromWords(procedure, arguments), UsageError) << procedure.name;
        if (arguments.size() > 1) {
            arguments.resize(arguments.size() - 2);
            EXPECT_THROW(argumentFromWords(procedure, arguments), UsageError) << procedure.name;
        }
    }
    EXPECT_EQ(flat, procedures().size() - 2);  // all but sntp_update and sntp_update_host
}

TEST(Procedures, WithWholeRecordsTakeOneJsonObject) {
    EXPECT_EQ(run({"rpc", "--dry-run", "--json", "sntp_update",
                   R"({"mode":1,"servers":[{"ipAddress":"192.0.2.1","priority":1}]})"})
                  .out,
              laidOut(R"({"mode": 1,
              "servers": [{"ipAddress": "192.0.2.1", "ntpVersion": 0, "priority": 1},
                {"ipAddress": "0.0.0.0", "ntpVersion": 0, "priority": 0},
                {"ipAddress": "0.0.0.0", "ntpVersion": 0, "priority": 0}]})"));
    for (const char* const wrong : {"{\"mode\":1", "{]", "{} x"}) {
        EXPECT_EQ(run({"rpc", "sntp_update", wrong}),
                  failed(Exit::Usage,
                         "sntp_update takes one JSON object (rpcSntpConfig): what is "
                         "given is no valid JSON object"));
    }
    EXPECT_EQ(run({"rpc", "sntp_update", "1"}),
              failed(Exit::Usage,
                     "sntp_update takes one JSON object (rpcSntpConfig); 1 argument was given"));
    EXPECT_EQ(run({"rpc", "sntp_update", "{}", "{}"}),
              failed(Exit::Usage,
                     "sntp_update takes one JSON object (rpcSntpConfig); 2 arguments were given"));
}

TEST(Procedures, CheckArgumentsBeforeAnythingIsSent) {
    // No board is needed to find these.
    EXPECT_EQ(run({"rpc", "set_gateway", "192.0.2.300"}),
              failed(Exit::Usage,
                     "value: expected an IPv4 address, four numbers from 0 to 255 with dots "
                     "between such as 192.0.2.1, not '192.0.2.300'"));
    EXPECT_EQ(run({"rpc", "ftp_enable", "maybe"}),
              failed(Exit::Usage, "value: expected on or off, not 'maybe'"));
    EXPECT_EQ(run({"rpc", "set_http_sproto", "quic"}),
              failed(Exit::Usage, "value: expected tls, ssl or both, or a number, not 'quic'"));
    EXPECT_EQ(run({"rpc", "set_ipv6dns_servers", "::1", std::string(256, '1')}),
              failed(Exit::Usage,
                     "secondary: a text of 256 bytes is too long: the board takes at most 255"));
    EXPECT_EQ(run({"rpc", "set_dns_servers", "192.0.2.1"}),
              failed(Exit::Usage,
                     "set_dns_servers takes primary:IPv4 secondary:IPv4, or one JSON "
                     "object; 1 argument was given"));
    EXPECT_EQ(run({"rpc", "get_telnet", "on"}),
              failed(Exit::Usage, "get_telnet takes no argument; 1 argument was given"));
    EXPECT_EQ(run({"rpc"}), failed(Exit::Usage,
                                   "expected the name of a procedure; 'mngctl rpc "
                                   "--list' shows all"));
}

TEST(Procedures, SuggestNamesThatAreNear) {
    EXPECT_EQ(run({"rpc", "set_dns_server"}),
              failed(Exit::Usage,
                     "there is no procedure 'set_dns_server' (did you mean set_dns_servers or "
                     "get_dns_servers?); 'mngctl rpc --list' shows all"));
    EXPECT_EQ(run({"rpc", "reboot"}),
              failed(Exit::Usage, "there is no procedure 'reboot'; 'mngctl rpc --list' shows all"));
}

TEST(Procedures, TakeWordsThatLookLikeOptionsOrLists) {
    EXPECT_EQ(run({"rpc", "--dry-run", "set_timezone_offset", "-3600"}), done("value: -3600\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "snmptrap_add", "--", "--json", "192.0.2.1", "on"}),
              done("community: --json\nipAddress: 192.0.2.1\nflag: on\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_domainname", "[a,b]"}), done("value: [a,b]\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_ipv6dns_servers", "[]", ""}),
              done("primary: []\nsecondary:\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_domainname", "{}"}), done("value: {}\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_domainname", "dns"}), done("value: dns\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_domainname", "--", "--"}), done("value: --\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_domainname", "%%"}), done("value: %%\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_domainname", "++"}), done("value: ++\n"));
    EXPECT_EQ(run({"rpc", "--dry-run", "set_domainname", "\x1f[x]"}), done("value: \\x1f[x]\n"));
}

TEST(Procedures, KnowARefusalFromAnAnswer) {
    EXPECT_EQ(refusal(findProcedure("set_ip"), Json{{"result", -1}}), -1);
    EXPECT_EQ(refusal(findProcedure("ftp_enable"), Json{{"result", 5}}), 5);
    EXPECT_EQ(refusal(findProcedure("is_ftp_enabled"), Json{{"result", 1}}), 0);
    EXPECT_EQ(refusal(findProcedure("is_ftp_enabled"), Json{{"result", -1}}), -1);
    EXPECT_EQ(refusal(findProcedure("get_telnet"), Json{{"result", true}}), 0);
    // The first field of this record tells where the values come from.
    EXPECT_EQ(refusal(findProcedure("get_dns_serversws"), Json{{"result", 2}}), 0);
    EXPECT_EQ(refusal(findProcedure("iterate_rules"), Json{{"result", -1}, {"rule", {}}}), -1);
}

}  // namespace
}  // namespace mngctl::test
