#!/usr/bin/env python3
"""Runs `yfw topology` as a user does and compares its output with expected/.

  topology_command_test.py YFW EXAMPLES [-k ...]
  YFW_UPDATE_EXPECTED=1 topology_command_test.py YFW EXAMPLES     rewrites expected/
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

EXPECTED = pathlib.Path(__file__).resolve().parent / "expected"
YFW = pathlib.Path(sys.argv[1]).resolve()
EXAMPLES = pathlib.Path(sys.argv[2]).resolve()


# Keeps the user's own commits out of the tests.
STATE = tempfile.TemporaryDirectory()
ENVIRONMENT = {**os.environ, "XDG_STATE_HOME": STATE.name}


def run(*arguments, **environment):
    return subprocess.run([YFW, "topology", *arguments], capture_output=True, text=True, timeout=300,
                          env={**ENVIRONMENT, **environment})


def devices(*names):
    return [argument for name in names for argument in ("--device", EXAMPLES / name)]


class Topology(unittest.TestCase):
    maxDiff = None

    def assert_expected(self, name, result):
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        file = EXPECTED / name
        if os.environ.get("YFW_UPDATE_EXPECTED") == "1":
            file.write_text(result.stdout, encoding="utf-8")
        self.assertEqual(result.stdout, file.read_text(encoding="utf-8"))

    def assert_refused(self, result, status, words):
        self.assertEqual((result.returncode, result.stdout), (status, ""))
        self.assertRegex(result.stderr, words)
        self.assertEqual(result.stderr.count("\n"), 1, result.stderr)

    def test_the_shipped_devices_are_one_connected_network(self):
        self.assert_expected("shipped.txt", run())

    def test_the_graph_of_the_shipped_devices(self):
        self.assert_expected("shipped.dot", run("--dot"))

    def test_the_order_of_the_devices_does_not_matter(self):
        self.assert_expected("shipped.txt", run(*devices("r4", "r2", "r1", "r3", "r2")))

    def test_neighbors_that_are_not_read_are_drawn_too(self):
        self.assert_expected("r1-alone.txt", run(*devices("r1")))
        self.assert_expected("r1-alone.dot", run("--dot", *devices("r1")))

    def test_a_device_that_cannot_be_read_is_named_and_left_out(self):
        with tempfile.TemporaryDirectory() as empty:
            missing = os.path.join(empty, "missing")
            for place in (empty, missing):
                result = run("--device", place, *devices("r1"))
                self.assertEqual(result.returncode, 1)
                self.assertRegex(result.stderr, f"^yfw: {place}: .*; it is left out\n$")
                self.assertEqual(result.stdout, (EXPECTED / "r1-alone.txt").read_text(encoding="utf-8"))

    def test_nothing_is_drawn_when_no_device_can_be_read(self):
        with tempfile.TemporaryDirectory() as empty:
            missing = os.path.join(empty, "missing")
            self.assert_refused(run("--device", missing), 2, f"^yfw: {missing}: ")
            result = run("--device", empty, "--device", missing)
            self.assertEqual((result.returncode, result.stdout), (2, ""))
            self.assertRegex(result.stderr, f"^yfw: {empty}: .*\nyfw: {missing}: .*\n$")

    def test_options_that_exclude_each_other_are_refused(self):
        result = run("--dot", "--svg", "network.svg")
        self.assertEqual((result.returncode, result.stdout), (2, ""))
        self.assertRegex(result.stderr, "--(dot|svg) excludes --(svg|dot)")

    def test_the_help_has_examples(self):
        result = run("--help")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        self.assertIn("yfw topology --svg network.svg", result.stdout)

    def test_a_graph_without_graphviz_is_refused_and_the_file_stays(self):
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "network.svg")
            file.write_text("before")
            result = run("--svg", file, PATH=folder)
            self.assert_refused(result, 1, "install graphviz")
            self.assertEqual((file.read_text(), os.listdir(folder)), ("before", ["network.svg"]))

    def test_a_picture_that_cannot_be_written_is_named(self):
        if shutil.which("dot") is None:
            self.skipTest("Graphviz is not installed")
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "missing", "network.svg")
            self.assert_refused(run("--svg", file), 1, f"^yfw: {file}: cannot be written")

    def test_the_picture_shows_every_router_and_every_port(self):
        if shutil.which("dot") is None:
            self.skipTest("Graphviz is not installed")
        with tempfile.TemporaryDirectory() as folder:
            file = pathlib.Path(folder, "network.svg")
            result = run("--svg", file)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
            svg = xml.etree.ElementTree.parse(file).getroot()
        self.assertEqual(svg.tag, "{http://www.w3.org/2000/svg}svg")
        texts = sorted(text.text for text in svg.iter("{http://www.w3.org/2000/svg}text"))
        ports = 3 * ["eth1"] + 3 * ["eth2"] + 3 * ["eth3"]
        routers = [f"r{number}.example.net" for number in (1, 2, 3, 4)]
        segment = [f"r{number}.example.net eth3" for number in (1, 2, 4)]
        title = ["LLDP: 4 routers, 3 links, 1 shared segment, all connected"]
        self.assertEqual(texts, sorted(ports + routers + segment + title))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
