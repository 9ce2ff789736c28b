#include "tests/board/varo/VaroTest.h"

#include <vector>

namespace {

using namespace varotest;

/// The calls of one family, and records made and shown in a form that both share.
struct Ipv4 {
    using Record = varoLib_s_dns;
    static int get(int* source, Record* record) { return varoGetDnsWS(source, record); }
    static int update(int source, Record* record) { return varoUpdateDnsWS(source, record); }
    static int factory(int source, Record* record) { return varoDefDnsWS(source, record); }
    static Record primary() { return {.domain = "", .ip_pri = 0xC0000201, .ip_sec = 0}; }
    static Record secondary() { return {.domain = "", .ip_pri = 0, .ip_sec = 0xC0000202}; }
};

struct Ipv6 {
    using Record = varoLib_s_dns6;
    static int get(int* source, Record* record) { return varoGetDns6(source, record); }
    static int update(int source, Record* record) { return varoUpdateDns6(source, record); }
    static int factory(int source, Record* record) { return varoDefDns6(source, record); }
    static Record primary() { return {.domain = "", .ipv6_pri = "2001:db8::1", .ipv6_sec = ""}; }
    static Record secondary() { return {.domain = "", .ipv6_pri = "", .ipv6_sec = "2001:db8::2"}; }
};

template <class Family>
class Resolver : public VaroTest {
protected:
    using Record = typename Family::Record;

    static Record domain(const std::string& text) {
        Record record{};
        setText(record.domain, text);
        return record;
    }

    static void store(int source, Record record) {
        ASSERT_EQ(Family::update(source, &record), varo::success);
    }

    static Record read(int source) { return readBy(Family::get, source); }

    /// The source that the library chooses.
    static int chosen() {
        Record record{};
        int source = 0;
        EXPECT_EQ(Family::get(&source, &record), varo::success);
        const Record same = read(source);
        EXPECT_EQ(std::memcmp(&record, &same, sizeof same), 0);
        return source;
    }

