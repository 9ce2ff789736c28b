#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varo {

// What the readers of the DHCP clients' reports share; see dhcpEvent.h for the form of a report.

/// A report that cannot be used at all.
class BadReport : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Makes what cannot be printed visible, and keeps it short: it comes from outside.
std::string quoted(std::string_view text, std::size_t longest = 80);

/// The parts of a text that are not empty.
std::vector<std::string_view> split(std::string_view text, char separator);

/// The event's name, and its values by their names. They point into the message.
struct ReportParts {
    std::string_view event;
    std::map<std::string_view, std::string_view> values;

    /// Empty when there is no such value.
    std::string_view operator[](std::string_view name) const;
};

/// Throws BadReport for an empty message.
ReportParts readParts(std::string_view message);

/// What the report's event is called among `events`. Throws BadReport when it is none of them.
template <class Event>
Event eventAmong(std::span<const std::pair<std::string_view, Event>> events,
                 const ReportParts& parts) {
    for (const auto& [name, event] : events) {
        if (name == parts.event) {
            return event;
        }
    }
    throw BadReport("there is no event " + quoted(parts.event));
}

/// A number of seconds that is all of the text.
std::optional<std::uint32_t> parsedSeconds(std::string_view text);

/// A domain name as it can stand in a resolver file: one word of visible ASCII that fits into a
/// record.
bool isDomainWord(std::string_view text);

}  // namespace varo
