#include "board/ntp/status.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <ctime>
#include <iterator>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace ntp {

namespace {

// Values of the records, see varo/sntpRecords.h.
enum ClientState : int { searching = 1, synchronised = 2 };
enum ServerState : int { unreachable = 1, reachable = 2, selected = 3 };
constexpr int notSynchronised = 3;

/// How long the client waits for an answer: its limits of the round trip (maxdelay, 3 s) and of the
/// server's own time (4 s). A request is not repeated, the next is due at the next poll.
constexpr int answerTimeout = 7;

using Fields = std::vector<std::string_view>;

// The reports differ in their number of fields.
constexpr std::size_t trackingFields = 14;
constexpr std::size_t sourceFields = 10;
constexpr std::size_t ntpdataFields = 20;  // and more

namespace tracking {
enum : std::size_t {
    name = 1,
    stratum = 2,
    referenceTime = 3,
    correction = 4,
    rootDelay = 10,
    rootDispersion = 11,
    leap = 13,
};
}
namespace source {
enum : std::size_t { state = 1, name = 2, stratum = 3, poll = 4, reach = 5, lastAnswer = 6 };
}
namespace ntpdata {
enum : std::size_t { address = 0, offset = 18, peerDelay = 19 };
}

std::vector<Fields> read(std::string_view report) {
    std::vector<Fields> lines;
    while (!report.empty()) {
        const std::size_t end = std::min(report.find('\n'), report.size());
        std::string_view line = report.substr(0, end);
        report.remove_prefix(std::min(end + 1, report.size()));
        if (line.empty()) {
            continue;
        }
        Fields fields;
        for (;;) {
            const std::size_t comma = line.find(',');
            fields.push_back(line.substr(0, comma));
            if (comma == std::string_view::npos) {
                break;
            }
            line.remove_prefix(comma + 1);
        }
        lines.push_back(std::move(fields));
    }
    return lines;
}

[[noreturn]] void notUnderstood(std::string_view text) {
    throw std::runtime_error(fmt::format("the client's report is not understood: '{}'", text));
}

double number(std::string_view text) {
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || std::isnan(value)) {
        notUnderstood(text);
    }
    return value;
}

int bounded(double value) {
    constexpr double most = std::numeric_limits<int>::max();
    return static_cast<int>(std::lround(std::clamp(value, -most, most)));
}

int integer(std::string_view text) { return bounded(number(text)); }

int microseconds(std::string_view seconds) { return bounded(number(seconds) * 1e6); }

/// Reachability is told as an octal number.
int octal(std::string_view text) {
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value, 8);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) {
        notUnderstood(text);
    }
    return value & 0xFF;
}

int pollSeconds(std::string_view exponent) {
    return bounded(std::exp2(std::clamp(number(exponent), 0.0, 24.0)));
}

template <std::size_t size>
void copyInto(char (&field)[size], std::string_view text) {
    std::memset(field, 0, size);
    text.copy(field, size - 1);
}

int leapIndicator(std::string_view text) {
    if (text == "Normal") {
        return 0;
    }
    if (text == "Insert second") {
        return 1;
    }
    if (text == "Delete second") {
        return 2;
    }
    return notSynchronised;
}

/// The time of the last update in local time; empty for none.
std::string timeText(std::string_view secondsSince1970) {
    constexpr double latest = 253402300799;  // the end of the year 9999
    const auto seconds =
        static_cast<std::time_t>(std::clamp(number(secondsSince1970), 0.0, latest));
    std::tm parts{};
    if (seconds == 0 || ::localtime_r(&seconds, &parts) == nullptr) {
        return {};
    }
    char text[sizeof(rpcSntpClientInfoHost::lastUpdate)];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts)};
}

struct Source {
    ServerState state = unreachable;
    int stratum = 0;
    int pollInterval = 0;
    int reachability = 0;
    int offset = 0;
    int delay = 0;
};

Source sourceOf(const Fields& fields) {
    Source result;
    result.stratum = integer(fields[source::stratum]);
    result.pollInterval = pollSeconds(fields[source::poll]);
    result.reachability = octal(fields[source::reach]);
    if (fields[source::state] == "*") {
        result.state = selected;
    } else if (result.reachability != 0) {
        result.state = reachable;
    }
    return result;
}

