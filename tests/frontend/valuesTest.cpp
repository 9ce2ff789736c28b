#include "mngctl/wire/values.h"
#include "mngctlRun.h"

namespace mngctl::test {
namespace {

using testing::ElementsAre;

TEST(Flag, IsOnOrOffInManyWords) {
    for (const char* const yes : {"on", "true", "yes", "1"}) {
        EXPECT_TRUE(parseFlag(yes)) << yes;
    }
    for (const char* const no : {"off", "false", "no", "0"}) {
        EXPECT_FALSE(parseFlag(no)) << no;
    }
}

TEST(Flag, RefusesAnythingElse) {
    for (const char* const wrong : {"", "On", "2", "onn", "of"}) {
        EXPECT_EQ(refusalOf([&] { parseFlag(wrong); }),
                  std::string("expected on or off, not '") + wrong + "'");
    }
}

TEST(Number, HasTheRangeOfItsType) {
    EXPECT_EQ(parseInt("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(parseInt("2147483647"), 2147483647);
    EXPECT_EQ(parseInt("0x10"), 16);
    EXPECT_EQ(parseInt("-0x10"), -16);
    EXPECT_EQ(parseUnsigned("4294967295"), 4294967295U);
    EXPECT_EQ(parseUnsigned("0xFFFFFFFF"), 4294967295U);
    EXPECT_EQ(parseUnsigned("007"), 7U);
}

TEST(Number, RefusesWhatDoesNotFitOrIsNone) {
    for (const char* const wrong : {"2147483648", "-2147483649", "99999999999999999999", "", "-",
                                    "0x", "1.0", "12a", " 1", "1 ", "--1", "+1", "1e3"}) {
        EXPECT_EQ(refusalOf([&] { parseInt(wrong); }),
                  std::string("expected a whole number from -2147483648 to 2147483647, not '") +
                      wrong + "'");
    }
    for (const char* const wrong : {"4294967296", "-1", "x"}) {
        EXPECT_EQ(refusalOf([&] { parseUnsigned(wrong); }),
                  std::string("expected a whole number from 0 to 4294967295, not '") + wrong + "'");
    }
}

TEST(Ipv4, IsInHostByteOrder) {
    EXPECT_EQ(parseIpv4("192.0.2.1"), 0xC0000201U);
    EXPECT_EQ(parseIpv4("0.0.0.0"), 0U);
    EXPECT_EQ(parseIpv4("255.255.255.255"), 0xFFFFFFFFU);
    EXPECT_EQ(formatIpv4(0xC0000201U), "192.0.2.1");
    EXPECT_EQ(formatIpv4(0), "0.0.0.0");
    EXPECT_EQ(formatIpv4(0xFFFFFFFEU), "255.255.255.254");
}

TEST(Ipv4, RefusesHalfAndBadAddresses) {
    for (const char* const wrong :
         {"192.0.2.300", "1.2.3", "1.2.3.4.5", "192.0.2.1 ", "192.0.2.1x", " 192.0.2.1",
          "192.0.2.01", "192.0.2.1/24", "", "1", "0x7f.1", "a.b.c.d", "192.0.2.-1", "192..2.1"}) {
        EXPECT_EQ(refusalOf([&] { parseIpv4(wrong); }),
                  std::string("expected an IPv4 address, four numbers from 0 to 255 with dots "
                              "between such as 192.0.2.1, not '") +
                      wrong + "'");
    }
}

TEST(Ipv4, RefusesAHiddenEnd) {
    using namespace std::string_view_literals;
    EXPECT_EQ(refusalOf([&] { parseIpv4("192.0.2.1\0x"sv); }),
              "expected an IPv4 address, four numbers from 0 to 255 with dots between such as "
              "192.0.2.1, not '192.0.2.1\\x00x'");
}

TEST(Ipv4, MayBeANumberWhereThatIsAllowed) {
    EXPECT_EQ(parseIpv4OrNumber("3221225985"), 0xC0000201U);
    EXPECT_EQ(parseIpv4OrNumber("0xC0000201"), 0xC0000201U);
    EXPECT_EQ(parseIpv4OrNumber("192.0.2.1"), 0xC0000201U);
    EXPECT_THROW(parseIpv4OrNumber("-1"), UsageError);
    EXPECT_THROW(parseIpv4OrNumber("4294967296"), UsageError);
}

TEST(Ipv6, BecomesCanonical) {
    EXPECT_EQ(parseIpv6("2001:DB8:0:0:0:0:0:1"), "2001:db8::1");
    EXPECT_EQ(parseIpv6("::"), "::");
    EXPECT_EQ(parseIpv6("::ffff:192.0.2.1"), "::ffff:192.0.2.1");
}

TEST(Ipv6, RefusesZonesPrefixesAndTrailingText) {
    EXPECT_EQ(refusalOf([] { parseIpv6("fe80::1%eth0"); }),
              "'fe80::1%eth0' names a zone, which the board cannot store: leave out the % and what "
              "follows it");
    for (const char* const wrong : {"2001:db8::1/64", "2001:db8::1 ", "2001:db8::12345", "1::2::3",
                                    "[2001:db8::1]", "2001:db8", "", "g::1"}) {
        EXPECT_EQ(refusalOf([&] { parseIpv6(wrong); }),
                  std::string("expected an IPv6 address such as 2001:db8::1, not '") + wrong + "'");
    }
}

TEST(Mac, HasColonsOrHyphens) {
    EXPECT_THAT(parseMac("02:00:5e:10:00:FF"), ElementsAre(2, 0, 0x5E, 0x10, 0, 0xFF));
    EXPECT_THAT(parseMac("02-00-5E-10-00-01"), ElementsAre(2, 0, 0x5E, 0x10, 0, 1));
    EXPECT_EQ(formatMac(parseMac("02-00-5E-10-00-0a")), "02:00:5e:10:00:0a");
    for (const char* const wrong :
         {"", "02:00:5e:10:00", "02:00:5e:10:00:1", "02:00:5e:10:00:0g", "02:00-5e:10:00:01",
          "02005e100001", "02:00:5e:10:00:01:02", "02x00x5ex10x00x01"}) {
        EXPECT_EQ(
            refusalOf([&] { parseMac(wrong); }),
            std::string("expected a MAC address such as 02:00:5e:10:00:01, not '") + wrong + "'");
    }
}

TEST(ChoiceByName, TakesNamesAndNumbers) {
    static constexpr Choice choices[] = {{"none", 0}, {"tagged", 1}, {"native", 2}};
    EXPECT_EQ(parseChoice("tagged", choices), 1);
    EXPECT_EQ(parseChoice("-7", choices), -7);
    EXPECT_EQ(refusalOf([] { parseChoice("Tagged", choices); }),
              "expected none, tagged or native, or a number, not 'Tagged'");
    EXPECT_THROW(parseChoice("2147483648", choices), UsageError);
}

TEST(Text, KeepsValidUtf8) {
    EXPECT_EQ(validUtf8("Zürich €𝄞 \\x"), "Zürich €𝄞 \\x");
    EXPECT_EQ(validUtf8(""), "");
}

TEST(Text, EscapesEachByteThatIsNoUtf8) {
    EXPECT_EQ(validUtf8("Z\xFCrich"), "Z\\xfcrich");
    EXPECT_EQ(validUtf8("\xE2\x82"), "\\xe2\\x82");                    // cut short
    EXPECT_EQ(validUtf8("\xC0\xAF"), "\\xc0\\xaf");                    // overlong
    EXPECT_EQ(validUtf8("\xE0\x80\xAF"), "\\xe0\\x80\\xaf");           // overlong
    EXPECT_EQ(validUtf8("\xED\xA0\x80"), "\\xed\\xa0\\x80");           // surrogate
    EXPECT_EQ(validUtf8("\xF4\x90\x80\x80"), "\\xf4\\x90\\x80\\x80");  // past U+10FFFF
    EXPECT_EQ(validUtf8("\x80"), "\\x80");
    EXPECT_EQ(validUtf8("\xC3("), "\\xc3(");
}

TEST(Text, IsHarmlessToATerminal) {
    EXPECT_EQ(printable("a\nb\tc\x1b[31m\x7f\r"), "a\\nb\\tc\\x1b[31m\\x7f\\x0d");
    EXPECT_EQ(printable("\xC2\x9B"
                        "31m\xC2\xA9"),
              "\\xc2\\x9b31m\xC2\xA9");
}

TEST(Names, AreJoinedForASentence) {
    const std::vector<std::string> names{"show", "set", "clear"};
    EXPECT_EQ(joinNames(std::span(names)), "show, set or clear");
    EXPECT_EQ(joinNames(std::span(names).first(2)), "show or set");
    EXPECT_EQ(joinNames(std::span(names).first(1)), "show");
    EXPECT_EQ(joinNames(std::span(names).first(0)), "");
}

}  // namespace
}  // namespace mngctl::test
