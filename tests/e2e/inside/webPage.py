#!/usr/bin/env python3
"""The page "board events" in a browser of the host on the LAN. Runs in a box without a board, as
that host (ip netns exec lan)."""

import os
import subprocess
import sys
import tempfile
import time
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

sys.path.insert(0, os.path.join(os.path.dirname(__file__), ".."))
import webset  # noqa: E402
from webset import Board, await_that, mngctl  # noqa: E402


def key_of_certificate():
    """What the browser knows the board's certificate by: the digest of its public key."""
    command = (f"openssl x509 -in {webset.CERTIFICATE} -pubkey -noout | openssl pkey -pubin "
               "-outform der | openssl dgst -sha256 -binary | base64")
    return subprocess.run(command, shell=True, text=True, capture_output=True,
                          check=True).stdout.strip()


def browser(profile, trusting=True):
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run",
                     "--disable-background-networking", "--disable-component-update",
                     f"--user-data-dir={profile}"):
        options.add_argument(argument)
    if trusting:
        options.add_argument("--ignore-certificate-errors-spki-list=" + key_of_certificate())
    return webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)


class Page(unittest.TestCase):
    def setUp(self):
        self.home = tempfile.TemporaryDirectory(prefix="browser")
        self.addCleanup(self.home.cleanup)
        os.environ["HOME"] = self.home.name
        self.board = self.driver = None
        self.addCleanup(self.end_board)

    def end_board(self):
        if self.driver:
            self.driver.quit()
        if self.board:
            mngctl("web", "off", "--quiet")
            self.assertEqual(self.board.end(), 0)
        webset.kill_event_programs()

    def open(self, cause=b"power-on\n", trusting=True):
        self.board = Board(cause)
        mngctl("web", "on", "--quiet")
        self.driver = browser(self.home.name + "/profile", trusting)
        self.driver.get(f"http://{webset.BOARD}/")
        self.driver.execute_script("window.loadedOnce = true; window.alerts = 0;"
                                   "window.alert = () => window.alerts++;")

    def text(self, name):
        return self.driver.find_element(By.ID, name).text

    def await_text(self, name, text):
        await_that(f"{name} says {text}", lambda: self.text(name) == text)

    def content(self, name):
        """The text of an element to the letter, as it stands in the page."""
        return self.driver.execute_script(f"return document.getElementById('{name}').textContent")

    def rows(self):
        return [[cell.text for cell in row.find_elements(By.TAG_NAME, "td")]
                for row in self.driver.find_elements(By.CSS_SELECTOR, "#events tr")]

    def test_shows_the_cause_and_recovers_by_itself(self):
        self.open()
        self.await_text("connection", "connected")
        self.await_text("cause", "power-on")
        moment = self.text("restartTime")
        first, last = (time.strftime("%Y-%m-%dT%H:%M:%SZ", time.localtime(at))
                       for at in (self.board.started, time.time()))
        self.assertTrue(first <= moment <= last, moment)
        self.assertEqual(self.rows(), [["1", moment, "restarted: power-on"]])

        mngctl("web", "off")
        self.await_text("connection", "connection lost, trying again")
        self.assertEqual(self.text("cause"), "power-on")

        mngctl("web", "on")
        self.await_text("connection", "connected")
        webset.enqueue(webset.NETWORK_QUEUE, b"events=after")
        await_that("a new event is shown", lambda: self.rows()[0][2] == "after")
        self.assertEqual(len(self.rows()), 2)
        self.assertTrue(self.driver.execute_script("return window.loadedOnce"),
                        "the page was not loaded again")

    def test_an_untrusted_certificate_gets_a_hint(self):
        self.open(trusting=False)
        self.await_text("connection", "connection lost, trying again")
        self.assertIn("accept its certificate", self.text("hint"))
        self.assertEqual(self.driver.find_element(By.ID, "server").get_attribute("href"),
                         f"https://{webset.BOARD}:8080/")

    def shows_cause(self, file, shown):
        self.open(file)
        await_that("the cause is shown", lambda: self.content("cause") != "not told yet")
        self.assertEqual(self.content("cause"), shown)
        self.assertRegex(self.text("restartTime"), r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        self.assertEqual(self.driver.execute_script("return window.alerts"), 0)
        self.assertEqual(self.driver.find_elements(By.CSS_SELECTOR, "#cause *, #events td *"), [])
        # The page still works.
        webset.enqueue(webset.PERIOD_QUEUE, b"events=<b>later</b>")
        await_that("a later event is shown", lambda: self.rows()[0][2] == "<b>later</b>")

    def test_no_cause(self):
        self.shows_cause(None, "(no cause recorded)")

    def test_an_empty_cause(self):
        self.shows_cause(b"", "(no cause recorded)")

    def test_quotes_backslashes_and_control_characters(self):
        self.shows_cause(b'say "no" to C:\\new\\table\x1b[31m\x07\t.\r\n',
                        'say "no" to C:\\new\\table [31m  . ')

    def test_a_backslash_that_means_something_in_json(self):
        self.shows_cause(b"C:\\new\n", "C:\\new")

    def test_markup(self):
        self.shows_cause(b"<img src=x onerror=alert(1)><script>alert(2)</script>\n",
                        "<img src=x onerror=alert(1)><script>alert(2)</script>")

    def test_what_is_no_utf8(self):
        self.shows_cause(b"caf\xe9\n", "caf\ufffd")

    def test_five_thousand_characters(self):
        self.open(b"x" * 5000)
        await_that("the cause is shown", lambda: self.content("cause") != "not told yet")
        self.assertRegex(self.content("cause"), r"^x{1500,1999} \[cut off by the board\]$")
        webset.enqueue(webset.PERIOD_QUEUE, b"events=later")
        await_that("a later event is shown", lambda: self.rows()[0][2] == "later")


if __name__ == "__main__":
    unittest.main(verbosity=2)
