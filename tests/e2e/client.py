#!/usr/bin/env python3
"""A client on the management LAN: client.py probe|greeting|telnet|ftp ADDRESS PORT [ARGUMENT]...

probe        prints open, refused, or silent
telnet       USER PASSWORD COMMAND: logs in, prints what the command prints
ftp          USER PASSWORD FILE: stores a file, reads it back, prints it
greeting     prints the first line that the server sends
"""
import ftplib
import io
import socket
import sys
import warnings

warnings.simplefilter("ignore", DeprecationWarning)
import telnetlib  # noqa: E402

LIMIT = 30


def probe(address, port):
    try:
        with socket.create_connection((address, port), LIMIT):
            print("open")
    except ConnectionRefusedError:
        print("refused")
    except TimeoutError:
        print("silent")


def greeting(address, port):
    with socket.create_connection((address, port), LIMIT) as connection:
        print(connection.makefile("r", newline="\n").readline().strip())


def telnet(address, port, user, password, command):
    with telnetlib.Telnet(address, port, LIMIT) as session:
        for prompt, answer in ((b"login: ", user), (b"assword: ", password), (b"$ ", command)):
            if not session.read_until(prompt, LIMIT).endswith(prompt):
                sys.exit(f"no {prompt!r}")
            session.write(answer.encode() + b"\r\n")
        session.read_until(b"\n", LIMIT)
        print(session.read_until(b"$ ", LIMIT).decode())
        session.write(b"exit\r\n")
        session.read_all()


def ftp(address, port, user, password, name):
    with ftplib.FTP(timeout=LIMIT) as session:
        session.connect(address, port)
        session.login(user, password)
        session.storbinary(f"STOR {name}", io.BytesIO(b"kept by the board\n"))
        session.retrlines(f"RETR {name}", print)


def main(arguments):
    action = {"probe": probe, "greeting": greeting, "telnet": telnet, "ftp": ftp}[arguments[0]]
    action(arguments[1], int(arguments[2]), *arguments[3:])


main(sys.argv[1:])
