#include "board/bridge/rulesDocument.h"
#include "support/matchers.h"

#include <stdexcept>
#include <string>

using bridge::SavedRule;
using bridge::SavedRules;

namespace {

const SavedRule a{0x0a000000, 0x00ffffff, true};
const SavedRule b{0xc0000201, 0, false};
const SavedRule c{0, 0xffffffff, true};

std::string refusalOf(const std::string& document) {
    try {
        bridge::rulesFormat.parse(document);
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::string withRule(const std::string& rule) {
    return R"({"version": 1, "rules": [)" + rule + R"(], "notInForce": []})";
}

}  // namespace

TEST(RulesDocument, IsReadable) {
    EXPECT_EQ(bridge::rulesFormat.format({{a}, {{2, b}}}), R"({
    "notInForce": [
        {
            "action": "deny",
            "address": "192.0.2.1",
            "place": 2,
            "wildcard": "0.0.0.0"
        }
    ],
    "rules": [
        {
            "action": "permit",
            "address": "10.0.0.0",
            "wildcard": "0.255.255.255"
        }
    ],
    "version": 1
}
)");
}

TEST(RulesDocument, IsReadBack) {
    for (const SavedRules& rules :
         {SavedRules{}, SavedRules{{a, b, c, a}, {}}, SavedRules{{}, {{1, a}, {2, b}}},
          SavedRules{{c}, {{1, a}, {7, b}}}}) {
        EXPECT_EQ(bridge::rulesFormat.parse(bridge::rulesFormat.format(rules)), rules);
    }
}

TEST(RulesDocument, RulesThatWaitStandInTheirPlaces) {
    EXPECT_THAT((SavedRules{{a, b}, {{1, c}}}.all()), ElementsAre(c, a, b));
    EXPECT_THAT((SavedRules{{a, b}, {{2, c}}}.all()), ElementsAre(a, c, b));
    EXPECT_THAT((SavedRules{{a}, {{1, b}, {3, c}}}.all()), ElementsAre(b, a, c));
    // The list has become shorter, or someone has edited the file.
    EXPECT_THAT((SavedRules{{a}, {{9, b}}}.all()), ElementsAre(a, b));
    EXPECT_THAT((SavedRules{{a}, {{0, b}}}.all()), ElementsAre(b, a));
}

TEST(RulesDocument, RulesThatWaitAreTakenByRisingPlaceAndThenAsTheyStand) {
    SavedRules written{{a}, {{2, b}, {1, c}}};
    const auto read = [&] {
        return bridge::rulesFormat.parse(bridge::rulesFormat.format(written));
    };
    EXPECT_THAT(read().all(), ElementsAre(c, b, a));

    // So many that a sort which is not stable would mix them.
    written.waiting.clear();
    for (unsigned int address = 1; address <= 100; ++address) {
        written.waiting.push_back({3, {address, 0, true}});
    }
    EXPECT_EQ(read(), written);
}

TEST(RulesDocument, DamageIsRefused) {
    for (const char* const damaged :
         {"", "{", "[]", "null", "{}", R"({"version": 1})",
          R"({"version": 1, "rules": {}, "notInForce": []})",
          R"({"version": 1, "rules": 5, "notInForce": []})",
          R"({"version": "1", "rules": [], "notInForce": []})",
          R"({"version": -1, "rules": [], "notInForce": []})", R"({"version": 1, "rules": []})",
          R"({"version": 1, "rules": [], "notInForce": [{"action": "permit", "address": "0.0.0.0",)"
          R"( "wildcard": "0.0.0.0"}]})"}) {
        EXPECT_NE(refusalOf(damaged), "") << damaged;
    }
    EXPECT_EQ(refusalOf(withRule(R"({"action":"permit","address":"10.0.0","wildcard":"0.0.0.0"})")),
              "address \"10.0.0\" is not an IPv4 address");
    EXPECT_EQ(refusalOf(withRule(R"({"action":"pass","address":"10.0.0.0","wildcard":"0.0.0.0"})")),
              "there is no action \"pass\"");
    EXPECT_EQ(refusalOf(R"({"version": 2, "rules": [], "notInForce": []})"),
              "it has version 2, this release knows version 1");
    EXPECT_EQ(refusalOf(R"({"version": 1, "rules": {}, "notInForce": []})"), "rules is not a list");
    EXPECT_EQ(refusalOf(R"({"version": 1, "rules": [], "notInForce": 7})"),
              "notInForce is not a list");
    EXPECT_NE(refusalOf(withRule(R"({"action":"permit","address":7,"wildcard":"0.0.0.0"})")), "");
    EXPECT_NE(refusalOf(withRule("5")), "");
    EXPECT_EQ(refusalOf(withRule(R"({"action":"deny","address":"10.0.0.0","wildcard":"0.0.0.0"})")),
              "");
}
