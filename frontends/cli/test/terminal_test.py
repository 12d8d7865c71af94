#!/usr/bin/env python3
"""Runs yfw on a terminal, and beside one: widths, colors, progress, characters that would command it.

  terminal_test.py YFW EXAMPLES [-k ...]
"""
import fcntl
import json
import os
import pathlib
import pty
import re
import select
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

YFW = pathlib.Path(sys.argv[1]).resolve()
EXAMPLES = pathlib.Path(sys.argv[2]).resolve()
LIMIT = 60
HOSTILE = "evil\nyfw: forged\u202e\u009b2J\x7f"


class Terminal:
    """A program on a terminal of its own."""

    def __init__(self, *arguments, columns=80, **environment):
        self.main, side = pty.openpty()
        fcntl.ioctl(side, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        attributes = termios.tcgetattr(side)
        attributes[1] &= ~termios.OPOST  # line ends stay as they are written
        termios.tcsetattr(side, termios.TCSANOW, attributes)
        surroundings = {**os.environ, "TERM": "xterm", **environment}
        if "NO_COLOR" not in environment:
            surroundings.pop("NO_COLOR", None)
        self.process = subprocess.Popen([YFW, *arguments], stdin=subprocess.DEVNULL, stdout=side, stderr=side,
                                        env=surroundings)
        os.close(side)
        self.text = b""

    def read_until(self, is_enough=lambda text: False):
        end = time.monotonic() + LIMIT
        while time.monotonic() < end and not is_enough(self.text.decode()):
            if not select.select([self.main], [], [], 0.1)[0]:
                continue
            try:
                piece = os.read(self.main, 65536)
            except OSError:  # the program has closed its side
                break
            if not piece:
                break
            self.text += piece
        return self.text.decode()

    def finish(self):
        try:
            self.read_until()
            return self.process.wait(LIMIT)
        finally:
            self.process.kill()
            self.process.wait()
            os.close(self.main)


def on_terminal(*arguments, **options):
    terminal = Terminal(*arguments, **options)
    status = terminal.finish()
    return status, terminal.text.decode()


def beside(*arguments, **environment):
    return subprocess.run([YFW, *arguments], capture_output=True, text=True, timeout=LIMIT,
                          env={**os.environ, "TERM": "xterm", **environment})


def devices(*names):
    return [argument for name in names for argument in ("--device", EXAMPLES / name)]


class WithDirectory(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)
        os.environ["XDG_STATE_HOME"] = str(self.directory / "state")


class Neighbors(WithDirectory):
    def test_are_a_table(self):
        result = beside("neighbors")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        lines = result.stdout.splitlines()
        self.assertRegex(lines[0], r"^  Local port  System name +Port  Chassis id +Age  Capabilities$")
        self.assertRegex(lines[1], r"^  eth1 +r2\.example\.net  eth1  7e:d0:85:52:40:8c  +31s  STATION_ONLY$")
        self.assertNotIn("\x1b", result.stdout)

    def test_fit_the_terminal(self):
        for columns in (50, 64):
            status, text = on_terminal("neighbors", columns=columns, NO_COLOR="1")
            self.assertEqual(status, 0, text)
            self.assertIn("…", text)
            self.assertLessEqual(max(map(len, text.splitlines())), columns)

    def test_are_whole_on_request(self):
        status, text = on_terminal("neighbors", "--wide", columns=40, NO_COLOR="1")
        self.assertEqual((status, text), (0, beside("neighbors").stdout))

    def test_have_colors_on_a_terminal_only(self):
        self.assertIn("\x1b[1mLocal port\x1b[0m", on_terminal("neighbors")[1])
        self.assertNotIn("\x1b", on_terminal("neighbors", NO_COLOR="1")[1])
        self.assertNotIn("\x1b", on_terminal("neighbors", TERM="dumb")[1])
        self.assertIn("\x1b", on_terminal("neighbors", NO_COLOR="")[1])

    def test_of_several_devices_name_them(self):
        result = beside("neighbors", *devices("r1", "r2"))
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("  Device ", result.stdout)
        self.assertRegex(result.stdout, r"\n  r2\.example\.net +eth1 ")

    def test_are_json_for_tools(self):
        result = beside("neighbors", "--json", *devices("r1", "r2"))
        neighbors = json.loads(result.stdout)
        self.assertEqual({str(EXAMPLES / "r1"), str(EXAMPLES / "r2")}, {one["device"] for one in neighbors})
        self.assertEqual(neighbors[0]["local-port"], "eth1")
        self.assertEqual(neighbors[0]["system-name"], "r2.example.net")

    def test_of_a_device_that_fails_are_left_out(self):
        result = beside("neighbors", *devices("r1"), "--device", self.directory / "missing")
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, rf"^yfw: {self.directory}/missing: .*; it is left out\n$")
        self.assertIn("r2.example.net", result.stdout)

    def test_of_a_single_device_that_fails_are_an_error(self):
        result = beside("neighbors", "--device", self.directory / "missing")
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertRegex(result.stderr, rf"^yfw: {self.directory}/missing: ")

    def test_are_read_again_until_interrupted(self):
        terminal = Terminal("neighbors", "-w", "1", NO_COLOR="1")
        try:
            text = terminal.read_until(lambda text: text.count("\x1b[H\x1b[J") >= 2 and text.endswith("\n"))
            self.assertEqual(text.count("\x1b[H\x1b[J"), 2)
        finally:
            terminal.process.send_signal(signal.SIGINT)
            status = terminal.finish()
        self.assertEqual(status, 0)


