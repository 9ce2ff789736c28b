#include "mngctl/commands/networks.h"
#include "mngctlRun.h"

namespace mngctl::test {
namespace {

TEST(Ipv4Mask, IsALengthOrDotted) {
    struct {
        const char* text;
        unsigned mask;
        unsigned length;
    } const cases[] = {{"0", 0, 0},
                       {"0.0.0.0", 0, 0},
                       {"1", 0x80000000, 1},
                       {"128.0.0.0", 0x80000000, 1},
                       {"8", 0xFF000000, 8},
                       {"23", 0xFFFFFE00, 23},
                       {"255.255.254.0", 0xFFFFFE00, 23},
                       {"24", 0xFFFFFF00, 24},
                       {"255.255.255.0", 0xFFFFFF00, 24},
                       {"31", 0xFFFFFFFE, 31},
                       {"32", 0xFFFFFFFF, 32},
                       {"255.255.255.255", 0xFFFFFFFF, 32}};
    for (const auto& [text, mask, length] : cases) {
        EXPECT_EQ(parseMask(text), mask) << text;
        EXPECT_EQ(prefixLength(mask), length) << text;
        EXPECT_EQ(maskOfLength(length), mask) << text;
    }
}

TEST(Ipv4Mask, HasNoHoles) {
    for (const char* const text : {"255.0.255.0", "0.255.255.255", "0.0.0.255", "255.255.255.1",
                                   "127.255.255.255", "255.255.0.255", "192.0.2.1"}) {
        EXPECT_EQ(refusalOf([&] { parseMask(text); }),
                  std::string("'") + text +
                      "' is no mask: expected ones followed by zeros, such as 255.255.255.0");
    }
    EXPECT_EQ(prefixLength(0xFF00FF00), std::nullopt);
    EXPECT_EQ(prefixLength(1), std::nullopt);
}

TEST(Ipv4Mask, RefusesEverythingElse) {
    for (const char* const text : {"33", "99999999999", "032000"}) {
        EXPECT_EQ(refusalOf([&] { parseMask(text); }),
                  std::string("expected a prefix length from 0 to 32, not '") + text + "'");
    }
    for (const char* const text : {"", "-1", "+8", "24 ", "0x18", "255.255.255", "255.255.255.256",
                                   "/24", "twenty-four", "\n"}) {
        EXPECT_EQ(refusalOf([&] { parseMask(text); })
                      .rfind("expected a prefix length from 0 to 32 "
                             "or a mask such as 255.255.255.0, not ",
                             0),
                  0U)
            << text;
    }
}

TEST(Ipv4Network, IsAnAddressWithItsPrefix) {
    struct {
        const char* text;
        Ipv4Network network;
        const char* shown;
    } const cases[] = {
        {"192.0.2.0/24", {0xC0000200, 0xFFFFFF00}, "192.0.2.0/24"},
        {"192.0.2.7/255.255.255.0", {0xC0000207, 0xFFFFFF00}, "192.0.2.7/24"},
        {"192.0.2.7", {0xC0000207, 0xFFFFFFFF}, "192.0.2.7/32"},
        {"0.0.0.0/0", {0, 0}, "0.0.0.0/0"},
        {"255.255.255.255", {0xFFFFFFFF, 0xFFFFFFFF}, "255.255.255.255/32"},
    };
    for (const auto& [text, network, shown] : cases) {
        EXPECT_EQ(parseNetwork(text), network) << text;
        EXPECT_EQ(formatNetwork(network), shown);
    }
    EXPECT_EQ(formatNetwork({0xC0000200, 0xFF00FF00}), "192.0.2.0 mask 255.0.255.0");
    for (const char* const wrong : {"", "/24", "192.0.2.0/", "192.0.2/24", "192.0.2.0/24/1",
                                    "192.0.2.0 /24", "192.0.2.0/33", "example.net/24"}) {
        EXPECT_NE(refusalOf([&] { parseNetwork(wrong); }), "") << wrong;
    }
}

TEST(Ipv4Network, KnowsItsEnds) {
    const Ipv4Network network{0xC0000287, 0xFFFFFF80};
    EXPECT_EQ(network.first(), 0xC0000280U);
    EXPECT_EQ(network.last(), 0xC00002FFU);
    EXPECT_EQ(network.withoutHostBits(), (Ipv4Network{0xC0000280, 0xFFFFFF80}));
    EXPECT_TRUE(network.contains(0xC0000280));
    EXPECT_TRUE(network.contains(0xC00002FF));
    EXPECT_FALSE(network.contains(0xC000027F));
    EXPECT_FALSE(network.contains(0xC0000300));
    EXPECT_TRUE((Ipv4Network{0, 0}.contains(0xFFFFFFFF)));
}

TEST(Ipv4Host, IsOneThatCanAnswer) {
    struct {
        const char* text;
        const char* reason;
    } const cases[] = {{"0.0.0.0", "the unspecified address"},
                       {"255.255.255.255", "the broadcast address"},
                       {"0.0.0.1", "an address of 0.0.0.0/8, which stands for no host"},
                       {"0.255.255.255", "an address of 0.0.0.0/8, which stands for no host"},
                       {"127.0.0.1", "a loopback address"},
                       {"127.255.255.254", "a loopback address"},
                       {"224.0.0.1", "a multicast address"},
                       {"239.255.255.255", "a multicast address"},
                       {"240.0.0.1", "a reserved address"}};
    for (const auto& [text, reason] : cases) {
        EXPECT_EQ(refusalOf([&, address = text] { parseHostAddress(address); }),
                  std::string("'") + text + "' is " + reason +
                      ": expected the address of a host such as 192.0.2.10");
    }
    for (const char* const right : {"1.0.0.0", "126.255.255.255", "128.0.0.0", "223.255.255.255"}) {
        EXPECT_EQ(refusalOf([&] { parseHostAddress(right); }), "") << right;
    }
}

TEST(Ipv4Interface, TakesBothForms) {
    const Ipv4Network expected{0xC000020A, 0xFFFFFF00};
    EXPECT_EQ(parseInterfaceAddress("192.0.2.10/24", ""), expected);
    EXPECT_EQ(parseInterfaceAddress("192.0.2.10/255.255.255.0", ""), expected);
    EXPECT_EQ(parseInterfaceAddress("192.0.2.10", "255.255.255.0"), expected);
    EXPECT_EQ(parseInterfaceAddress("192.0.2.10", "24"), expected);
}

TEST(Ipv4Interface, IsAHostInItsNetwork) {
    // Networks of one or two addresses have neither a network nor a broadcast address.
    for (const char* const right :
         {"192.0.2.0/32", "192.0.2.255/32", "192.0.2.0/31", "192.0.2.1/31", "192.0.2.1/30",
          "192.0.2.2/30", "192.0.3.0/23", "192.0.2.255/22", "10.0.0.1/1"}) {
        EXPECT_EQ(refusalOf([&] { parseInterfaceAddress(right, ""); }), "") << right;
    }
    struct {
        const char* text;
        const char* sentence;
    } const cases[] = {
        {"192.0.2.0/24",
         "'192.0.2.0' is the network address of 192.0.2.0/24: expected that of a host in it, "
         "192.0.2.1 to 192.0.2.254"},
        {"192.0.2.255/24",
         "'192.0.2.255' is the broadcast address of 192.0.2.0/24: expected that of a host in it, "
         "192.0.2.1 to 192.0.2.254"},
        {"192.0.2.3/30",
         "'192.0.2.3' is the broadcast address of 192.0.2.0/30: expected that of a host in it, "
         "192.0.2.1 to 192.0.2.2"},
    };
    for (const auto& [text, sentence] : cases) {
        EXPECT_EQ(refusalOf([&, given = text] { parseInterfaceAddress(given, ""); }), sentence);
    }
}

TEST(Ipv4Interface, NeedsOneMaskThatLeavesANetwork) {
    EXPECT_EQ(refusalOf([] { parseInterfaceAddress("192.0.2.10", ""); }),
              "'192.0.2.10' lacks its network: expected ADDRESS/PREFIX such as 192.0.2.10/24, or "
              "ADDRESS MASK such as 192.0.2.10 255.255.255.0");
    EXPECT_EQ(refusalOf([] { parseInterfaceAddress("192.0.2.10/24", "255.255.255.0"); }),
              "the network is given twice, as '/24' and as '255.255.255.0'");
    for (const char* const none : {"0", "0.0.0.0"}) {
        EXPECT_EQ(refusalOf([&] { parseInterfaceAddress("192.0.2.10", none); }),
                  std::string("'") + none +
                      "' puts every address into the board's own network: expected a prefix length "
                      "from 1 to 32 or a mask such as 255.255.255.0");
    }
    EXPECT_NE(refusalOf([] { parseInterfaceAddress("192.0.2.10/", ""); }), "");
}

}  // namespace
}  // namespace mngctl::test
