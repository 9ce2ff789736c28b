#!/usr/bin/env python3
"""A TCP service that returns what it gets, on all addresses. echoServer.py PORT"""

import socketserver
import sys


class Echo(socketserver.BaseRequestHandler):
    def handle(self):
        while data := self.request.recv(4096):
            self.request.sendall(data)


class Server(socketserver.ThreadingTCPServer):
    allow_reuse_address = True
    daemon_threads = True


Server(("0.0.0.0", int(sys.argv[1])), Echo).serve_forever()
