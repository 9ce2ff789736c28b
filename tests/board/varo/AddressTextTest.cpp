#include "platform/CZuUtil.h"
#include "support/matchers.h"

#include <string>
#include <vector>

namespace {

/// What each check answers about a text: 4, 6 and n for a valid IPv4 address, IPv6 address and host
/// name; "-" for none.
std::string valid(const std::string& text) {
    std::string kinds;
    if (CZuUtil::checkIpv4Addr(text)) {
        kinds += '4';
    }
    if (CZuUtil::checkIpv6Addr(text)) {
        kinds += '6';
    }
    if (CZuUtil::checkIpHostname(text)) {
        kinds += 'n';
    }
    return kinds.empty() ? "-" : kinds;
}

/// Texts of one form that are valid as the same.
struct Row {
    int form;
    const char* valid;
    std::vector<std::string> texts;
};

std::string label(std::size_t length) { return std::string(length, 'a'); }

/// Four labels and their dots.
std::string nameOf(std::size_t length) {
    return label(63) + "." + label(63) + "." + label(63) + "." + label(length - 3 * 64);
}

const Row rows[] = {
    // Digits and dots.
    {1, "4", {"192.0.2.1", "0.0.0.0", "255.255.255.255"}},
    {1,
     "-",
     {"256.0.0.1", "192.0.2.256", "192.0.2", "192.0.2.1.5", "192.0.2.", ".192.0.2.1", "192..2.1",
      "192.0.2.01", "192.0.2.001", "3221225985", ".", "1"}},
    // With a colon.
    {2,
     "6",
     {"::", "::1", "1::", "2001:db8::1", "2001:DB8:0:0:8:800:200C:417A",
      "2001:0db8:0000:0000:0008:0800:200c:417a", "1:2:3:4:5:6:7::", "::2:3:4:5:6:7:8",
      "::ffff:192.0.2.1", "::192.0.2.1", "64:ff9b::192.0.2.33", "1:2:3:4:5:6:192.0.2.1"}},
    {2,
     "-",
     {"1:2:3:4:5:6:7", "1:2:3:4:5:6:7:8:9", "1:2:3:4::5:6:7:8", "1::2::3", ":::", ":",
      ":1:2:3:4:5:6:7", "1:2:3:4:5:6:7:", "12345::", "::g", "::ffff:192.0.2.256", "::ffff:192.0.2",
      "::192.0.2.1:1", "1:2:3:4:5:6:7:192.0.2.1", "fe80::1%eth0", "[::1]", "::1/128", " ::1",
      std::string("::1\0", 4)}},
    // The characters of a host name.
    {3,
     "n",
     {"localhost", "ntp.example.net", "NTP-1.Example.NET", "a", "3com.example", "1.2.3.4.example",
      "192.0.2.1a", "xn--bcher-kva.example", label(63) + ".example", nameOf(253)}},
    {3,
     "-",
     {"-", "-a.example", "a-.example", "a.-b", "a..b", ".a", "ntp.example.net.", "example.123",
      label(64) + ".example", nameOf(254)}},
    // Neither.
    {0,
     "-",
     {"", " ", "ntp server", "ntp_server", "ntp.example.net\n", "192.0.2.1 ", "192.0.2.1/24",
      "b\xc3\xbc"
      "cher.example",
      std::string("a\0b", 3), std::string("192.0.2.1\0", 10)}},
};

TEST(AddressText, IsOfOneFormAndValidOrNot) {
    for (const Row& row : rows) {
        for (const std::string& text : row.texts) {
            EXPECT_EQ(CZuUtil::getIpAddrType(text), row.form) << '"' << text << '"';
            EXPECT_EQ(valid(text), row.valid) << '"' << text << '"';
        }
    }
}

}  // namespace
