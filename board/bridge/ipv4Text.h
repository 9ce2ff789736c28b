#pragma once

#include <optional>
#include <string>

namespace bridge {

/// An IPv4 address, given in host byte order, in dotted decimal form; and back, nothing for another
/// text.
std::string ipv4Text(unsigned int address);
std::optional<unsigned int> parseIpv4(const std::string& text);

}  // namespace bridge