    static bool equal(const Record& left, const Record& right) {
        return std::memcmp(&left, &right, sizeof left) == 0;
    }
};

using Families = testing::Types<Ipv4, Ipv6>;
TYPED_TEST_SUITE(Resolver, Families);

TYPED_TEST(Resolver, HasNoDomainAndNoServersFromTheFactory) {
    for (const int source : {0, 1, 2}) {
        EXPECT_TRUE(this->equal(this->read(source), {})) << source;
    }
}

TYPED_TEST(Resolver, KeepsTheRecordOfEachSourceOverARestart) {
    this->store(1, TypeParam::primary());
    this->store(2, TypeParam::secondary());
    ASSERT_EQ(this->restart(), varo::success);
    EXPECT_TRUE(this->equal(this->read(1), TypeParam::primary()));
    EXPECT_TRUE(this->equal(this->read(2), TypeParam::secondary()));
}

TYPED_TEST(Resolver, ChoosesTheFrontEndsWhenNobodyNamesAnything) { EXPECT_EQ(this->chosen(), 2); }

TYPED_TEST(Resolver, ChoosesDhcpWhenOnlyThatNamesAnything) {
    for (const auto& record : {this->domain("d"), TypeParam::primary(), TypeParam::secondary()}) {
        this->store(1, record);
        EXPECT_EQ(this->chosen(), 1);
    }
}

TYPED_TEST(Resolver, ChoosesTheFrontEndsWhenTheyNameAnything) {
    this->store(1, this->domain("dhcp.example.net"));
    for (const auto& record : {this->domain("d"), TypeParam::primary(), TypeParam::secondary()}) {
        this->store(2, record);
        EXPECT_EQ(this->chosen(), 2);
    }
    this->store(2, {});
    EXPECT_EQ(this->chosen(), 1);
}

TYPED_TEST(Resolver, ReadsTheNamedSourceWhateverIsInForce) {
    this->store(2, this->domain("cli.example.net"));
    EXPECT_STREQ(this->read(1).domain, "");
}

TYPED_TEST(Resolver, RefusesToStoreForAnyOtherSource) {
    auto record = this->domain("example.net");
    for (const int source : {0, 3, -1}) {
        EXPECT_EQ(TypeParam::update(source, &record), varo::noSuchSource) << source;
    }
    EXPECT_EQ(this->log.lines().size(), 3U);
    EXPECT_EQ(this->log.lines()[0].substr(this->log.lines()[0].find(": ")),
              ": there is no configuration source 0");
    EXPECT_STREQ(this->read(0).domain, "");
}

TYPED_TEST(Resolver, RefusesToReadAnyOtherSourceAndLeavesTheRecord) {
    auto record = this->domain("before");
    int source = 3;
    EXPECT_EQ(TypeParam::get(&source, &record), varo::noSuchSource);
    EXPECT_EQ(source, 3);
    EXPECT_STREQ(record.domain, "before");
}

TYPED_TEST(Resolver, FillsTheFactoryValuesAndStoresNothing) {
    this->store(2, this->domain("example.net"));
    auto record = this->domain("before");
    EXPECT_EQ(TypeParam::factory(2, &record), varo::success);
    EXPECT_TRUE(this->equal(record, {}));
    EXPECT_STREQ(this->read(2).domain, "example.net");
    EXPECT_EQ(TypeParam::factory(0, &record), varo::noSuchSource);
}

TYPED_TEST(Resolver, KeepsADomainThatFillsItsField) {
    const std::string longest(255, 'd');
    this->store(2, this->domain(longest));
    EXPECT_EQ(this->read(2).domain, longest);
}

TYPED_TEST(Resolver, RefusesADomainThatIsNotTerminatedAndKeepsTheOldOne) {
    this->store(2, this->domain("example.net"));
    auto record = this->domain(std::string(256, 'd'));
    EXPECT_EQ(TypeParam::update(2, &record), varo::invalidValue);
    EXPECT_STREQ(this->read(2).domain, "example.net");
    ASSERT_EQ(this->log.lines().size(), 1U);
    EXPECT_THAT(this->log.lines()[0],
                HasSubstr("domain: the text is not terminated within its 256 bytes"));
}

TYPED_TEST(Resolver, KeepsEveryByteOfATextThatIsNotUtf8) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    this->store(2, this->domain(bytes));
    EXPECT_EQ(this->read(2).domain, bytes);
    // The file is not taken for a damaged one.
    ASSERT_EQ(this->restart(), varo::success);
    EXPECT_EQ(this->read(2).domain, bytes);
}

TYPED_TEST(Resolver, StoresATextUpToItsTerminatorOnly) {
    auto record = this->domain("short");
    setText(record.domain, std::string("short\0and more", 14));
    this->store(2, record);
    EXPECT_TRUE(this->equal(this->read(2), this->domain("short")));
}

TYPED_TEST(Resolver, IsClearedByAnEmptyRecord) {
    this->store(2, this->domain("example.net"));
    this->store(2, {});
    EXPECT_TRUE(this->equal(this->read(2), {}));
}

using ResolverIpv6 = Resolver<Ipv6>;

TEST_F(ResolverIpv6, RefusesServersThatAreNotTerminated) {
    for (char(varoLib_s_dns6::* server)[256] :
         {&varoLib_s_dns6::ipv6_pri, &varoLib_s_dns6::ipv6_sec}) {
        varoLib_s_dns6 record{};
        std::memset(record.*server, '1', sizeof(record.*server));
        EXPECT_EQ(varoUpdateDns6(2, &record), varo::invalidValue);
    }
}

TEST_F(ResolverIpv6, KeepsServerTextsThatFillTheirFields) {
    varoLib_s_dns6 record{};
    setText(record.ipv6_pri, std::string(255, '1'));
    setText(record.ipv6_sec, std::string(255, '2'));
    store(2, record);
    EXPECT_TRUE(equal(read(2), record));
}

}  // namespace
