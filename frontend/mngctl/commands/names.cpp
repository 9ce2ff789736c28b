#include "mngctl/commands/names.h"

#include "mngctl/outcome.h"
#include "mngctl/wire/values.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace mngctl {

namespace {

constexpr std::size_t nameMaximum = 253;
constexpr std::size_t labelMaximum = 63;

/// Levenshtein distance.
std::size_t distance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

bool isLetterOrDigit(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

void checkLabel(std::string_view name, std::string_view label) {
    const auto fail = [&](const std::string& rule) {
        throw UsageError(fmt::format("'{}' is no domain name: {}", printable(name), rule));
    };
    if (label.empty()) {
        fail("a label between dots is empty");
    }
    if (label.size() > labelMaximum) {
        fail(fmt::format("the label '{}' is longer than {} characters", printable(label),
                         labelMaximum));
    }
    if (!std::ranges::all_of(label, [](char c) { return isLetterOrDigit(c) || c == '-'; })) {
        fail(
            "a label is made of the letters a to z, digits and hyphens (names in other scripts "
            "are written in their xn-- form)");
    }
    if (label.front() == '-' || label.back() == '-') {
        fail("a label neither begins nor ends with a hyphen");
    }
}

}  // namespace

std::string suggestion(std::string_view wrong, std::span<const std::string_view> known) {
    constexpr std::size_t tolerated = 3;
    constexpr std::size_t shown = 3;
    std::vector<std::pair<std::size_t, std::string>> near;
    for (const std::string_view name : known) {
        const std::size_t steps = distance(wrong, name);
        if (steps <= std::min(tolerated, wrong.size() / 2)) {
            near.emplace_back(steps, name);
        }
    }
    std::ranges::stable_sort(near, {}, &std::pair<std::size_t, std::string>::first);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < std::min(near.size(), shown); ++i) {
        names.push_back(near[i].second);
    }
    return names.empty() ? "" : fmt::format(" (did you mean {}?)", joinNames(names));
}

void checkDomainName(std::string_view name) {
    if (name.empty()) {
        throw UsageError("the domain name is empty: 'mngctl domain clear' removes it");
    }
    if (name.size() > nameMaximum) {
        throw UsageError(fmt::format("a domain name has at most {} characters, this one has {}",
                                     nameMaximum, name.size()));
    }
    if (name.ends_with('.')) {
        throw UsageError(fmt::format("'{}': leave out the dot at the end", printable(name)));
    }
    in_addr address{};
    if (::inet_pton(AF_INET, std::string(name).c_str(), &address) == 1) {
        throw UsageError(fmt::format("'{}' is an address, not a domain name", name));
    }
    for (std::string_view rest = name;;) {
        const std::size_t dot = rest.find('.');
        checkLabel(name, rest.substr(0, dot));
        if (dot == std::string_view::npos) {
            break;
        }
        rest.remove_prefix(dot + 1);
    }
}

}  // namespace mngctl
