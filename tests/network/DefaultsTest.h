#pragma once

#include "network/EntityTest.h"

#include <string>
#include <vector>

inline const std::string ntpFactory = R"({mode=15 {"factory.example" 16 17 18}})";
inline const std::string dnsFactory = R"({domain="factory.example" pri=192.0.2.19 sec=192.0.2.20})";
inline const std::string dns6Factory =
    R"({domain="factory6.example" pri="2001:db8::15" sec="2001:db8::16"})";

/// A group of which the factory values are read and written.
inline Entries readAndWritten(const std::string& group, const std::string& values) {
    return {"varoDef" + group + "() -> 0 " + values,
            "varoUpdate" + group + "(" + values + ") -> 0"};
}

inline Entries resolverWritten(const std::string& group, const std::string& values) {
    return {"varoDef" + group + "(2) -> 0 " + values,
            "varoUpdate" + group + "(2, " + values + ") -> 0",
            "varoUpdate" + group + "(1, " + values + ") -> 0"};
}

/// What the operation does, group by group; of a board on which all works, as it stands here.
struct Groups {
    Entries entry = {trace("applyDefaultSettings: Inside function")};
    Entries timeZone = {
        R"(varoUpdateSntpTimeZone({name="NONE" offset=0 dst=0 start=3/4/7/200 end=10/5/7/200)"
        R"( preset=0}) -> 0)"};
    Entries telnet = {"varoDefTelnetSrv() -> 0 {enabled=1 sessions=11 idle=12}",
                      "isActive(12) -> 0",
                      "varoUpdateTelnetSrv({enabled=1 sessions=11 idle=12}) -> 0"};
    Entries ssh = readAndWritten("SshSrv", "{enabled=1 port=13}");
    Entries ftp = readAndWritten("FtpSrv", "{state=1}");
    Entries managers = readAndWritten("Subag", R"({port=14 {192.0.2.14 "factory trap"}})");
    Entries communities = readAndWritten("SnmpCommunity", R"({communities {"factory" "ro"}})");
    Entries system =
        readAndWritten("SnmpSystem", R"({"factory contact" "factory location" "factory name"})");
    Entries ntp = {
        "varoDefNtpHost(2) -> 0 " + ntpFactory, "varoUpdateNtpHost(2, " + ntpFactory + ") -> 0",
        "isClearConfigInProgress() -> 0", "varoUpdateNtpHost(1, " + ntpFactory + ") -> 0"};
    Entries question = {"isClearConfigInProgress() -> 0"};
    Entries dns = resolverWritten("DnsWS", dnsFactory);
    Entries dns6 = resolverWritten("Dns6", dns6Factory);
    Entries acs = {"varoDefAcs({enabled=0 source=2}, 2) -> 0 {enabled=1 source=23}",
                   "isActive(12) -> 0", "varoUpdateAcs({enabled=1 source=2}, 2) -> 0",
                   "varoUpdateAcs({enabled=1 source=1}, 1) -> 0"};
    Entries webServer = {R"(isFeatureSupported("httpserver") -> 0)"};

    Entries all() const {
        return sequence(entry, timeZone, telnet, ssh, ftp, managers, communities, system, ntp,
                        question, dns, dns6, acs, webServer);
    }
};

/// A group of which a record with factory values is asked for first, and the name in its calls.
struct NamedGroup {
    std::string name;
    Entries Groups::* entries;
};

/// Those whose failures are told by call alone; time servers are told by source, too.
inline const std::vector<NamedGroup> groupsToldByCall = {{"TelnetSrv", &Groups::telnet},
                                                         {"SshSrv", &Groups::ssh},
                                                         {"FtpSrv", &Groups::ftp},
                                                         {"Subag", &Groups::managers},
                                                         {"SnmpCommunity", &Groups::communities},
                                                         {"SnmpSystem", &Groups::system},
                                                         {"DnsWS", &Groups::dns},
                                                         {"Dns6", &Groups::dns6},
                                                         {"Acs", &Groups::acs}};

inline std::string failed(const std::string& call, int code) {
    return error("applyDefaultSettings: " + call +
                 " has failed! Return value: " + std::to_string(code));
}

/// The journal of a clear-configuration.
inline Groups groupsOfClearConfig() {
    Groups groups;
    groups.ntp = {"varoDefNtpHost(2) -> 0 " + ntpFactory,
                  "varoUpdateNtpHost(2, " + ntpFactory + ") -> 0",
                  "isClearConfigInProgress() -> 1"};
    groups.question = {"isClearConfigInProgress() -> 1"};
    groups.dns = groups.dns6 = groups.acs = groups.webServer = {};
    return groups;
}

/// The entry of a call that works, made to fail.
inline std::string failing(std::string entry, int code) {
    const std::string worked = ") -> 0";
    entry.resize(entry.find(worked));
    return entry + ") -> " + std::to_string(code);
}

/// Tests of the factory settings. The component lists are reached past their access
/// (-fno-access-control).
class DefaultsTest : public EntityTest {
protected:
    DefaultsTest() { logEverything(); }

    /// The component lists are read once in the life of a process, which is looked at elsewhere.
    void readComponents() {
        entity().initVersComp();
        journal();
    }

    /// What the return to factory settings answers and does.
    void expectDefaults(int result, const Groups& groups) {
        EXPECT_EQ(entity().applyDefaultSettings(), result);
        EXPECT_JOURNAL(groups.all());
    }
};

/// The same in a process in which they have been read.
class DefaultsLater : public DefaultsTest {
protected:
    DefaultsLater() { readComponents(); }
};
