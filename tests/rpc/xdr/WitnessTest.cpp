// Our filters against those that rpcgen makes of network.x.

#include "comparison.h"
#include "encoding.h"

#include <algorithm>

namespace {

class Witness : public testing::Test {
protected:
    std::mt19937 random{4506};

    /// Calls `check` with records of every type, among them some whose characters take all values.
    template <class Check>
    void forManyRecords(Check check) {
        for (const WireType& type : wireTypes()) {
            SCOPED_TRACE(type.name);
            for (int round = 0; round < 20; ++round) {
                Record record(type);
                record.randomize(random);
                check(record);
            }
        }
        for (const WireType& type : wireTypesWith(LeafKind::characters)) {
            SCOPED_TRACE(type.name);
            for (int first = 0; first < 256; first += 16) {
                Record record(type);
                record.randomize(random);
                fillCharacters(record, first);
                check(record);
            }
        }
    }

private:
    static void fillCharacters(Record& record, int first) {
        int value = first;
        for (const Leaf& leaf : record.type().leaves) {
            if (leaf.kind == LeafKind::characters) {
                for (char& character : record.characters(leaf)) {
                    character = static_cast<char>(static_cast<unsigned char>(value++));
                }
            }
        }
    }
};

TEST_F(Witness, MakesTheSameBytes) {
    forManyRecords([](Record& record) {
        const std::optional<Bytes> ours = encode(record.type().filter, record);
        const std::optional<Bytes> theirs = encode(record.type().witness, record);
        ASSERT_TRUE(ours.has_value());
        ASSERT_TRUE(theirs.has_value());
        EXPECT_TRUE(isEncodingOf(record, *theirs));
        EXPECT_EQ(*ours, *theirs);
    });
}

TEST_F(Witness, DecodesWhatWeEncode) {
    forManyRecords([](Record& record) {
        std::optional<Bytes> bytes = encode(record.type().filter, record);
        ASSERT_TRUE(bytes.has_value());
        Record decoded(record.type());
        ASSERT_TRUE(decode(record.type().witness, decoded, *bytes));
        EXPECT_TRUE(sameContents(record, decoded));
    });
}

TEST_F(Witness, EncodesWhatWeDecode) {
    forManyRecords([](Record& record) {
        std::optional<Bytes> bytes = encode(record.type().witness, record);
        ASSERT_TRUE(bytes.has_value());
        Record decoded(record.type());
        ASSERT_TRUE(decode(record.type().filter, decoded, *bytes));
        EXPECT_TRUE(sameContents(record, decoded));
    });
}

// Units of any value stand for something in every type but the texts: integers and enumerations
// take all 32 bits, characters the low byte, bools whether a bit is set.
TEST_F(Witness, DecodesAnyUnitsToTheSameMemory) {
    for (const WireType& type : wireTypes()) {
        if (type.has(LeafKind::text)) {
            continue;
        }
        SCOPED_TRACE(type.name);
        for (int round = 0; round < 20; ++round) {
            Bytes bytes(type.encodedSize);
            std::ranges::generate(bytes, [this] { return static_cast<unsigned char>(random()); });
            Record theirs(type);
            ASSERT_TRUE(decode(type.witness, theirs, bytes));
            for (const InlineRoom& room : {roomForEverything(), roomForNothing()}) {
                Record ours(type);
                ASSERT_TRUE(decode(type.filter, ours, bytes, room));
                EXPECT_TRUE(std::ranges::equal(ours.bytes(), theirs.bytes()));
            }
        }
    }
}

}  // namespace
