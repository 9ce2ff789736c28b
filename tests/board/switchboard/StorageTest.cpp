#include "SwitchTest.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace switchboard;
using switchtest::mng;
using switchtest::uplink;

using SwitchStorage = switchtest::SwitchTest;

constexpr const char* asideName = "switch\\.json\\.damaged-[0-9]{8}T[0-9]{6}Z";

TEST_F(SwitchStorage, KeepsEverythingAcrossARestart) {
    create(10);
    create(20);
    add(10, mng);
    setPvid(10, mng);
    defConnectReconfigureDefVlan(20, true);
    vlanMngWrite(10);
    const auto before = vlans();
    restart();
    EXPECT_EQ(vlans(), before);
    EXPECT_THAT(before, ElementsAre("1: 1 100", "10: 1*", "20: 100*"));
    EXPECT_EQ(defaultVlan(), "20 native");
    EXPECT_EQ(framework::vlanReporter().ask().managementVlan, 10U);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(filesIn(directory.path()), ElementsAre("switch.json"));
}

TEST_F(SwitchStorage, WritesADocumentThatLaterReleasesRead) {
    create(10);
    EXPECT_EQ(readFile(file),
              R"({"version":1,"vlans":[{"id":1,"ports":[1,100]},{"id":10,"ports":[]}],)"
              R"("pvids":[{"port":1,"vlan":1}],"defaultVlan":{"id":1,"native":false},)"
              R"("managementVlan":0,"managementEntry":null})"
              "\n");
}

TEST_F(SwitchStorage, WritesNothingWhenNothingChanges) {
    create(10);
    std::filesystem::remove(file);
    EXPECT_EQ(create(10), vlanExists);
    EXPECT_EQ(add(1, uplink), success);
    EXPECT_EQ(defConnectReconfigureDefVlan(1, false), success);
    EXPECT_EQ(find(10), success);
    EXPECT_THAT(filesIn(directory.path()), IsEmpty());
}

TEST_F(SwitchStorage, KeepsTheOldStateWhenTheNewOneCannotBeStored) {
    create(10);
    std::filesystem::create_directory(directory.path() / "switch.json.new");
    EXPECT_EQ(create(20), storageFailed);
    EXPECT_EQ(remove(1, mng), storageFailed);
    EXPECT_EQ(defConnectReconfigureDefVlan(10, true), storageFailed);
    const std::string reason = "cannot create " + file.string() + ".new: Is a directory";
    EXPECT_THAT(log.take(),
                ElementsAre("3 zuvlanCreate: " + reason, "3 zuvlanDelMembership: " + reason,
                            "3 defConnectReconfigureDefVlan: " + reason));
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:"));
    restart();
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:"));
    std::filesystem::remove(directory.path() / "switch.json.new");
    EXPECT_EQ(create(20), success);
}

TEST_F(SwitchStorage, CannotBeUsedWhileItsFileCannotBeRead) {
    std::filesystem::create_directory(file);
    restart();
    EXPECT_EQ(find(1), storageFailed);
    EXPECT_THAT(log.take(), ElementsAre("3 zuvlanGetVlanInfoId: cannot read " + file.string() +
                                        ": Is a directory"));
    std::filesystem::remove(file);
    EXPECT_EQ(find(1), success);
}

TEST_F(SwitchStorage, LeavesAFileOfALaterReleaseAlone) {
    const std::string later = R"({"version":2,"everything":"else"})";
    writeFile(file, later);
    restart();
    EXPECT_EQ(find(1), newerFile);
    EXPECT_EQ(create(10), newerFile);
    EXPECT_EQ(log.lines().at(0),
              "3 zuvlanGetVlanInfoId: " + file.string() +
                  " cannot be used: it has version 2, this release knows version 1; install the "
                  "newer release again, or move the file away to start from factory values");
    EXPECT_EQ(readFile(file), later);
    EXPECT_THAT(filesIn(directory.path()), ElementsAre("switch.json"));
}

/// A document with one part of it in another form.
std::string documentWith(const std::string& part, const std::string& replacement) {
    std::string text =
        R"({"version":1,"vlans":[{"id":1,"ports":[1,100]}],"pvids":[{"port":1,"vlan":1}],)"
        R"("defaultVlan":{"id":1,"native":false},"managementVlan":0,"managementEntry":null})";
    const std::size_t place = text.find(part);
    EXPECT_NE(place, text.npos) << part;
    return text.replace(place, part.size(), replacement);
}

