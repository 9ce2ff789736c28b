// Which inline buffers the filters ask a stream for, and that it does not matter what they get.

#include "comparison.h"
#include "encoding.h"

#include <map>

namespace {

using Lengths = std::vector<unsigned int>;

/// The types with runs of 32-bit fields: what is asked for, in order, arrays included.
const std::map<std::string, Lengths> typesWithRuns = {
    {"rpcNetworkInfo", {24}},
    {"rpcNetworkHttpInfo", {12}},
    {"rpcNetworkSntpTimezone", {400, 44}},
    {"rpcSntpSrvInfo", {24}},
    {"rpcSntpSrvInfoHost", {1024, 16}},
    {"rpcSntpClientInfo", {36, 96}},
    {"rpcSntpClientInfoHost", {24, 1024, 96}},
    {"rpcSntpInfo", {36, 96, 24, 24, 24}},
    {"rpcSntpInfoWS", {36, 96, 24, 24, 24}},
    {"rpcSntpInfoHost", {24, 1024, 96, 1024, 16, 1024, 16, 1024, 16, 1024, 16}},
    {"rpcSntpInfoWSHost", {24, 1024, 96, 1024, 16, 1024, 16, 1024, 16, 1024, 16}},
};

/// Any other type asks for its character arrays only.
Lengths expectedRequests(const WireType& type) {
    const auto found = typesWithRuns.find(type.name);
    if (found != typesWithRuns.end()) {
        return found->second;
    }
    Lengths lengths;
    for (const Leaf& leaf : type.leaves) {
        if (leaf.kind == LeafKind::characters) {
            lengths.push_back(static_cast<unsigned int>(leaf.size * BYTES_PER_XDR_UNIT));
        }
    }
    return lengths;
}

class Runs : public testing::Test {
protected:
    std::mt19937 random{12};
};

TEST_F(Runs, AreAskedForInOnePiece) {
    for (const WireType& type : wireTypes()) {
        SCOPED_TRACE(type.name);
        Record record(type);
        record.randomize(random);
        Bytes bytes(record.encoded().size());
        ScriptedStream encoder(bytes, XDR_ENCODE, roomForEverything());
        ASSERT_TRUE(type.filter(encoder.get(), record.data()));
        EXPECT_EQ(encoder.inlineRequests(), expectedRequests(type));

        Record decoded(type);
        ScriptedStream decoder(bytes, XDR_DECODE, roomForEverything());
        ASSERT_TRUE(type.filter(decoder.get(), decoded.data()));
        EXPECT_EQ(decoder.inlineRequests(), expectedRequests(type));
    }
}

TEST_F(Runs, MakeTheSameBytesInlineAndFieldByField) {
    for (const auto& [name, lengths] : typesWithRuns) {
        SCOPED_TRACE(name);
        const WireType& type = wireType(name);
        for (int round = 0; round < 20; ++round) {
            Record record(type);
            record.randomize(random);
            std::optional<Bytes> inlined = encode(type.filter, record, roomForEverything());
            std::optional<Bytes> fieldByField = encode(type.filter, record, roomForNothing());
            ASSERT_TRUE(inlined.has_value());
            ASSERT_TRUE(fieldByField.has_value());
            EXPECT_EQ(*inlined, *fieldByField);

            for (const InlineRoom& room : {roomForEverything(), roomForNothing()}) {
                Record decoded(type);
                ASSERT_TRUE(decode(type.filter, decoded, *inlined, room));
                EXPECT_TRUE(sameContents(record, decoded));
            }
        }
    }
}

// A run that the stream has no room for is asked for once, then goes field by field.
TEST_F(Runs, AreNotAskedForAgain) {
    const WireType& type = wireType("rpcNetworkInfo");
    Record record(type);
    record.randomize(random);
    Bytes bytes(type.encodedSize);
    ScriptedStream stream(bytes, XDR_ENCODE, roomForNothing());
    ASSERT_TRUE(type.filter(stream.get(), record.data()));
    EXPECT_EQ(stream.inlineRequests(), Lengths{24});
}

}  // namespace