/// Sources by the names that they were given. The two listings of them are in one order, which is
/// that of the configuration.
std::map<std::string, Source, std::less<>> sourcesOf(const std::vector<Fields>& byName,
                                                     const std::vector<Fields>& byAddress) {
    std::map<std::string_view, const Fields*> data;
    std::vector<std::string_view> addresses;
    for (const Fields& fields : byAddress) {
        if (fields.size() == sourceFields) {
            addresses.push_back(fields[source::name]);
        } else if (fields.size() >= ntpdataFields) {
            data.emplace(fields[ntpdata::address], &fields);
        }
    }
    std::map<std::string, Source, std::less<>> sources;
    auto address = addresses.begin();
    for (const Fields& fields : byName) {
        if (fields.size() != sourceFields) {
            continue;
        }
        Source each = sourceOf(fields);
        const auto found = address == addresses.end() ? data.end() : data.find(*address++);
        if (found != data.end() && each.stratum != 0) {
            each.offset = microseconds((*found->second)[ntpdata::offset]);
            each.delay = microseconds((*found->second)[ntpdata::peerDelay]);
        }
        sources.emplace(fields[source::name], each);
    }
    return sources;
}

void fillClient(const Fields& fields, rpcSntpClientInfoHost& client) {
    client.leapIndicator = leapIndicator(fields[tracking::leap]);
    client.state = client.leapIndicator == notSynchronised ? searching : synchronised;
    if (client.state != synchronised) {
        return;
    }
    client.stratum = integer(fields[tracking::stratum]);
    client.offset = microseconds(fields[tracking::correction]);
    client.delay = microseconds(fields[tracking::rootDelay]);
    client.dispersion = microseconds(fields[tracking::rootDispersion]);
    copyInto(client.referenceHost, fields[tracking::name]);
    copyInto(client.lastUpdate, timeText(fields[tracking::referenceTime]));
}

std::string_view hostOf(const rpcSntpSrvHost& server) {
    return {server.host, strnlen(server.host, sizeof server.host)};
}

}  // namespace

rpcSntpInfoHost statusOfNone(const rpcSntpConfigHost& config) {
    rpcSntpInfoHost info{};
    info.client.mode = config.mode;
    info.client.leapIndicator = notSynchronised;
    auto place = std::begin(info.servers);
    for (const rpcSntpSrvHost& server : config.servers) {
        copyInto(place++->host, hostOf(server));
    }
    return info;
}

rpcSntpInfoHost statusOf(const rpcSntpConfigHost& config, const Reports& reports) {
    const std::vector<Fields> byName = read(reports.names);
    const auto found = std::find_if(byName.begin(), byName.end(), [](const Fields& fields) {
        return fields.size() == trackingFields;
    });
    if (found == byName.end()) {
        notUnderstood(reports.names.substr(0, reports.names.find('\n')));
    }
    rpcSntpInfoHost info{};
    info.client.mode = config.mode;
    fillClient(*found, info.client);

    const auto sources = sourcesOf(byName, read(reports.addresses));
    int shortestPoll = 0;
    auto place = std::begin(info.servers);
    for (const rpcSntpSrvHost& configured : config.servers) {
        rpcSntpSrvInfoHost& server = *place++;
        const std::string_view host = hostOf(configured);
        if (host.empty()) {
            continue;
        }
        copyInto(server.host, host);
        server.state = unreachable;
        const auto known = sources.find(host);
        if (known == sources.end()) {
            continue;
        }
        const Source& each = known->second;
        server.state = each.state;
        server.stratum = each.stratum;
        server.reachability = each.reachability;
        server.offset = each.offset;
        server.delay = each.delay;
        if (each.state == selected) {
            info.client.pollInterval = each.pollInterval;
        }
        if (shortestPoll == 0 || each.pollInterval < shortestPoll) {
            shortestPoll = each.pollInterval;
        }
    }
    if (info.client.pollInterval == 0) {
        info.client.pollInterval = shortestPoll;
    }
    info.unicast = {info.client.pollInterval, answerTimeout, 0};
    return info;
}

}  // namespace ntp
