#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Domain, IsShownForBothFamilies) {
    CannedBoard board;
    EXPECT_EQ(board.run("domain show"), done("IPv4 domain: none (cli)\n"
                                             "IPv6 domain: none (dhcp)\n"));
    board.run("domain set -q access.example.net");
    EXPECT_EQ(board.run("domain show --json"), done(laidOut(R"({
              "ipv4": {"name": "access.example.net", "source": "cli"},
              "ipv6": {"name": null, "source": "dhcp"}})")));
}

TEST(Domain, IsSetForOneFamilyOrBoth) {
    CannedBoard board;
    EXPECT_EQ(board.run("domain set a.example"), done("IPv4 domain: a.example (cli)\n"));
    EXPECT_EQ(board.run("domain set --ipv6 b.example"), done("IPv6 domain: b.example (cli)\n"));
    EXPECT_EQ(board.run("domain set c.example --ipv4 --ipv6"),
              done("IPv4 domain: c.example (cli)\nIPv6 domain: c.example (cli)\n"));
    EXPECT_THAT(
        board.requests(),
        ElementsAre("set_domainname a.example", "get_domainnamews", "set_ipv6domainname b.example",
                    "get_ipv6domainnamews", "set_domainname c.example",
                    "set_ipv6domainname c.example", "get_domainnamews", "get_ipv6domainnamews"));
}

TEST(Domain, IsClearedForOneFamilyOrBoth) {
    CannedBoard board;
    board.run("domain set -q --ipv4 --ipv6 a.example");
    board.requests();
    EXPECT_EQ(board.run("domain clear --ipv6"), done("IPv6 domain: none (cli)\n"));
    EXPECT_EQ(board.run("domain clear --quiet"), done(""));
    EXPECT_THAT(board.requests(), ElementsAre("set_ipv6domainname", "get_ipv6domainnamews",
                                              "set_domainname", "set_ipv6domainname"));
}

std::string longName(std::size_t size) {
    std::string name;
    while (name.size() + 50 < size) {
        name.append(49, 'a').push_back('.');
    }
    return name.append(size - name.size(), 'b');
}

TEST(Domain, WarnsOfWhatIsNotShown) {
    const CannedBoard board;
    EXPECT_EQ(board.run("domain set -q " + longName(99)), done(""));
    EXPECT_EQ(board.run("domain set -q " + longName(100)),
              (Outcome{Exit::Done, "",
                       "mngctl: the board keeps all 100 characters of this name but shows the "
                       "first 99 only\n"}));
    EXPECT_EQ(board.run("domain set " + longName(253)).exit, Exit::Done);
}

TEST(Domain, FollowsTheRules) {
    CannedBoard board;
    for (const std::string good :
         {"a", "1", "a-b", "xn--zrich-kva.example", "1.2.3", "A.B", "a--b.c", "192.0.2.300"}) {
        EXPECT_EQ(board.run("domain set -q " + good), done("")) << good;
    }
    EXPECT_EQ(board.run("domain set -q " + std::string(63, 'a') + ".b"), done(""));
    board.requests();

    const auto refused = [&](const std::string& name, const std::string& sentence) {
        EXPECT_EQ(board.run({"domain", "set", name}), wrongUsage(sentence)) << name;
    };
    const std::string characters =
        "a label is made of the letters a to z, digits and hyphens (names in other scripts are "
        "written in their xn-- form)";
    const std::string hyphen = "a label neither begins nor ends with a hyphen";
    refused("", "the domain name is empty: 'mngctl domain clear' removes it");
    refused("a..b", "'a..b' is no domain name: a label between dots is empty");
    refused(".a", "'.a' is no domain name: a label between dots is empty");
    refused("a.", "'a.': leave out the dot at the end");
    refused("a_b", "'a_b' is no domain name: " + characters);
    refused("a b", "'a b' is no domain name: " + characters);
    refused("zürich.example", "'zürich.example' is no domain name: " + characters);
    refused("a-.b", "'a-.b' is no domain name: " + hyphen);
    refused("a.-b", "'a.-b' is no domain name: " + hyphen);
    refused("192.0.2.1", "'192.0.2.1' is an address, not a domain name");
    refused(std::string(64, 'a'), "'" + std::string(64, 'a') + "' is no domain name: the label '" +
                                      std::string(64, 'a') + "' is longer than 63 characters");
    refused(longName(254), "a domain name has at most 253 characters, this one has 254");
    EXPECT_THAT(board.requests(), IsEmpty());
}

TEST(Domain, TellsThatTheBoardRefuses) {
    const CannedBoard board({"--refuse"});
    EXPECT_EQ(board.run("domain set a.example"),
              refusedWith("the board refused to set the IPv4 domain: result -1 (failed)"));
    EXPECT_EQ(board.run("domain clear --ipv6"),
              refusedWith("the board refused to clear the IPv6 domain: result -1 (failed)"));
}

}  // namespace
}  // namespace mngctl::test
