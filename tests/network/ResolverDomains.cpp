// Host name, and the domain of both families.

#include "network/ResolverTest.h"

#include <ostream>

namespace {

using testing::IsEmpty;

using ResolverDomains = ResolverTest;

// Host name.

TEST_F(ResolverDomains, HostNameCanNeitherBeSetNorRead) {
    EXPECT_EQ(networkSetHostname("board"), -1);
    Buffer<100> buffer;
    EXPECT_EQ(networkGetHostname(buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_THAT(journal(), IsEmpty());
}

TEST_F(ResolverDomains, HostNameThatIsNullIsReported) {
    EXPECT_EQ(networkSetHostname(nullptr), -1);
    EXPECT_EQ(networkGetHostname(nullptr), -1);
    EXPECT_JOURNAL(error("setHostname failed! One of input args is NULL. hostname: (nil)"),
                   error("getHostname failed! One of input args is NULL. hostname: (nil)"));
}

// Setting the domain.

struct DomainSetter {
    const ResolverFamily& family;
    int (*set)(const char* domain);
    const char* nullReported;
    const char* unreadReported;
    const char* failureReported;
};

void PrintTo(const DomainSetter& setter, std::ostream* out) { *out << setter.family.name; }

const DomainSetter setters[] = {
    {v4, networkSetDomainname, "setDomainname failed! One of input args is NULL. domainname: (nil)",
     "setDomainname: varoGetDns has failed!",
     "setDomainname: varoUpdateDns has failed! Return value: 6"},
    {v6, networkSetIPv6Domainname,
     "setIPv6Domainname failed! One of input args is NULL. domainname: (nil)",
     "setIPv6Domainname: varoGetDns6 has failed!",
     "setIPv6Domainname: varoUpdateDns6 has failed! Return value: 6"},
};

class DomainSetting : public ResolverTest, public testing::WithParamInterface<DomainSetter> {
protected:
    const ResolverFamily& family = GetParam().family;
};

INSTANTIATE_TEST_SUITE_P(, DomainSetting, testing::ValuesIn(setters),
                         [](const auto& test) { return std::string(test.param.family.name); });

TEST_P(DomainSetting, KeepsTheServers) {
    EXPECT_EQ(GetParam().set("example.org"), 0);
    EXPECT_JOURNAL(exclusively(family.ownRead(), family.written(family.withDomain("example.org"))));
}

TEST_P(DomainSetting, ReportsADomainThatIsNull) {
    EXPECT_EQ(GetParam().set(nullptr), -1);
    EXPECT_JOURNAL(exclusively(error(GetParam().nullReported)));
}

TEST_P(DomainSetting, WritesEvenIfTheRecordCannotBeRead) {
    platform.fail(family.readCall, 5);
    EXPECT_EQ(GetParam().set("example.org"), 0);
    EXPECT_JOURNAL(exclusively(
        family.readFailed(), error(GetParam().unreadReported),
        family.written(family.record("example.org", family.noServer, family.noServer))));
}

TEST_P(DomainSetting, WritesToTheManagementConfigurationWhateverSourceTheReadReports) {
    platform.reportedSource = 1;
    EXPECT_EQ(GetParam().set("example.org"), 0);
    EXPECT_JOURNAL(
        exclusively(family.ownRead(1), family.written(family.withDomain("example.org"))));
}

TEST_P(DomainSetting, ReportsADomainThatCannotBeWritten) {
    platform.fail(family.updateCall, 6);
    for (const int reported : {1, 2}) {
        platform.reportedSource = reported;
        EXPECT_EQ(GetParam().set("example.org"), -1);
        EXPECT_JOURNAL(exclusively(family.ownRead(reported),
                                   family.written(family.withDomain("example.org"), 6),
                                   error(GetParam().failureReported)));
    }
}

TEST_P(DomainSetting, StoresUpTo255Characters) {
    for (const std::size_t length : {0U, 255U, 300U}) {
        const std::string name = lettersOf(length);
        const std::string before = family.withDomain(domain(family, 2));
        EXPECT_EQ(GetParam().set(name.c_str()), 0);
        EXPECT_EQ(domain(family, 2), name.substr(0, 255));
        EXPECT_JOURNAL(exclusively(family.read(2, 2, before),
                                   family.written(family.withDomain(name.substr(0, 255)))));
    }
}

// Reading the domain.

struct DomainGetter {
    const char* name;
    const ResolverFamily& family;
    int (*get)(int* source, char* domain);
    /// What it reads: its own, or what the configuration library chooses.
    int asked;
    const char* nullReported;
    const char* unreadReported;
};

void PrintTo(const DomainGetter& getter, std::ostream* out) { *out << getter.name; }

const DomainGetter getters[] = {
    {"Ipv4", v4, [](int*, char* domain) { return networkGetDomainname(domain); }, 2,
     "getDomainname failed! One of input args is NULL. domainname: (nil)",
     "getDomainname: varoGetDns has failed!"},
    // By the other getter's text.
    {"Ipv4WithSource", v4, networkGetDomainnameWS, 0,
     "getDomainname failed! One of input args is NULL. domainname: (nil)",
     "getDomainnameWS: varoGetDnsWS has failed!"},
    {"Ipv6", v6, networkGetIPv6Domainname, 0,
     "getIPv6Domainname failed! One of input args is NULL. domainname: (nil)",
     "getIPv6Domainname: varoGetDns6 has failed!"},
};

class DomainReading : public ResolverTest, public testing::WithParamInterface<DomainGetter> {
protected:
    const ResolverFamily& family = GetParam().family;
    Buffer<100> buffer;
    int source = 77;
};

INSTANTIATE_TEST_SUITE_P(, DomainReading, testing::ValuesIn(getters),
                         [](const auto& test) { return std::string(test.param.name); });

// A getter without a source leaves it alone.
TEST_P(DomainReading, HandsOut99CharactersOfWhatItIsTo) {
    for (const int inForce : {1, 2}) {
        platform.sourceInForce = inForce;
        const int taken = GetParam().asked == 0 ? inForce : 2;
        const std::string stored = domain(family, taken);
        for (const std::string& name :
             {stored, std::string(), lettersOf(99), lettersOf(100), lettersOf(255)}) {
            put(domain(family, taken), name);
            buffer = {};
            source = 77;
            EXPECT_EQ(GetParam().get(&source, buffer.text), 0);
            EXPECT_EQ(buffer.content(), name.substr(0, 99));
            EXPECT_EQ(buffer.text[99], '\0');
            if (name.size() < 98) {
                EXPECT_EQ(buffer.text[98], '#');
            }
            EXPECT_TRUE(buffer.isIntactBehind());
            EXPECT_EQ(source, GetParam().asked == 0 ? inForce : 77);
            EXPECT_JOURNAL(
                sharing(family.read(GetParam().asked, taken,
                                    taken == 1 ? family.leased(name) : family.withDomain(name))));
        }
    }
}

TEST_P(DomainReading, ReportsABufferThatIsNull) {
    EXPECT_EQ(GetParam().get(&source, nullptr), -1);
    EXPECT_EQ(source, 77);
    EXPECT_JOURNAL(sharing(error(GetParam().nullReported)));
}

TEST_P(DomainReading, ReportsADomainThatCannotBeRead) {
    platform.fail(family.readCall, 5);
    EXPECT_EQ(GetParam().get(&source, buffer.text), -1);
    EXPECT_TRUE(buffer.isUntouched());
    EXPECT_EQ(source, 77);
    EXPECT_JOURNAL(sharing(family.readFailed(GetParam().asked), error(GetParam().unreadReported)));
}

// Nobody looks for it.
class DomainReadingDeathTest : public ResolverTest {};

TEST_F(DomainReadingDeathTest, WithoutAPlaceForTheSourceEndsTheProcess) {
    Buffer<100> buffer;
    EXPECT_DEATH(networkGetDomainnameWS(nullptr, buffer.text), "");
    EXPECT_DEATH(networkGetIPv6Domainname(nullptr, buffer.text), "");
    // Before it forks, the test framework writes out all streams.
    EXPECT_THAT(journal(), testing::Each("fflush(all)"));
}

}  // namespace
