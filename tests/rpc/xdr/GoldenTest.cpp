// What goes over the wire, unit by unit, against the committed files. A change of a file is a
// change of the protocol. With NETWORKBLE_WRITE_GOLDEN=1 in the environment, the test writes the
// files instead; read what changed before you commit it.

#include "comparison.h"
#include "encoding.h"
#include "goldenFile.h"
#include "samples.h"

#include <cstdlib>
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

void writeIfAsked(const std::filesystem::path& file, const std::string& text) {
    if (std::getenv("NETWORKBLE_WRITE_GOLDEN") == nullptr) {
        return;
    }
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << text << std::flush;
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

class Golden : public testing::TestWithParam<WireType> {};

TEST_P(Golden, EncodesToTheCommittedUnits) {
    const auto sample = sampleOf(GetParam());
    const std::optional<Bytes> bytes = encode(GetParam().filter, *sample);
    ASSERT_TRUE(bytes.has_value());

    const std::string text = goldenText(*sample, *bytes);
    writeIfAsked(goldenFile(GetParam()), text);
    EXPECT_EQ(contentsOf(goldenFile(GetParam())), text);
}

TEST_P(Golden, DecodesFromTheCommittedUnits) {
    Bytes bytes = goldenBytes(contentsOf(goldenFile(GetParam())));
    Record decoded(GetParam());
    ASSERT_TRUE(decode(GetParam().filter, decoded, bytes));
    EXPECT_TRUE(sameContents(*sampleOf(GetParam()), decoded));
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
