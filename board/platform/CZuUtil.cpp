#include "platform/CZuUtil.h"

#include <arpa/inet.h>

#include <algorithm>
#include <string_view>

namespace {

constexpr int ipv4Form = 1;
constexpr int ipv6Form = 2;
constexpr int hostNameForm = 3;
constexpr int noForm = 0;

// Limits of RFC 1123, section 2.1, and RFC 1035, section 2.3.4.
constexpr std::size_t longestName = 253;
constexpr std::size_t longestLabel = 63;

// Of ASCII, whatever the locale.
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isLetterOrDigit(char c) { return isLetter(c) || isDigit(c); }
bool isInLabel(char c) { return isLetterOrDigit(c) || c == '-'; }
bool isInName(char c) { return isInLabel(c) || c == '.'; }
bool isInIpv4(char c) { return isDigit(c) || c == '.'; }

template <class Test>
bool consistsOf(std::string_view text, Test test) {
    return std::all_of(text.begin(), text.end(), test);
}

bool isLabel(std::string_view label) {
    return !label.empty() && label.size() <= longestLabel && consistsOf(label, isInLabel) &&
           isLetterOrDigit(label.front()) && isLetterOrDigit(label.back());
}

/// inet_pton(3) takes exactly the forms that are valid, up to a zero byte.
bool converts(int family, const std::string& text) {
    in6_addr address{};
    return text.find('\0') == std::string::npos && inet_pton(family, text.c_str(), &address) == 1;
}

}  // namespace

int CZuUtil::getIpAddrType(const std::string& text) {
    if (text.empty()) {
        return noForm;
    }
    if (text.find(':') != std::string::npos) {
        return ipv6Form;
    }
    if (consistsOf(text, isInIpv4)) {
        return ipv4Form;
    }
    return consistsOf(text, isInName) ? hostNameForm : noForm;
}

bool CZuUtil::checkIpv4Addr(const std::string& text) { return converts(AF_INET, text); }

/// A zone ("%eth0", RFC 4007) means something on one machine only: it is no part of an address.
bool CZuUtil::checkIpv6Addr(const std::string& text) { return converts(AF_INET6, text); }

/// The dot that ends an absolute name is resolver syntax, not part of a host name. A last label of
/// digits alone is refused, since such a text may be read as an address.
bool CZuUtil::checkIpHostname(const std::string& text) {
    if (text.size() > longestName) {
        return false;
    }
    std::string_view rest = text;
    for (;;) {
        const std::size_t dot = rest.find('.');
        const std::string_view label = rest.substr(0, dot);
        if (!isLabel(label)) {
            return false;
        }
        if (dot == std::string_view::npos) {
            return !consistsOf(label, isDigit);
        }
        rest.remove_prefix(dot + 1);
    }
}
