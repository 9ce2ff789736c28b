"""A minimal ONC RPC client (RFC 5531) in another language than the board's own, for tests from outside.

It speaks to the loopback address of the box it runs in, asks the port mapper for ports, and leaves
arguments and results to the caller as bytes.
"""

import socket
import struct

NETWORK = 0x20000009
PORTMAPPER = 100000

SUCCESS, PROG_UNAVAIL, PROG_MISMATCH, PROC_UNAVAIL, GARBAGE_ARGS, SYSTEM_ERR = range(6)


def u32(*values):
    return struct.pack(f">{len(values)}I", *(value & 0xFFFFFFFF for value in values))


def text(value):
    data = value if isinstance(value, bytes) else value.encode()
    return u32(len(data)) + data + b"\0" * (-len(data) % 4)


def characters(data):
    """The text in a fixed character array: one unit a character, up to the first zero."""
    units = struct.unpack(f">{len(data) // 4}I", data)
    return bytes(unit & 0xFF for unit in units).split(b"\0")[0].decode()


def call_message(program, version, procedure, arguments, xid=1):
    return u32(xid, 0, 2, program, version, procedure, 0, 0, 0, 0) + arguments


class Reply:
    """What came back: the accept status, and the bytes behind it."""

    def __init__(self, data):
        (self.xid, kind, denied, _flavor, length) = struct.unpack(">5I", data[:20])
        assert kind == 1, "not a reply"
        assert denied == 0, "the message was denied"
        rest = data[20 + length + -length % 4:]
        self.status = struct.unpack(">I", rest[:4])[0]
        self.results = rest[4:]

    def number(self):
        return struct.unpack(">i", self.results[:4])[0]


def mapped_port(program, version, protocol):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as mapper:
        mapper.settimeout(30)
        mapper.sendto(call_message(PORTMAPPER, 2, 3, u32(program, version, protocol, 0)),
                      ("127.0.0.1", 111))
        return Reply(mapper.recv(65536)).number()


class Udp:
    def __init__(self, program=NETWORK, version=1):
        self.program, self.version = program, version
        self.socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self.socket.settimeout(30)
        self.socket.connect(("127.0.0.1", mapped_port(program, version, socket.IPPROTO_UDP)))

    def send(self, data):
        self.socket.send(data)

    def receive(self):
        return Reply(self.socket.recv(65536))

    def call(self, procedure, arguments=b"", version=None, program=None):
        self.send(call_message(self.program if program is None else program,
                               self.version if version is None else version,
                               procedure, arguments))
        return self.receive()

    def close(self):
        self.socket.close()


class Tcp(Udp):
    """The same over record marking (RFC 5531, section 11)."""

    def __init__(self, program=NETWORK, version=1):
        self.program, self.version = program, version
        self.socket = socket.create_connection(
            ("127.0.0.1", mapped_port(program, version, socket.IPPROTO_TCP)), timeout=30)

    def send(self, data):
        self.socket.sendall(u32(0x80000000 | len(data)) + data)

    def receive(self):
        message = b""
        last = False
        while not last:
            mark = struct.unpack(">I", self.read(4))[0]
            last = bool(mark & 0x80000000)
            message += self.read(mark & 0x7FFFFFFF)
        return Reply(message)

    def read(self, count):
        data = b""
        while len(data) < count:
            part = self.socket.recv(count - len(data))
            if not part:
                raise ConnectionError("the board closed the connection")
            data += part
        return data
