#!/usr/bin/env python3
"""The network program as an outside client sees it, over UDP and TCP. Runs in a box."""

import os
import random
import re
import struct
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), ".."))
import rpcclient as rpc  # noqa: E402

TABLE = os.path.join(os.path.dirname(__file__), "../../../network/rpc/procedures.def")
SET_DOMAIN, GET_DOMAIN, SET_HOSTNAME, SET_DNS, GET_DNS = 14, 15, 16, 28, 30
SET_VLAN_MODE, SET_IPV6_DNS, SET_IPV6_PROTO = 74, 93, 96


def procedures():
    rows = {}
    with open(TABLE, encoding="ascii") as table:
        for line in table:
            if line.startswith("PROCEDURE("):
                row = re.match(r"PROCEDURE\(\s*(\d+),\s*(\w+),\s*(\w+),\s*(\w+)\)", line)
                rows[int(row[1])] = row.groups()[1:]
    return rows


def resident_kilobytes():
    with open("/run/bllhost.pid", encoding="ascii") as pid:
        path = f"/proc/{int(pid.read())}/status"
    with open(path, encoding="ascii") as status:
        return int(re.search(r"VmRSS:\s+(\d+)", status.read())[1])


class NetworkProgram(unittest.TestCase):
    def setUp(self):
        self.clients = [rpc.Udp(), rpc.Tcp()]
        for client in self.clients:
            self.addCleanup(client.close)

    def test_null_procedure_has_an_empty_answer(self):
        for client in self.clients:
            reply = client.call(0)
            self.assertEqual((reply.status, reply.results), (rpc.SUCCESS, b""))

    def test_domain_and_servers_are_set_over_one_transport_and_read_over_the_other(self):
        udp, tcp = self.clients
        self.assertEqual(udp.call(SET_DOMAIN, rpc.text("outside.example")).number(), 0)
        self.assertEqual(rpc.characters(tcp.call(GET_DOMAIN).results), "outside.example")
        self.assertEqual(tcp.call(SET_DNS, rpc.u32(0xC0000201, 0xC0000202)).number(), 0)
        self.assertEqual(udp.call(GET_DNS).results, rpc.u32(0xC0000201, 0xC0000202))

    def test_secondary_equal_to_the_primary_is_dropped(self):
        udp, tcp = self.clients
        self.assertEqual(udp.call(SET_DNS, rpc.u32(0xC0000201, 0xC0000201)).number(), 0)
        self.assertEqual(tcp.call(GET_DNS).results, rpc.u32(0xC0000201, 0))

    def test_every_assigned_procedure_answers_and_no_other_does(self):
        assigned = procedures()
        for client in self.clients:
            for number in [*range(1, max(assigned) + 11), 1000, 0xFFFFFFFF]:
                # Zeros decode as any argument: numbers, false, and empty texts.
                status = client.call(number, b"\0" * 8400).status
                if number in assigned:
                    self.assertEqual(status, rpc.SUCCESS, number)
                else:
                    self.assertEqual(status, rpc.PROC_UNAVAIL, number)

    def test_host_name_is_refused_and_two_procedures_always_report_success(self):
        for client in self.clients:
            self.assertEqual(client.call(SET_HOSTNAME, rpc.text("board")).number(), -1)
            self.assertEqual(client.call(SET_VLAN_MODE, rpc.u32(77, 2)).number(), 0)
            self.assertEqual(client.call(SET_IPV6_PROTO, rpc.u32(1)).number(), 0)

    def test_wrong_version_and_program_get_their_errors(self):
        for client in self.clients:
            reply = client.call(0, version=2)
            self.assertEqual((reply.status, reply.results), (rpc.PROG_MISMATCH, rpc.u32(1, 1)))
            self.assertEqual(client.call(0, program=0x2FFFFFFF).status, rpc.PROG_UNAVAIL)

    def test_arguments_cut_anywhere_are_garbage(self):
        whole = rpc.text("2001:db8::1") + rpc.text("2001:db8::2")
        for client in self.clients:
            for length in range(0, len(whole), 4):
                reply = client.call(SET_IPV6_DNS, whole[:length])
                self.assertEqual(reply.status, rpc.GARBAGE_ARGS, length)
            self.assertEqual(client.call(SET_DOMAIN, rpc.u32(0xFFFFFFFF)).status,
                             rpc.GARBAGE_ARGS)

    def test_long_domain_is_stored_as_255_characters_and_read_as_99(self):
        name = "".join(chr(ord("a") + i % 26) for i in range(4 << 20))
        udp, tcp = self.clients
        self.assertEqual(tcp.call(SET_DOMAIN, rpc.text(name)).number(), 0)
        self.assertEqual(rpc.characters(udp.call(GET_DOMAIN).results), name[:99])
        import sqlite3
        with sqlite3.connect(os.environ["NETWORKBLE_STATE"] + "/varo.db") as store:
            stored = store.execute("select domain from dns where source = 2").fetchone()[0]
        self.assertEqual(stored, name[:255])

    def test_random_requests_leave_a_living_process_of_the_same_size(self):
        chance = random.Random(20090821)

        def noise(limit):
            return chance.randbytes(chance.randrange(limit))

        def storm(rounds):
            udp = rpc.Udp()
            for _ in range(rounds):
                number = chance.choice([n for n in range(110) if n != SET_IPV6_DNS])
                udp.send(rpc.call_message(rpc.NETWORK, 1, number, noise(3000)))
                udp.send(noise(3000))
                udp.receive()  # the valid header is answered, whatever stands behind it
            udp.close()
            for _ in range(rounds // 20):
                tcp = rpc.Tcp()
                number = chance.choice([n for n in range(110) if n != SET_IPV6_DNS])
                tcp.send(rpc.call_message(rpc.NETWORK, 1, number, noise(20000)))
                tcp.receive()
                tcp.send(noise(2000))
                tcp.close()

        storm(400)
        before = resident_kilobytes()
        storm(1200)
        self.assertLess(resident_kilobytes() - before, 4096)
        for client in self.clients:
            self.assertEqual(client.call(0).status, rpc.SUCCESS)


if __name__ == "__main__":
    unittest.main(verbosity=2)
