#include "comparison.h"

#include <fmt/core.h>

namespace {

testing::AssertionResult compare(const std::vector<Unit>& expected, const Bytes& bytes) {
    const Bytes expectedBytes = toBytes(expected);
    for (std::size_t i = 0; i < expected.size() && (i + 1) * BYTES_PER_XDR_UNIT <= bytes.size();
         ++i) {
        std::uint32_t unit = 0;
        for (std::size_t j = 0; j < BYTES_PER_XDR_UNIT; ++j) {
            unit = unit << 8 | bytes[i * BYTES_PER_XDR_UNIT + j];
        }
        if (unit != expected[i].value) {
            return testing::AssertionFailure()
                   << fmt::format("unit {}, {}, is {:08x} instead of {:08x}", i,
                                  expected[i].meaning, unit, expected[i].value);
        }
    }
    if (bytes.size() != expectedBytes.size()) {
        return testing::AssertionFailure()
               << bytes.size() << " bytes instead of " << expectedBytes.size();
    }
    return testing::AssertionSuccess();
}

}  // namespace

testing::AssertionResult isEncodingOf(const Record& record, const Bytes& bytes) {
    return compare(record.units(), bytes);
}

testing::AssertionResult sameContents(const Record& expected, const Record& record) {
    return compare(expected.units(), record.encoded());
}
