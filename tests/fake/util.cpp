// Checks of address and host-name texts, as far as the product imports them.

#include "fake/Platform.h"
#include "fake/quoted.h"
#include "platform/CZuUtil.h"

#include <arpa/inet.h>
#include <fmt/core.h>

using fake::Platform;
using fake::quoted;

namespace {

constexpr const char* decimal = "0123456789.";
constexpr const char* hostName = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-.";

bool consistsOf(const std::string& text, const char* characters) {
    return text.find_first_not_of(characters) == std::string::npos;
}

int typeByForm(const std::string& text) {
    if (text.find(':') != std::string::npos) {
        return 2;
    }
    if (consistsOf(text, decimal)) {
        return 1;
    }
    return consistsOf(text, hostName) ? 3 : 0;
}

/// The scripted failure stands for a text that is not valid.
bool check(const char* function, const std::string& text, bool isValid) {
    Platform& platform = Platform::current();
    const bool passes = platform.script.failureOf(function) == 0 && isValid;
    platform.journal.write(fmt::format("{}({}) -> {}", function, quoted(text), passes ? 1 : 0));
    return passes;
}

bool isAddress(int family, const std::string& text) {
    unsigned char address[sizeof(in6_addr)];
    return inet_pton(family, text.c_str(), address) == 1;
}

}  // namespace

/// The scripted failure is the type.
int CZuUtil::getIpAddrType(const std::string& text) {
    Platform& platform = Platform::current();
    const int failure = platform.script.failureOf("getIpAddrType");
    const auto scripted = platform.product.addressTypes.find(text);
    const int type = failure != 0                                      ? failure
                     : scripted == platform.product.addressTypes.end() ? typeByForm(text)
                                                                       : scripted->second;
    platform.journal.write(fmt::format("getIpAddrType({}) -> {}", quoted(text), type));
    return type;
}

bool CZuUtil::checkIpv4Addr(const std::string& text) {
    return check("checkIpv4Addr", text, isAddress(AF_INET, text));
}

bool CZuUtil::checkIpv6Addr(const std::string& text) {
    return check("checkIpv6Addr", text, isAddress(AF_INET6, text));
}

bool CZuUtil::checkIpHostname(const std::string& text) {
    return check("checkIpHostname", text, text.size() <= 253 && text.front() != '-');
}
