#pragma once

#include <string>

#pragma GCC visibility push(default)

/// Checks of address and host-name texts. They do not resolve names.
class CZuUtil {
public:
    /// 1 for a text in the form of an IPv4 address, 2 of an IPv6 address, 3 of a host name, 0 for
    /// none of these. The form only: the checks below tell whether it is valid.
    static int getIpAddrType(const std::string& text);

    /// Dotted decimal, four numbers of 0 to 255.
    static bool checkIpv4Addr(const std::string& text);
    /// RFC 4291, section 2.2.
    static bool checkIpv6Addr(const std::string& text);
    /// RFC 1123, section 2.1: labels of 1 to 63 letters, digits and inner hyphens, 253 in all.
    static bool checkIpHostname(const std::string& text);
};

#pragma GCC visibility pop
