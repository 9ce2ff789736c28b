#!/usr/bin/env python3
"""A session from the LAN's host that sends and waits for the answer, again and again, until SIGTERM.

steadySession.py ADDRESS PORT: fails when an answer is missing, late by more than two seconds, or not
what was sent.
"""

import ctypes
import os
import signal
import socket
import sys

CLONE_NEWNET = 0x40000000
ending = False


def end(*_):
    global ending
    ending = True


signal.signal(signal.SIGTERM, end)
lan = os.open("/run/netns/lan", os.O_RDONLY)
if ctypes.CDLL(None, use_errno=True).setns(lan, CLONE_NEWNET) != 0:
    sys.exit("cannot be a host on the LAN: " + os.strerror(ctypes.get_errno()))
connection = socket.create_connection((sys.argv[1], int(sys.argv[2])), timeout=2)
count = 0
while not ending:
    sent = b"%d\n" % count
    connection.sendall(sent)
    answer = b""
    while len(answer) < len(sent):
        part = connection.recv(len(sent) - len(answer))
        if not part:
            sys.exit(f"the session was closed after {count} answers")
        answer += part
    if answer != sent:
        sys.exit(f"{answer} came back for {sent}")
    count += 1
if count < 10:
    sys.exit(f"only {count} answers")
print(f"{count} answers")
