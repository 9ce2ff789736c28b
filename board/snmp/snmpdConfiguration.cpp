#include "board/snmp/snmpdConfiguration.h"

#include <fmt/format.h>

#include <cstring>
#include <iterator>
#include <stdexcept>
#include <string_view>

namespace snmp {

namespace {

constexpr int agentPort = 161;  // of the IANA registry, snmp

template <std::size_t size>
std::string_view textOf(const char (&field)[size]) {
    return {field, strnlen(field, size)};
}

/// A line end would begin another directive. The library takes none; whatever it comes from, it
/// must not get into the file.
void checkIsLine(std::string_view text) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < ' ' || byte == 0x7f) {
            throw std::runtime_error("a text has a control character");
        }
    }
}

/// Where the agent takes a word, it understands quotes, with backslashes in them.
std::string quoted(std::string_view text) {
    checkIsLine(text);
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

/// Where it takes the rest of the line or what comes up to a blank, quotes stand for themselves.
std::string asIs(std::string_view text) {
    checkIsLine(text);
    return std::string(text);
}

struct SystemText {
    const char* directive;
    const char* object;
    char (varoLib_s_snmpSystem::*member)[sizeof(varoLib_s_snmpSystem::contact)];
};

/// Objects of SNMPv2-MIB (RFC 3418).
constexpr SystemText systemTexts[] = {
    {"sysContact", ".1.3.6.1.2.1.1.4.0", &varoLib_s_snmpSystem::contact},
    {"sysLocation", ".1.3.6.1.2.1.1.6.0", &varoLib_s_snmpSystem::location},
    {"sysName", ".1.3.6.1.2.1.1.5.0", &varoLib_s_snmpSystem::name},
};

bool isBlank(char c) { return c == ' '; }

/// A directive's text is trimmed, and must not be empty.
bool fitsDirective(std::string_view text) {
    return !text.empty() && !isBlank(text.front()) && !isBlank(text.back());
}

/// A text of another kind replaces the object, which the agent does once in its life.
void addSystem(const varoLib_s_snmpSystem& system, Configuration& configuration) {
    for (const SystemText& each : systemTexts) {
        const std::string_view text = textOf(system.*each.member);
        if (fitsDirective(text)) {
            configuration.text += fmt::format("{} {}\n", each.directive, asIs(text));
        } else {
            configuration.fixedPart +=
                fmt::format("override {} octet_str {}\n", each.object, quoted(text));
        }
    }
}

constexpr std::string_view access = R"(view readable included .1.3.6.1.2.1
view readable included .1.3.6.1.6.3.1
view writable included .1.3.6.1.2.1.1
view writable included .1.3.6.1.2.1.11
view writable included .1.3.6.1.6.3.1
group reader v1 reader
group reader v2c reader
group writer v1 writer
group writer v2c writer
access reader "" any noauth exact readable none none
access writer "" any noauth exact readable writable none
)";

void addCommunities(const varoLib_s_snmpCommunity& all, bool hasIpv6, std::string& text) {
    text += access;
    for (const auto& community : all.communities) {
        const std::string_view name = textOf(community.name);
        if (name.empty()) {
            continue;
        }
        const char* const who = textOf(community.access) == "ro" ? "reader" : "writer";
        text += fmt::format("com2sec {} default {}\n", who, quoted(name));
        if (hasIpv6) {
            text += fmt::format("com2sec6 {} default {}\n", who, quoted(name));
        }
    }
}

std::string dotted(std::uint32_t address) {
    return fmt::format("{}.{}.{}.{}", address >> 24, address >> 16 & 255, address >> 8 & 255,
                       address & 255);
}

void addTrapManagers(const varoLib_s_subag& agent, std::string& text) {
    for (const auto& manager : agent.managers) {
        if (manager.ipAddress == 0) {
            continue;
        }
        text += fmt::format("trap2sink udp:{}:{} {}\n", dotted(manager.ipAddress), agent.port,
                            asIs(textOf(manager.community)));
    }
}

std::string addressOn(const std::string& interface, bool hasIpv6) {
    const std::string place = interface.empty() ? "" : "@" + interface;
    std::string addresses = fmt::format("udp:0.0.0.0{}:{}", place, agentPort);
    if (hasIpv6) {
        addresses += fmt::format(",udp6:[::]{}:{}", place, agentPort);
    }
    return fmt::format("agentaddress {}\n", addresses);
}

}  // namespace

Configuration configurationOf(const Values& values, const std::string& interface, bool hasIpv6) {
    Configuration configuration{{}, addressOn(interface, hasIpv6)};
    addSystem(values.system, configuration);
    std::string& text = configuration.text;
    text += "dontLogTCPWrappersConnects yes\n";
    addCommunities(values.communities, hasIpv6, text);
    addTrapManagers(values.trapManagers, text);
    text = "# Written by the board from its SNMP settings; changes are lost.\n" +
           configuration.fixedPart + text;
    return configuration;
}

}  // namespace snmp
