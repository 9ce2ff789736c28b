#!/usr/bin/env python3
"""The web server set and its event channel, seen by mngctl and by a host on the LAN. Runs in a box
without a board."""

import json
import os
import re
import shutil
import signal
import sys
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(__file__), ".."))
import webset  # noqa: E402
from webset import Board, await_that, mngctl, processes, run  # noqa: E402

PAGE, EVENTS = 80, 8080
FAR_ENDS = ["hasses", "apache2"]
APACHE_CONFIGURATION = "/etc/apache2/apache2.conf"
EVENT_SERVER_START = (
    webset.WEB_PROGRAMS + "/hasses -p=8080 -murl=/sse-event -ra -fifo=/var/run/hasses/SSE_EVENT "
    "-ssl -cert-file=/etc/apache2/server.crt -privatekey-file=/etc/apache2/server.key")


def notification(moment, cause):
    """What the board is to send, byte for byte, from the cause as it was read."""
    return (b'events={\n  "ietf-restconf:notification": {\n    "eventTime": "' + moment + b'",\n'
            b'    "VANTORIX-MSAN-MIB:RebootStatusIndication": {\n'
            b'      "lastRestartCause": "' + cause + b'"\n    }\n  }\n}')


def board_time(seconds):
    return time.strftime("%Y-%m-%dT%H:%M:%SZ", time.localtime(seconds))


class WebSet(unittest.TestCase):
    def setUp(self):
        self.board = None

    def tearDown(self):
        if self.board:
            self.switch_off()
            self.assertEqual(self.board.end(), 0)
            while webset.queued(webset.NETWORK_QUEUE):
                pass
        webset.kill_event_programs()

    def switch_off(self):
        """An event server that a test has ended is needed to switch the set off."""
        if self.state()[0]:
            if not processes("hasses"):
                os.system(EVENT_SERVER_START)
            mngctl("web", "off", "--quiet")

    def boot(self, cause=b"power-on\n"):
        self.board = Board(cause)
        return self.board

    def refused(self, *words):
        result = run("mngctl", *words)
        self.assertEqual(result.returncode, 1, result)
        return result.stderr

    def lost(self, *words):
        result = run("mngctl", "events", *words)
        self.assertEqual(result.returncode, 3, result)
        return result.stderr

    def state(self):
        state = json.loads(mngctl("web", "show", "--json"))
        return (state["on"], state["webServer"]["answers"], state["eventServer"]["answers"])


