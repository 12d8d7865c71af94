"""Tests of tools/check-layers, on trees of two or three files."""

import importlib.machinery
import importlib.util
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parent.parent / "check-layers"
sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("check_layers", str(SCRIPT))
spec = importlib.util.spec_from_loader("check_layers", loader)
check_layers = importlib.util.module_from_spec(spec)
sys.modules["check_layers"] = check_layers
loader.exec_module(check_layers)

FRAMEWORK = "manageability/yang/framework/"
TABLE = """# a table
frontends/cli | the command line | host base

host | the framework | base
mapping/oc-lldp/src | the plug-in | mapping/oc-lldp/include <standard>
mapping/oc-lldp/include | the contract | <standard>

base | errors |
"""
PICTURE = """    frontends/cli/             the command line
      |
    host/                      the framework
    mapping/oc-lldp/src/       the plug-in
    mapping/oc-lldp/include/   the contract
      |
    base/                      errors"""


class Layers(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.top = Path(directory.name).resolve()
        self.write("tools/layers.txt", TABLE)
        self.write("README.md", f"# A title\n\n<!-- layers -->\n\n{PICTURE}\n\n<!-- /layers -->\n\nMore.\n")
        self.write(FRAMEWORK + "base/error.h", "#include <string>\n")
        self.write(FRAMEWORK + "host/engine.h", '#include "base/error.h"\n')
        self.write(FRAMEWORK + "mapping/oc-lldp/include/map.h", "#include <stdint.h>\n")

    def write(self, name, text):
        path = self.top / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def assert_wrong(self, *lines):
        self.assertEqual(check_layers.check(self.top), list(lines))

    def test_arrows_down_are_right(self):
        self.write("frontends/cli/main.cpp", '#include "host/engine.h"\n#include "frontends/cli/print.h"\n')
        self.write("frontends/cli/print.h", '#include <cstdio>\n#include "base/error.h"\n')
        self.write(FRAMEWORK + "mapping/oc-lldp/src/frame.cpp", '#include "map.h"\n#include <cstring>\n')
        self.assert_wrong()

    def test_an_arrow_up_is_named_with_its_line(self):
        self.write(FRAMEWORK + "base/error.cpp", '#include "base/error.h"\n\n#include "host/engine.h"\n')
        self.assert_wrong(FRAMEWORK + "base/error.cpp:3: base may not include host")

    def test_an_arrow_that_is_not_in_the_table_is_wrong_though_it_points_down(self):
        self.write("frontends/cli/main.cpp", '#include "map.h"\n')
        self.assert_wrong("frontends/cli/main.cpp:1: frontends/cli may not include mapping/oc-lldp/include")

    def test_the_plug_in_includes_nothing_but_its_contract_and_the_standard_library(self):
        self.write(
            FRAMEWORK + "mapping/oc-lldp/src/frame.cpp",
            '#include "map.h"\n#include "base/error.h"\n#include <libyang/libyang.h>\n#include <vector>\n',
        )
        place = FRAMEWORK + "mapping/oc-lldp/src/frame.cpp"
        self.assert_wrong(
            place + ":2: mapping/oc-lldp/src may not include base",
            place + ":3: mapping/oc-lldp/src may not include <libyang/libyang.h>",
        )

    def test_tests_and_fuzzers_may_include_anything(self):
        self.write(FRAMEWORK + "base/test/error_test.cpp", '#include "host/engine.h"\n')
        self.write("frontends/cli/fuzz/fuzzer.cpp", '#include "map.h"\n')
        self.assert_wrong()

    def test_code_without_a_layer_is_wrong(self):
        self.write("frontends/other/main.cpp", "")
        self.assert_wrong("frontends/other/main.cpp: belongs to no layer")

    def test_a_header_that_is_not_there_is_wrong(self):
        self.write("frontends/cli/main.cpp", '#include "host/gone.h"\n')
        self.assert_wrong("frontends/cli/main.cpp:1: host/gone.h does not exist")

    def test_a_table_that_allows_an_arrow_up_is_wrong(self):
        self.write("tools/layers.txt", TABLE.replace("| errors |", "| errors | host"))
        self.assert_wrong("tools/layers.txt:8: host is not below base")

    def test_a_picture_of_another_table_is_wrong(self):
        self.write("tools/layers.txt", TABLE.replace("errors", "errors and time"))
        self.assert_wrong("README.md: the picture of the layers is not what tools/check-layers --draw prints")

    def test_a_missing_picture_is_wrong(self):
        self.write("README.md", PICTURE)
        self.assert_wrong("README.md: the picture of the layers is missing")

    def run_program(self, *arguments):
        command = [sys.executable, str(SCRIPT), "--top", str(self.top), *arguments]
        return subprocess.run(command, capture_output=True, text=True, timeout=60, check=False)

    def test_the_program_draws_the_picture(self):
        self.assertEqual(self.run_program("--draw").stdout, PICTURE + "\n")

    def test_the_program_fails_on_a_wrong_arrow_and_only_then(self):
        self.assertEqual(self.run_program().returncode, 0)
        self.write(FRAMEWORK + "base/error.cpp", '#include "host/engine.h"\n')
        said = self.run_program()
        self.assertEqual(said.returncode, 1)
        self.assertEqual(said.stdout, FRAMEWORK + "base/error.cpp:1: base may not include host\n")


if __name__ == "__main__":
    unittest.main()
