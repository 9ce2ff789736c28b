#!/usr/bin/env python3
"""Prints what the next DHCP request that enters an interface identifies its client by: vendor class
(option 60, RFC 2132) and circuit id (option 82, sub-option 1, RFC 3046), in hexadecimal, "-" for
none."""

import socket
import struct
import sys

ETHERNET, IP, UDP, BOOTP = 14, 20, 8, 236
COOKIE = bytes([99, 130, 83, 99])


def options(data):
    found = {}
    while data and data[0] != 255:
        if data[0] == 0:
            data = data[1:]
            continue
        code, length = data[0], data[1]
        # An option that comes in pieces is one (RFC 3396).
        found[code] = found.get(code, b"") + data[2:2 + length]
        data = data[2 + length:]
    return found


def request(frame):
    """The options of a client's message; nothing for another frame."""
    if len(frame) < ETHERNET + IP or frame[12:14] != b"\x08\x00" or frame[ETHERNET + 9] != 17:
        return None
    udp = frame[ETHERNET + (frame[ETHERNET] & 15) * 4:]
    source, target = struct.unpack(">2H", udp[:4])
    message = udp[UDP:]
    if (source, target) != (68, 67) or message[BOOTP:BOOTP + 4] != COOKIE:
        return None
    return options(message[BOOTP + 4:])


def main():
    with socket.socket(socket.AF_PACKET, socket.SOCK_RAW, socket.htons(0x0003)) as wire:
        wire.bind((sys.argv[1], 0))
        while (found := request(wire.recv(65536))) is None:
            pass
    agent = options(found.get(82, b""))
    print(*(text.hex() if text is not None else "-" for text in (found.get(60), agent.get(1))))


if __name__ == "__main__":
    main()