class Switching(WebSet):
    def test_on_off_on(self):
        board = self.boot()
        self.assertEqual(self.state(), (False, False, False))
        self.assertIn("the web server set is off", self.lost())

        self.assertEqual(mngctl("web", "on"),
                         "web server set: on\nweb server: answers at port 80\n"
                         "event server: answers at port 8080\n")
        self.assertIn("<title>board events</title>", webset.page_from_lan())
        self.assertIn("EventSource", webset.page_from_lan("/events.js"))
        self.assertTrue(webset.answers_lan(EVENTS))
        self.assertTrue(all(processes(each) for each in FAR_ENDS))
        event = webset.first_event()
        self.assertEqual(event["restartCause"], "power-on")
        self.assertTrue(board_time(board.started) <= event["time"] <= board_time(time.time()),
                        event)
        self.assertRegex(mngctl("events", "--count", "1"),
                         r"^....-..-..T..:..:..Z  restarted: power-on\n$")

        self.assertEqual(mngctl("web", "off"),
                         "web server set: off\nweb server: no answer at port 80\n"
                         "event server: no answer at port 8080\n")
        self.assertFalse(webset.answers_lan(PAGE))
        self.assertFalse(webset.answers_lan(EVENTS))
        for each in FAR_ENDS:
            self.assertEqual(processes(each), {}, each)
        self.assertEqual(list(processes("hassesMsg").values()), ["T"], "the feeder is paused")

        mngctl("web", "on")
        self.assertEqual(self.state(), (True, True, True))
        self.assertIsNotNone(webset.page_from_lan())
        self.assertEqual(len(processes("hassesMsg")), 1)
        self.assertNotIn("T", processes("hassesMsg").values())

    def test_both_queues_reach_those_who_follow(self):
        self.boot()
        mngctl("web", "on")
        webset.first_event()
        webset.enqueue(webset.PERIOD_QUEUE, b"kpi=first")
        webset.enqueue(webset.NETWORK_QUEUE, b"events=second")
        lines = mngctl("events", "--count", "3", "--json").splitlines()
        told = {(json.loads(line)["name"], json.loads(line)["text"]) for line in lines[1:]}
        self.assertEqual(told, {("kpi", "first"), ("events", "second")})

    def test_the_semaphores_are_drained_when_the_set_goes_off(self):
        self.boot()
        mngctl("web", "on")
        webset.first_event()
        libc = webset.libc
        libc.sem_open.restype = webset.ctypes.c_void_p
        semaphore = webset.ctypes.c_void_p(libc.sem_open(b"/hassesEventsSem", 0))
        value = webset.ctypes.c_int()
        libc.sem_getvalue(semaphore, webset.ctypes.byref(value))
        self.assertGreater(value.value, 0)
        mngctl("web", "off")
        libc.sem_getvalue(semaphore, webset.ctypes.byref(value))
        self.assertEqual(value.value, 0)

    def test_a_follower_is_told_when_the_channel_goes(self):
        self.boot()
        mngctl("web", "on")
        follower = webset.start("mngctl", "events", stdout=webset.subprocess.PIPE,
                                stderr=webset.subprocess.PIPE, text=True)
        self.assertRegex(follower.stdout.readline(), "restarted: power-on")
        mngctl("web", "off")
        _, errors = follower.communicate(timeout=60)
        self.assertEqual(follower.returncode, 3)
        self.assertEqual(errors, "mngctl: the event channel is lost: 127.0.0.1 port 8080 closed "
                         "the connection; the web server set is off; 'mngctl web on' switches it on\n")

    def test_control_c_ends_following_orderly(self):
        self.boot()
        mngctl("web", "on")
        follower = webset.start("mngctl", "events", stdout=webset.subprocess.PIPE, text=True)
        self.assertRegex(follower.stdout.readline(), "restarted: power-on")
        follower.send_signal(signal.SIGINT)
        self.assertEqual(follower.wait(20), 0)

    def test_switching_again_and_at_the_same_time(self):
        self.boot()
        for _ in range(2):
            mngctl("web", "on", "--quiet")
        both = [webset.start("mngctl", "web", "on", "--quiet") for _ in range(2)]
        self.assertEqual([each.wait(30) for each in both], [0, 0])
        both = [webset.start("mngctl", "web", word, "--quiet") for word in ("off", "on", "off")]
        self.assertEqual([each.wait(30) for each in both], [0, 0, 0])
        on, page, events = self.state()
        self.assertEqual((page, events), (on, on))
        self.assertLessEqual(len(processes("hasses")), 1)
        self.assertEqual(len(processes("hassesMsg")), 1)
        for word in ("on", "off", "on"):
            mngctl("web", word, "--quiet")
        self.assertEqual(self.state(), (True, True, True))

    def test_the_event_server_survives_what_is_no_request(self):
        self.boot()
        mngctl("web", "on")
        self.assertTrue(webset.raw_request(b"GET / HTTP/1.1\r\n\r\n").startswith(b"HTTP/1.1 404"))
        self.assertTrue(webset.raw_request(b"\r\n\r\n").startswith(b"HTTP/1.1 404"))
        self.assertTrue(webset.raw_request(b"x" * 9000).startswith(b"HTTP/1.1 404"))
        self.assertEqual(webset.first_event()["restartCause"], "power-on")

    def test_another_certificate_is_not_trusted(self):
        self.boot()
        mngctl("web", "on")
        os.system("openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                  "-subj /CN=other -keyout /tmp/other.key -out /tmp/other.crt 2>/dev/null")
        self.assertIn("is not the one whose certificate is in /tmp/other.crt",
                      self.lost("--certificate", "/tmp/other.crt"))
        for name, text in (("/tmp/none.crt", "cannot be read"), ("/etc/hostname", "certificate")):
            result = run("mngctl", "events", "--certificate", name)
            self.assertEqual(result.returncode, 2, result)
            self.assertIn(text, result.stderr)


class Causes(WebSet):
    """What the file holds, and what is sent of it."""

    def switch_off(self):
        """Not needed: the next board finds the web server running, and starts the rest anew."""

    @classmethod
    def tearDownClass(cls):
        os.system("/etc/init.d/apache2 stop >/dev/null")

    def sends(self, file, cause, shown=None, text=None):
        board = self.boot(file)
        area = webset.queued(webset.NETWORK_QUEUE)
        self.assertIsNotNone(area, "the board sent something")
        self.assertEqual(len(area), 2000)
        message = area.split(b"\0")[0]
        moment = re.search(rb'"eventTime": "([^"]*)"', message)[1]
        self.assertLessEqual(board_time(board.started), moment.decode())
        self.assertLessEqual(moment.decode(), board_time(time.time()))
        whole = notification(moment, cause)
        self.assertEqual(message, whole.split(b"\0")[0][:1999])
        webset.enqueue(webset.NETWORK_QUEUE, area)
        mngctl("web", "on", "--quiet")
        event = webset.first_event()
        self.assertEqual(event["restartCause"], cause.decode() if shown is None else shown)
        self.assertEqual(event["time"], moment.decode())
        line = mngctl("events", "--count", "1")
        self.assertEqual(line, f"{moment.decode()}  restarted: "
                         f"{event['restartCause'] if text is None else text}\n")

    def test_missing(self):
        self.sends(None, b"", text="no cause recorded")

    def test_empty(self):
        self.sends(b"", b"", text="no cause recorded")

    def test_an_empty_first_line(self):
        self.sends(b"\nwatchdog\n", b"", text="no cause recorded")

    def test_the_first_of_two_lines(self):
        self.sends(b"power-on\nwatchdog\n", b"power-on")

    def test_without_a_line_end(self):
        self.sends(b"watchdog", b"watchdog")

    def test_quotes_and_backslashes(self):
        self.sends(b'say "no" to C:\\new\\table\n', b'say "no" to C:\\new\\table')

    def test_what_looks_like_the_end_of_the_message(self):
        self.sends(b'x"}}} {"y": "z\n', b'x"}}} {"y": "z')

    def test_control_characters_become_blanks_in_the_event_server(self):
        self.sends(b"a\x1b[31mred\x07\tb\r\n", b"a\x1b[31mred\x07\tb\r", shown="a [31mred  b ")

    def test_what_is_no_utf8(self):
        self.sends(b"caf\xe9\n", b"caf\xe9", shown="caf\\xe9")

    def test_markup(self):
        self.sends(b"<img src=x onerror=alert(1)>\n", b"<img src=x onerror=alert(1)>")

    def test_five_thousand_characters_are_cut(self):
        head = notification(b"2024-03-01T10:20:30Z", b"\0").index(b"\0")
        kept = "x" * (1999 - head)
        self.sends(b"x" * 5000, b"x" * 5000, shown=kept, text=kept + " [cut off by the board]")

    def test_a_nul_ends_the_message(self):
        self.sends(b"power\0on\n", b"power\0on", shown="power", text="power [cut off by the board]")


class Faults(WebSet):
    def test_apache_that_does_not_start(self):
        self.boot()
        shutil.copy(APACHE_CONFIGURATION, "/tmp/apache2.conf")
        try:
            with open(APACHE_CONFIGURATION, "a", encoding="ascii") as file:
                file.write("NoSuchDirective\n")
            self.assertIn(
                "the board refused to switch the web server set on: result -1 (failed); now in "
                "force: the web server set counts as off, the event server answers at port 8080, the web "
                "server does not answer at port 80", self.refused("web", "on"))
            self.assertIn("network: network: networkHttpServerSet: 4084: Error executing system "
                          "command: /etc/init.d/apache2 start", self.board.log())
        finally:
            shutil.copy("/tmp/apache2.conf", APACHE_CONFIGURATION)
        mngctl("web", "on")
        self.assertEqual(self.state(), (True, True, True))
        self.assertEqual(len(processes("hasses")), 1)

    def test_an_event_server_that_is_missing(self):
        self.boot()
        link = webset.WEB_PROGRAMS + "/hasses"
        target = os.readlink(link)
        os.remove(link)
        try:
            self.assertIn("the event server does not answer at port 8080",
                          self.refused("web", "on"))
            self.assertIn("networkHttpServerSet: 4053: Error executing system command: " + link,
                          self.board.log())
            self.assertEqual(processes("apache2"), {})
            self.assertEqual(self.state(), (False, False, False))
        finally:
            os.symlink(target, link)
        mngctl("web", "on")
        self.assertEqual(self.state(), (True, True, True))

    def test_a_certificate_that_is_missing(self):
        self.boot()
        shutil.move(webset.CERTIFICATE, "/tmp/server.crt")
        try:
            self.refused("web", "on")
            self.assertIn("hasses: cannot use the certificate /etc/apache2/server.crt",
                          self.board.log())
        finally:
            shutil.move("/tmp/server.crt", webset.CERTIFICATE)

    def test_an_event_server_that_is_killed(self):
        self.boot()
        mngctl("web", "on")
        follower = webset.start("mngctl", "events", stdout=webset.subprocess.PIPE,
                                stderr=webset.subprocess.PIPE, text=True)
        self.assertRegex(follower.stdout.readline(), "restarted")
        for pid in processes("hasses"):
            os.kill(pid, signal.SIGKILL)
        _, errors = follower.communicate(timeout=60)
        self.assertEqual(follower.returncode, 3)
        self.assertIn("the event channel is lost", errors)
        self.assertIn("no event server listens at 127.0.0.1 port 8080; the web server set is on",
                      self.lost())
        self.assertEqual(self.state(), (True, True, False))
        self.assertIn("an event server that does not run cannot be ended: start it again first",
                      self.refused("web", "off"))
        self.assertEqual(self.state(), (True, True, False))
        self.assertEqual(os.system(EVENT_SERVER_START), 0)
        webset.enqueue(webset.NETWORK_QUEUE, b"events=after")
        self.assertEqual(webset.first_event()["text"], "after")
        mngctl("web", "off")
        self.assertEqual(self.state(), (False, False, False))

    def test_the_programs_keep_nothing_of_the_board_open(self):
        self.boot()
        mngctl("web", "on")
        files = webset.open_files(self.board.process.pid)
        self.assertTrue([file for file in files if file.startswith("socket:")], files)
        for name in ("hasses", "hassesMsg"):
            self.assertTrue(processes(name), name)
            for pid in processes(name):
                common = webset.open_files(pid) & files
                self.assertEqual([file for file in common if file.startswith("socket:")], [], name)


if __name__ == "__main__":
    unittest.main(verbosity=2)
