#include "board/services/zoneFile.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace services {

namespace {

/// Of 1901: glibc asks the rule at the end of the file only from the last transition on, so there
/// has to be one.
constexpr std::int64_t beginning = std::numeric_limits<std::int32_t>::min();

/// In network byte order.
template <class Number>
void append(std::string& bytes, Number number) {
    constexpr unsigned int octetBits = 8;
    for (std::size_t left = sizeof number; left > 0; --left) {
        bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> (octetBits * (left - 1)));
    }
}

/// One local time type, called `name`, and the transitions into it.
void appendBlock(std::string& bytes, std::uint32_t transitions, std::int32_t offset,
                 const std::string& name) {
    bytes += "TZif2";
    bytes.append(15, '\0');
    // Indicators of UT and of standard time, leap seconds, transitions, types, characters.
    const auto characters = static_cast<std::uint32_t>(name.size() + 1);
    for (const std::uint32_t count : {0U, 0U, 0U, transitions, 1U, characters}) {
        append(bytes, count);
    }
    for (std::uint32_t each = 0; each < transitions; ++each) {
        append(bytes, beginning);
    }
    bytes.append(transitions, '\0');
    append(bytes, offset);
    bytes += '\0';  // no daylight-saving time
    bytes += '\0';  // the name begins at the first character
    bytes += name;
    bytes += '\0';
}

}  // namespace

std::string zoneFile(const TimeZoneRule& rule) {
    std::string bytes;
    // The block of version 1, with times of 32 bits, is skipped by every reader of version 2.
    appendBlock(bytes, 0, rule.standardOffset, rule.standardName);
    appendBlock(bytes, 1, rule.standardOffset, rule.standardName);
    return bytes + '\n' + rule.text + '\n';
}

}  // namespace services
