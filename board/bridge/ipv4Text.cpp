#include "board/bridge/ipv4Text.h"

#include <arpa/inet.h>

#include <array>

namespace bridge {

std::string ipv4Text(unsigned int address) {
    const in_addr bytes{htonl(address)};
    std::array<char, INET_ADDRSTRLEN> text{};
    return inet_ntop(AF_INET, &bytes, text.data(), text.size());
}

std::optional<unsigned int> parseIpv4(const std::string& text) {
    in_addr bytes{};
    if (inet_pton(AF_INET, text.c_str(), &bytes) != 1) {
        return std::nullopt;
    }
    return ntohl(bytes.s_addr);
}

}  // namespace bridge
