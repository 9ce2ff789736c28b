#include "mngctl/procedures.h"
#include "mngctl/prompt/completion.h"
#include "mngctlRun.h"

#include <algorithm>

namespace mngctl::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Not;

std::vector<std::string> candidates(const std::string& line) {
    return completeLine(line).candidates;
}

TEST(Completion, OffersNounsAndVerbs) {
    auto nouns = documentedNouns();
    std::ranges::sort(nouns);
    EXPECT_THAT(candidates(""), ElementsAreArray(nouns));
    EXPECT_THAT(candidates("d"), ElementsAre("dhcp", "dns", "domain"));
    EXPECT_EQ(completeLine("d").insert, "");
    EXPECT_EQ(completeLine("dn").insert, "s ");
    EXPECT_THAT(candidates("dns "), ElementsAre("clear", "set", "show"));
    EXPECT_EQ(completeLine("dns s").insert, "");
    EXPECT_EQ(completeLine("board cl").insert, "ear-config ");
    EXPECT_THAT(candidates("access "),
                ElementsAre("clear", "deny", "list", "permit", "remove", "test"));
    EXPECT_THAT(candidates("dhcp o"), ElementsAre("off", "on", "option82"));
    EXPECT_THAT(candidates("snmp "),
                ElementsAre("community", "contact", "location", "name", "show", "trap"));
    EXPECT_THAT(candidates("snmp community add public "), ElementsAre("ro", "rw"));
    EXPECT_THAT(candidates("ntp "), ElementsAre("off", "on", "server", "show"));
    EXPECT_THAT(candidates("vlan "), ElementsAre("default", "set", "show"));
    EXPECT_THAT(candidates("vlan default "), ElementsAre("set", "show"));
    EXPECT_THAT(candidates("vlan default set 10 "), ElementsAre("native", "tagged"));
    EXPECT_THAT(candidates("nothing "), ElementsAre());
    EXPECT_THAT(candidates("dns show "), IsEmpty());
}

TEST(Completion, OffersValuesOfAnArgumentInItsPlace) {
    EXPECT_THAT(candidates("board feature httpserver "), ElementsAre("off", "on"));
    EXPECT_THAT(candidates("board feature "), IsEmpty());
    EXPECT_THAT(candidates("board feature httpserver on "), IsEmpty());
    EXPECT_EQ(completeLine("board clear-config st").insert, "art ");
    EXPECT_THAT(candidates("dhcp vendor-class "), ElementsAre("off", "on"));
}

TEST(Completion, OffersOptions) {
    EXPECT_THAT(candidates("access permit --a"), ElementsAre("--at"));
    EXPECT_THAT(candidates("access permit 192.0.2.0/24 --at "), IsEmpty());
    EXPECT_THAT(candidates("dns clear --ip"), ElementsAre("--ipv4", "--ipv6"));
    EXPECT_EQ(completeLine("dns clear --ip").insert, "v");
    EXPECT_THAT(candidates("dns show --"), Contains("--json"));
    EXPECT_THAT(candidates("dns show --"), Not(Contains("--ipv4")));
    // What follows an option that takes a value is the value.
    EXPECT_THAT(candidates("dns --host "), IsEmpty());
    EXPECT_THAT(candidates("dns --host h "), ElementsAre("clear", "set", "show"));
    EXPECT_THAT(candidates("dns --host=h sh"), ElementsAre("show"));
    EXPECT_THAT(candidates("--json dn"), ElementsAre("dns"));
}

TEST(Completion, OffersEveryProcedure) {
    EXPECT_EQ(candidates("rpc ").size(), procedures().size());
    EXPECT_EQ(completeLine("rpc get_ne").insert, "");
    EXPECT_THAT(candidates("rpc get_ne"), ElementsAre("get_network_info", "get_next_arp"));
    EXPECT_EQ(completeLine("rpc get_netw").insert, "ork_info ");
    EXPECT_THAT(candidates("rpc --list set_op"), ElementsAre("set_option82"));
    EXPECT_THAT(candidates("rpc set_vlan "), IsEmpty());
}

TEST(Completion, LeavesQuotedWordsAlone) {
    EXPECT_THAT(candidates("'dn"), IsEmpty());
    EXPECT_THAT(candidates("dns '"), IsEmpty());
}

TEST(Columns, FitTheTerminal) {
    const std::vector<std::string> names{"a", "bbb", "cc", "d"};
    EXPECT_EQ(inColumns(names, 8), "a    bbb\ncc   d\n");
    EXPECT_EQ(inColumns(names, 80), "a    bbb  cc   d\n");
    EXPECT_EQ(inColumns(names, 1), "a\nbbb\ncc\nd\n");
    EXPECT_EQ(inColumns({}, 80), "");
}

}  // namespace
}  // namespace mngctl::test
