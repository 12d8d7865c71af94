#!/usr/bin/env python3
"""Builds the example framework with a C and a C++ compiler, and compares its answer with the program's.

  framework_test.py SOURCES HEADERS PLUGIN YFW DEVICE
  framework_test.py --answers FRAMEWORKS-FILE PROGRAMS-FILE
"""
import collections
import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree

# The program also reads the device's configuration, which the framework is not given.
CONFIGURED = [("/lldp/state/enabled", "true")]
WARNINGS = "-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror".split()


def is_identity(path):
    return "/capability/" in path and path.endswith("/name")


def leaves(text):
    """The paths and values of all leaves; identities without their module."""
    found = collections.Counter()

    def collect(element, path):
        path += "/" + element.tag.split("}")[-1]
        if len(element) == 0:
            found[path, element.text.rsplit(":", 1)[-1] if is_identity(path) else element.text] += 1
        for child in element:
            collect(child, path)

    collect(xml.etree.ElementTree.fromstring(text), "")
    return found


def differences(framework, program):
    """What only the framework answers, and what only the program answers."""
    ours, theirs = leaves(framework), leaves(program)
    return sorted((ours - theirs).elements()), sorted((theirs - ours).elements())


class Framework(unittest.TestCase):
    def answer_with(self, *compiler):
        with tempfile.TemporaryDirectory() as directory:
            built = pathlib.Path(directory) / "framework"
            subprocess.run([*compiler, *WARNINGS, f"-I{HEADERS}", "-rdynamic", "-o", built,
                            *sorted(SOURCES.glob("*.c")), "-ldl"], check=True, timeout=120)
            return subprocess.run([built, PLUGIN, DEVICE / "oper.xml"], check=True, capture_output=True, text=True,
                                  timeout=60)

    def test_answers_as_the_program_does(self):
        program = subprocess.run([YFW, "get", "/lldp", "--state", "--format", "xml", "--device", DEVICE, "--plugin", PLUGIN], check=True,
                                 capture_output=True, text=True, timeout=60).stdout
        for compiler in (("cc", "-std=c11"), ("c++", "-std=c++20", "-x", "c++")):
            with self.subTest(compiler[0]):
                answer = self.answer_with(*compiler)
                self.assertEqual(answer.stderr, "")
                self.assertEqual(differences(answer.stdout, program), ([], CONFIGURED))


if __name__ == "__main__":
    if sys.argv[1] == "--answers":
        found = differences(*(pathlib.Path(name).read_text() for name in sys.argv[2:]))
        sys.exit(0 if found == ([], CONFIGURED) else f"the answers differ: {found}")
    SOURCES, HEADERS, PLUGIN, YFW, DEVICE = map(pathlib.Path, sys.argv[1:])
    unittest.main(argv=sys.argv[:1])
