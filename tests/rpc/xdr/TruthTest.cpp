// Bools: 1 on the wire for anything but 0, and 1 in memory for anything but 0 on the wire.

#include "comparison.h"
#include "encoding.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::uint32_t, 6> truths = {1, 2, 5, 256, 0x80000000, 0xffffffff};

/// The place of a field's unit in an encoded record.
std::size_t placeOf(const Record& record, const Leaf& leaf) {
    const std::vector<Unit> units = record.units();
    const auto found = std::ranges::find(units, leaf.path, &Unit::meaning);
    return static_cast<std::size_t>(found - units.begin()) * BYTES_PER_XDR_UNIT;
}

Bytes unitAt(const Bytes& bytes, std::size_t place) {
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(place);
    return {begin, begin + BYTES_PER_XDR_UNIT};
}

/// Calls `check` with every bool of every type, over streams with inline buffers and without.
template <class Check>
void forEveryTruth(Check check) {
    for (const WireType& type : wireTypesWith(LeafKind::truth)) {
        for (const Leaf& leaf : type.leaves) {
            if (leaf.kind == LeafKind::truth) {
                SCOPED_TRACE(std::string(type.name) + " " + leaf.path);
                check(type, leaf, roomForEverything());
                check(type, leaf, roomForNothing());
            }
        }
    }
}

TEST(Truth, IsSentAsOne) {
    forEveryTruth([](const WireType& type, const Leaf& leaf, const InlineRoom& room) {
        for (const std::uint32_t value : truths) {
            Record record(type);
            record.emptyTexts();
            record.setWord(leaf, value);
            const std::optional<Bytes> bytes = encode(type.filter, record, room);
            ASSERT_TRUE(bytes.has_value());
            EXPECT_EQ(unitAt(*bytes, placeOf(record, leaf)), (Bytes{0, 0, 0, 1}));
        }
    });
}

TEST(Truth, ArrivesAsOne) {
    forEveryTruth([](const WireType& type, const Leaf& leaf, const InlineRoom& room) {
        Record record(type);
        record.emptyTexts();
        const std::size_t place = placeOf(record, leaf);
        for (const std::uint32_t value : truths) {
            Bytes bytes = record.encoded();
            Bytes unit;
            appendUnit(unit, value);
            std::ranges::copy(unit, bytes.begin() + static_cast<std::ptrdiff_t>(place));
            Record decoded(type);
            ASSERT_TRUE(decode(type.filter, decoded, bytes, room));
            EXPECT_EQ(decoded.word(leaf), 1U);
        }
    });
}

TEST(Truth, IsNotMadeOfZero) {
    forEveryTruth([](const WireType& type, const Leaf& leaf, const InlineRoom& room) {
        Record record(type);
        record.emptyTexts();
        std::optional<Bytes> bytes = encode(type.filter, record, room);
        ASSERT_TRUE(bytes.has_value());
        EXPECT_EQ(unitAt(*bytes, placeOf(record, leaf)), (Bytes{0, 0, 0, 0}));
        Record decoded(type);
        decoded.setWord(leaf, 5);
        ASSERT_TRUE(decode(type.filter, decoded, *bytes, room));
        EXPECT_EQ(decoded.word(leaf), 0U);
    });
}

}  // namespace