class HostileText(WithDirectory):
    def setUp(self):
        super().setUp()
        device = self.directory / "device"
        shutil.copytree(EXAMPLES / "r1", device)
        self.device = device
        self.options = ("--device", device, "--store", self.directory / "commits.db")
        result = beside("set", "/lldp/config/system-description", HOSTILE, *self.options)
        self.assertEqual(result.returncode, 0, result.stderr)

    def assert_harmless(self, text):
        self.assertIn("evil", text)
        self.assertIsNone(re.search("[\x00-\x08\x0b-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u2069]", text), repr(text))
        self.assertFalse([line for line in text.splitlines() if line.startswith("yfw: forged")], text)

    def test_in_an_answer_is_escaped_on_a_terminal(self):
        for arguments in ((), ("--format", "xml")):
            status, text = on_terminal("get", "--config", "/lldp/config", *arguments, *self.options[0:4])
            self.assertEqual(status, 0)
            self.assert_harmless(text)

    def test_in_an_answer_is_the_same_data(self):
        arguments = ("get", "--config", "/lldp/config", *self.options)
        shown = json.loads(on_terminal(*arguments)[1])
        self.assertEqual(shown, json.loads(beside(*arguments).stdout))
        self.assertEqual(shown["openconfig-lldp:lldp"]["config"]["system-description"], HOSTILE)

    def test_in_a_commit_is_escaped_on_a_terminal(self):
        for command in (("show", "1"), ("diff",), ("show", "1", "--json"), ("diff", "--json")):
            status, text = on_terminal(*command, *self.options)
            self.assertEqual(status, 0)
            self.assert_harmless(text)

    def test_in_a_comment_is_escaped(self):
        result = beside("set", "/lldp/config/hello-timer", "20", "--comment", HOSTILE, *self.options)
        self.assertEqual(result.returncode, 0, result.stderr)
        for command in ("history", "status", "show"):
            number = ("2",) if command == "show" else ()
            self.assert_harmless(on_terminal(command, *number, *self.options)[1])

    def test_in_the_name_of_a_device_is_escaped(self):
        place = self.directory / "evil\x1b[2J"
        shutil.copytree(EXAMPLES / "r1", place)
        self.assert_harmless(on_terminal("status", "--device", place)[1])


class Progress(WithDirectory):
    def setUp(self):
        super().setUp()
        self.daemon = socket.socket(socket.AF_UNIX)  # takes questions and answers none
        self.addCleanup(self.daemon.close)
        self.daemon.bind(str(self.directory / "daemon"))
        self.daemon.listen()
        self.device = f"lldpd:{self.directory}/daemon"

    def hang_up(self):
        self.daemon.shutdown(socket.SHUT_RDWR)
        self.daemon.close()

    def test_is_shown_after_a_second_and_gone_at_the_end(self):
        terminal = Terminal("get", "/lldp", "--device", self.device, columns=200)
        try:
            text = terminal.read_until(lambda text: " s)" in text)
            self.assertRegex(text, rf"^\r\x1b\[Kreading {self.device} \([1-9] s\)")
            self.hang_up()
        finally:
            status = terminal.finish()
        self.assertNotEqual(status, 0)
        self.assertRegex(terminal.text.decode(), r"\r\x1b\[Kyfw: [^\r]*\n$")

    def test_names_the_device_of_many(self):
        terminal = Terminal("neighbors", *devices("r1"), "--device", self.device, columns=200, NO_COLOR="1")
        try:
            text = terminal.read_until(lambda text: " s)" in text)
            self.assertIn(f"reading device 2 of 2: {self.device}", text)
            self.hang_up()
        finally:
            status = terminal.finish()
        self.assertEqual(status, 1)
        rest = terminal.text.decode().split("\r\x1b[K")[-1]
        self.assertIn("it is left out\n", terminal.text.decode())
        self.assertIn("Local port", rest)

    def test_fits_the_terminal(self):
        terminal = Terminal("get", "/lldp", "--device", self.device, columns=20)
        try:
            self.assertRegex(terminal.read_until(lambda text: "…" in text), r"^\r\x1b\[Kreading .{10}…")
            self.hang_up()
        finally:
            terminal.finish()

    def test_is_not_shown_elsewhere(self):
        reader = subprocess.Popen([YFW, "get", "/lldp", "--device", self.device], stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE, text=True)
        try:
            time.sleep(1.5)
            self.hang_up()
            errors = reader.communicate(timeout=LIMIT)[1]
        finally:
            reader.kill()
            reader.wait()
        self.assertEqual(errors.count("\n"), 1, errors)
        self.assertNotRegex(errors, r"\x1b| s\)")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
