"""Tests of tools/check-names, on trees of a few files."""

import importlib.machinery
import importlib.util
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parent.parent / "check-names"
sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("check_names", str(SCRIPT))
spec = importlib.util.spec_from_loader("check_names", loader)
check_names = importlib.util.module_from_spec(spec)
loader.exec_module(check_names)

FRAMEWORK = "manageability/yang/framework/"


class Names(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.top = Path(directory.name).resolve()
        self.write(FRAMEWORK + "host/engine.cpp", '#include "yfw_map.h"\n\nint answer() { return 1; }\n')
        self.write(FRAMEWORK + "device/editor.h", "// Commits of edits.\n")
        self.write(FRAMEWORK + "coverage/samples.h", "// Values to try.\n")
        self.write("frontends/netconf/session.cpp", "// A session.\n")
        self.write("frontends/gnmi/server.cpp", "// A server.\n")

    def write(self, name, text):
        path = self.top / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")

    def assert_wrong(self, *lines):
        self.assertEqual(check_names.check(self.top), list(lines))

    def test_code_without_names_is_right(self):
        self.assert_wrong()

    def test_a_name_in_code_is_told_with_its_line(self):
        self.write(FRAMEWORK + "host/engine.cpp", '\n\nconst char *path = "/lldp/nodes";\n')
        self.assert_wrong(FRAMEWORK + 'host/engine.cpp:3: names a mapping ("/lldp/nodes")')

    def test_a_name_is_wrong_in_capitals_in_comments_and_within_words(self):
        self.write(FRAMEWORK + "device/editor.h", "// of LLDP\nint gl_lldp_count;\n")
        self.write("frontends/netconf/CMakeLists.txt", "add_dependencies(netconf oclldp)\n")
        self.assert_wrong(
            FRAMEWORK + 'device/editor.h:1: names a mapping ("LLDP")',
            FRAMEWORK + 'device/editor.h:2: names a mapping ("gl_lldp_count")',
            'frontends/netconf/CMakeLists.txt:1: names a mapping ("oclldp")',
        )

    def test_a_file_named_after_a_mapping_is_wrong(self):
        self.write(FRAMEWORK + "host/lldp_sums.cpp", "")
        self.assert_wrong(FRAMEWORK + "host/lldp_sums.cpp: is named after a mapping")

    def test_tests_and_fuzzers_may_name_the_shipped_mapping(self):
        self.write(FRAMEWORK + "host/test/engine_test.cpp", '"/lldp"\n')
        self.write("frontends/netconf/fuzz/fuzzer.cpp", '"/lldp"\n')
        self.assert_wrong()

    def test_other_folders_may_name_it(self):
        self.write(FRAMEWORK + "sources/lldpd/reader.cpp", "// lldpd\n")
        self.write("frontends/cli/main.cpp", "// lldp\n")
        self.assert_wrong()

    def test_a_folder_that_is_gone_is_told(self):
        (self.top / "frontends/netconf/session.cpp").unlink()
        (self.top / "frontends/netconf").rmdir()
        self.assert_wrong("frontends/netconf: does not exist")

    def run_program(self):
        command = [sys.executable, str(SCRIPT), "--top", str(self.top)]
        return subprocess.run(command, capture_output=True, text=True, timeout=60, check=False)

    def test_the_program_fails_on_a_name_and_only_then(self):
        self.assertEqual(self.run_program().returncode, 0)
        self.write(FRAMEWORK + "host/engine.cpp", "// LLDP\n")
        said = self.run_program()
        self.assertEqual(said.returncode, 1)
        self.assertEqual(said.stdout, FRAMEWORK + 'host/engine.cpp:1: names a mapping ("LLDP")\n')


if __name__ == "__main__":
    unittest.main()
