"""The web server set from outside, for tests that run in a box without a board: they start the
board's process themselves, after a restart cause of their choice.

A test may run as the host on the LAN (ip netns exec lan); what belongs on the board is run there.
"""

import ctypes
import json
import os
import re
import signal
import socket
import ssl
import struct
import subprocess
import time

BOARD = "192.0.2.2"
CERTIFICATE = "/etc/apache2/server.crt"
CAUSE_FILE = "/var/log/resetCause"
WEB_PROGRAMS = "/opt/kalvor/neroot/active/web_em/bin"
NETWORK_QUEUE, PERIOD_QUEUE = (1708033, 1001), (1708034, 1002)
IPC_NOWAIT = 0o4000

libc = ctypes.CDLL(None, use_errno=True)

# Program 1 of a box stands in the board's network.
ON_THE_BOARD = ["nsenter", "--net=/proc/1/ns/net"]
ON_THE_LAN = ["ip", "netns", "exec", "lan"]


def run(*command, limit=60):
    return subprocess.run([*ON_THE_BOARD, *command], stdin=subprocess.DEVNULL, text=True,
                          capture_output=True, timeout=limit, check=False)


def start(*command, **options):
    return subprocess.Popen([*ON_THE_BOARD, *command], stdin=subprocess.DEVNULL, **options)


def mngctl(*words, limit=60):
    """Runs mngctl; raises AssertionError with what it said unless it succeeds."""
    result = run("mngctl", *words, limit=limit)
    assert result.returncode == 0, f"mngctl {' '.join(words)}: {result}"
    return result.stdout


def await_that(what, condition, limit=60):
    deadline = time.monotonic() + limit
    while not (found := condition()):
        assert time.monotonic() < deadline, f"not within {limit} s: {what}"
        time.sleep(0.02)
    return found


class Board:
    """The board's process, with the restart cause (bytes; None leaves no file) in its place."""

    def __init__(self, cause=b"power-on\n"):
        if os.path.exists(CAUSE_FILE):
            os.remove(CAUSE_FILE)
        if cause is not None:
            with open(CAUSE_FILE, "wb") as file:
                file.write(cause)
        state, build = os.environ["NETWORKBLE_STATE"], os.environ["NETWORKBLE_BUILD"]
        self.log_path = state + "/board.log"
        with open(self.log_path, "ab") as log:
            self.started = time.time()
            self.process = start(
                "bllhost", "--library", build + "/lib/libnetworkble.so", "--state", state,
                "--resolv-conf", "/etc/resolv.conf", stdout=log, stderr=log,
                start_new_session=True)
        await_that("the board answers", lambda: self.process.poll() is not None
                   or run("mngctl", "--timeout", "1", "rpc", "null").returncode == 0)
        assert self.process.poll() is None, "the board has ended: " + self.log()
        mngctl("ip", "set", BOARD + "/24", "--quiet")

    def log(self):
        with open(self.log_path, encoding="utf-8", errors="replace") as log:
            return log.read()

    def end(self):
        """Asks for an orderly end; answers the status."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        return self.process.wait(20)


def queued(queue):
    """Takes a message off a queue: all of its text area; None if there is none."""
    key, kind = queue
    area = ctypes.create_string_buffer(8 + 2000)
    number = libc.msgget(key, 0)
    assert number >= 0, f"no queue {key}"
    size = libc.msgrcv(number, area, ctypes.c_size_t(2000), ctypes.c_long(kind), IPC_NOWAIT)
    return None if size < 0 else area.raw[8:8 + size]


def enqueue(queue, area):
    key, kind = queue
    number = libc.msgget(key, 0o1666)
    data = struct.pack("l", kind) + area.ljust(2000, b"\0")
    assert libc.msgsnd(number, data, ctypes.c_size_t(2000), IPC_NOWAIT) == 0


def processes(name):
    """Process id and state of the processes of this name."""
    found = {}
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open(f"/proc/{entry}/stat", encoding="utf-8") as stat:
                line = stat.read()
        except (FileNotFoundError, ProcessLookupError):
            continue
        _, comm, state = re.match(r"(\d+) \((.*)\) (\S)", line).groups()
        if comm == name and state != "Z":
            found[int(entry)] = state
    return found


def open_files(pid):
    return {os.readlink(f"/proc/{pid}/fd/{each}") for each in os.listdir(f"/proc/{pid}/fd")}


def kill_event_programs():
    """A paused feeder would take what the next board sends."""
    for name in ("hasses", "hassesMsg"):
        for pid in processes(name):
            os.kill(pid, signal.SIGKILL)
        await_that(name + " is gone", lambda name=name: not processes(name))


def page_from_lan(path="/"):
    """What a host on the LAN gets from the web server: the text, or None."""
    got = subprocess.run([*ON_THE_LAN, "curl", "-sf", "--max-time", "5", f"http://{BOARD}{path}"],
                         text=True, capture_output=True, check=False)
    return got.stdout if got.returncode == 0 else None


def answers_lan(port):
    """Whether a host on the LAN can connect to a port of the board."""
    command = f"exec 3<>/dev/tcp/{BOARD}/{port}"
    return subprocess.run([*ON_THE_LAN, "timeout", "5", "bash", "-c", command],
                          capture_output=True, check=False).returncode == 0


def first_event():
    """The first of the events that the event server keeps, as mngctl tells it."""
    return json.loads(mngctl("events", "--count", "1", "--json"))


def trusted():
    """TLS that knows the board's certificate, and none else."""
    context = ssl.create_default_context(cafile=CERTIFICATE)
    context.check_hostname = False
    return context


def raw_request(request, port=8080):
    """Sends bytes to the event server over TLS and answers all that it sends before it closes."""
    with socket.create_connection(("127.0.0.1", port), timeout=30) as plain:
        with trusted().wrap_socket(plain) as connection:
            connection.sendall(request)
            answer = b""
            while piece := connection.recv(65536):
                answer += piece
    return answer
