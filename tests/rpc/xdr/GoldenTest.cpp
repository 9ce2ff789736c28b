// What goes over the wire, unit by unit, against the committed files. A change of a file is a
// change of the protocol: the files are written by hand, and a test that fails shows what the
// filter makes of the record.

#include "comparison.h"
#include "encoding.h"
#include "goldenFile.h"

#include <fstream>
#include <iterator>
#include <set>

namespace {

std::string contentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot open " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The type's file, and the record that it tells of.
struct Golden : testing::TestWithParam<WireType> {
    Golden() { record.setEncoded(bytes); }

    std::string text = contentsOf(goldenFile(GetParam()));
    Bytes bytes = goldenBytes(text);
    Record record{GetParam()};
};

TEST_P(Golden, EncodesToTheCommittedUnits) {
    const std::optional<Bytes> encoded = encode(GetParam().filter, record);
    ASSERT_TRUE(encoded.has_value());
    EXPECT_EQ(goldenText(record, *encoded), text);
}

TEST_P(Golden, DecodesFromTheCommittedUnits) {
    Record decoded(GetParam());
    ASSERT_TRUE(decode(GetParam().filter, decoded, bytes));
    EXPECT_TRUE(sameContents(record, decoded));
}

INSTANTIATE_TEST_SUITE_P(EveryType, Golden, testing::ValuesIn(wireTypes()),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(GoldenFiles, BelongToATypeEach) {
    std::set<std::string> expected;
    for (const WireType& type : wireTypes()) {
        expected.insert(goldenFile(type).filename());
    }
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(GOLDEN_DIRECTORY)) {
        if (entry.path().extension() == ".xdr") {
            found.insert(entry.path().filename());
        }
    }
    EXPECT_EQ(found, expected);
}

}  // namespace
