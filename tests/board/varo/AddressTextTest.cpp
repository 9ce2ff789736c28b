#include "platform/CZuUtil.h"

#include <gtest/gtest.h>

#include <string>

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

struct Row {
    std::string text;
    int form;
    const char* valid;
};

std::string label(std::size_t length) { return std::string(length, 'a'); }

/// Four labels and their dots.
std::string nameOf(std::size_t length) {
    return label(63) + "." + label(63) + "." + label(63) + "." + label(length - 3 * 64);
}

const Row rows[] = {
    // Digits and dots.
    {"192.0.2.1", 1, "4"},
    {"0.0.0.0", 1, "4"},
    {"255.255.255.255", 1, "4"},
    {"256.0.0.1", 1, "-"},
    {"192.0.2.256", 1, "-"},
    {"192.0.2", 1, "-"},
    {"192.0.2.1.5", 1, "-"},
    {"192.0.2.", 1, "-"},
    {".192.0.2.1", 1, "-"},
    {"192..2.1", 1, "-"},
    {"192.0.2.01", 1, "-"},
    {"192.0.2.001", 1, "-"},
    {"3221225985", 1, "-"},
    {".", 1, "-"},
    {"1", 1, "-"},
    // With a colon.
    {"::", 2, "6"},
    {"::1", 2, "6"},
    {"1::", 2, "6"},
    {"2001:db8::1", 2, "6"},
    {"2001:DB8:0:0:8:800:200C:417A", 2, "6"},
    {"2001:0db8:0000:0000:0008:0800:200c:417a", 2, "6"},
    {"1:2:3:4:5:6:7::", 2, "6"},
    {"::2:3:4:5:6:7:8", 2, "6"},
    {"::ffff:192.0.2.1", 2, "6"},
    {"::192.0.2.1", 2, "6"},
    {"64:ff9b::192.0.2.33", 2, "6"},
    {"1:2:3:4:5:6:192.0.2.1", 2, "6"},
    {"1:2:3:4:5:6:7", 2, "-"},
    {"1:2:3:4:5:6:7:8:9", 2, "-"},
    {"1:2:3:4::5:6:7:8", 2, "-"},
    {"1::2::3", 2, "-"},
    {":::", 2, "-"},
    {":", 2, "-"},
    {":1:2:3:4:5:6:7", 2, "-"},
    {"1:2:3:4:5:6:7:", 2, "-"},
    {"12345::", 2, "-"},
    {"::g", 2, "-"},
    {"::ffff:192.0.2.256", 2, "-"},
    {"::ffff:192.0.2", 2, "-"},
    {"::192.0.2.1:1", 2, "-"},
    {"1:2:3:4:5:6:7:192.0.2.1", 2, "-"},
    {"fe80::1%eth0", 2, "-"},
    {"[::1]", 2, "-"},
    {"::1/128", 2, "-"},
    {" ::1", 2, "-"},
    {std::string("::1\0", 4), 2, "-"},
    // The characters of a host name.
    {"localhost", 3, "n"},
    {"ntp.example.net", 3, "n"},
    {"NTP-1.Example.NET", 3, "n"},
    {"a", 3, "n"},
    {"3com.example", 3, "n"},
    {"1.2.3.4.example", 3, "n"},
    {"192.0.2.1a", 3, "n"},
    {"xn--bcher-kva.example", 3, "n"},
    {"-", 3, "-"},
    {"-a.example", 3, "-"},
    {"a-.example", 3, "-"},
    {"a.-b", 3, "-"},
    {"a..b", 3, "-"},
    {".a", 3, "-"},
    {"ntp.example.net.", 3, "-"},
    {"example.123", 3, "-"},
    {label(63) + ".example", 3, "n"},
    {label(64) + ".example", 3, "-"},
    {nameOf(253), 3, "n"},
    {nameOf(254), 3, "-"},
    // Neither.
    {"", 0, "-"},
    {" ", 0, "-"},
    {"ntp server", 0, "-"},
    {"ntp_server", 0, "-"},
    {"ntp.example.net\n", 0, "-"},
    {"192.0.2.1 ", 0, "-"},
    {"192.0.2.1/24", 0, "-"},
    {"b\xc3\xbc"
     "cher.example",
     0, "-"},
    {std::string("a\0b", 3), 0, "-"},
    {std::string("192.0.2.1\0", 10), 0, "-"},
};

TEST(AddressText, IsOfOneFormAndValidOrNot) {
    for (const Row& row : rows) {
        EXPECT_EQ(CZuUtil::getIpAddrType(row.text), row.form) << '"' << row.text << '"';
        EXPECT_EQ(valid(row.text), row.valid) << '"' << row.text << '"';
    }
}

}  // namespace
