#pragma once

#include <cstdint>

/// The record of a DHCP client as it stands, to be changed and written back: of the client for IPv4
/// with varoGetDhcp, for IPv6 with varoGetDhcp6. What cannot be read is written nevertheless.
template <class Record>
Record readDhcpForUpdate(int (*read)(Record*)) {
    constexpr std::uint32_t clientSettings = 2;
    Record record{};
    read(&record);
    record.updateSelector = clientSettings;
    return record;
}