TEST_F(SwitchStorage, TakesTheDocumentThatTheDamagedOnesAreMadeOf) {
    writeFile(file, documentWith("", ""));
    restart();
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

struct Damage {
    std::string content;
    std::string reason;
};

class DamagedSwitchStorage : public switchtest::SwitchTest,
                             public testing::WithParamInterface<Damage> {};

TEST_P(DamagedSwitchStorage, IsSetAside) {
    writeFile(file, GetParam().content);
    restart();
    EXPECT_EQ(find(1), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
    const auto files = filesIn(directory.path());
    ASSERT_THAT(files, ElementsAre(MatchesRegex(asideName)));
    EXPECT_EQ(readFile(directory.path() / files[0]), GetParam().content);
    EXPECT_THAT(
        log.lines(),
        ElementsAre(AllOf(StartsWith("3 " + file.string() + " is damaged ("),
                          HasSubstr(GetParam().reason),
                          EndsWith("): it is kept as " + (directory.path() / files[0]).string() +
                                   ", and factory values are used"))));
    EXPECT_EQ(create(10), success);
    restart();
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:"));
}

INSTANTIATE_TEST_SUITE_P(
    Damage, DamagedSwitchStorage,
    testing::Values(
        Damage{"", "parse error"}, Damage{"{", "parse error"}, Damage{"[]", "type_error"},
        Damage{"null", "type_error"}, Damage{"\x01\x02", "parse error"},
        Damage{documentWith("\"version\":1", "\"version\":-1"), "version is no number"},
        Damage{documentWith("\"version\":1", "\"version\":\"1\""), "version is no number"},
        Damage{documentWith("\"version\":1,", ""), "key 'version' not found"},
        Damage{documentWith("\"id\":1", "\"id\":0"), "VLAN 1 is missing"},
        Damage{documentWith("\"id\":1", "\"id\":4095"), "id is no number up to 4094"},
        Damage{documentWith("{\"id\":1,\"ports\":[1,100]}",
                            "{\"id\":1,\"ports\":[1,100]},{\"id\":0,\"ports\":[]}"),
               "0 is no VLAN id"},
        Damage{documentWith("{\"id\":1,\"ports\":[1,100]}",
                            "{\"id\":1,\"ports\":[1,100]},{\"id\":1,\"ports\":[]}"),
               "VLAN 1 is listed twice"},
        Damage{documentWith("[1,100]", "[1,100,7]"), "port 7 of VLAN 1 does not exist"},
        Damage{documentWith("[1,100]", "[1,\"100\"]"), "port is no number"},
        Damage{documentWith("[1,100]", "{}"), "ports is no list"},
        Damage{documentWith("[1,100]", "[100]"),
               "the PVID of port 1 is VLAN 1, which it is not in"},
        Damage{documentWith("[1,100]", "[1]"), "the uplink is not in the default VLAN 1"},
        Damage{documentWith("\"native\":false", "\"native\":true"),
               "the mode of the default VLAN and the native VLAN of the uplink disagree"},
        Damage{documentWith("\"native\":false", "\"native\":0"), "type_error"},
        Damage{documentWith("\"managementVlan\":0", "\"managementVlan\":9"),
               "the management VLAN 9 is missing"},
        Damage{documentWith("Entry\":null", "Entry\":{\"port\":1,\"vlan\":1,\"address\":[1]}"),
               "an Ethernet address has 6 octets"},
        Damage{documentWith("Entry\":null",
                            "Entry\":{\"port\":1,\"vlan\":1,\"address\":[1,2,3,4,5,256]}"),
               "an octet is no number up to 255"},
        Damage{documentWith("Entry\":null",
                            "Entry\":{\"port\":100,\"vlan\":1,\"address\":[1,2,3,4,5,6]}"),
               "the static entry is not one of the management port"}));

TEST_F(SwitchStorage, WhatWasAcknowledgedSurvivesAKill) {
    std::uint32_t last = 1;
    for (const int count : {1, 20, 60}) {
        int ends[2];
        ASSERT_EQ(::pipe(ends), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            ::close(ends[0]);
            restart();
            for (std::uint32_t vlan = last + 1; vlan < 4095; ++vlan) {
                if (create(vlan) != success || ::write(ends[1], &vlan, sizeof vlan) < 0) {
                    ::_exit(1);
                }
            }
            ::_exit(2);
        }
        ::close(ends[1]);
        std::uint32_t vlan = 0;
        for (int i = 0; i < count; ++i) {
            ASSERT_EQ(::read(ends[0], &vlan, sizeof vlan), ssize_t{sizeof vlan});
            last = vlan;
        }
        ::kill(child, SIGKILL);
        while (::read(ends[0], &vlan, sizeof vlan) == sizeof vlan) {
            last = vlan;
        }
        ::close(ends[0]);
        const int status = waitFor(child);
        ASSERT_TRUE(WIFSIGNALED(status)) << status;
        restart();
        EXPECT_EQ(find(last), success);
        EXPECT_THAT(log.take(), IsEmpty());
        // The one after it may have been stored without being acknowledged.
        const auto known = static_cast<std::uint32_t>(vlans().size());
        EXPECT_THAT(known, testing::AnyOf(last, last + 1));
        last = known;
    }
}

TEST_F(SwitchStorage, TheManagementPortIsReturnedToVlanOne) {
    create(10);
    create(20);
    remove(1, mng);
    add(10, mng);
    add(20, mng);
    setPvid(10, mng);
    vlanMngWrite(10);
    restart();
    EXPECT_EQ(returnManagementPort(), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:", "20:"));
    EXPECT_EQ(framework::vlanReporter().ask().managementVlan, 10U);
    EXPECT_THAT(log.take(), ElementsAre("5 the management port is back in VLAN 1"));
    EXPECT_EQ(returnManagementPort(), success);
    EXPECT_THAT(log.lines(), IsEmpty());
    restart();
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100", "10:", "20:"));
}

TEST_F(SwitchStorage, TheManagementPortIsReturnedFromNoVlanAtAll) {
    remove(1, mng);
    EXPECT_EQ(returnManagementPort(), success);
    EXPECT_THAT(vlans(), ElementsAre("1: 1* 100"));
}

}  // namespace
