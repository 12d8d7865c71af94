#!/usr/bin/env python3
"""Completes command lines, as the program answers them and with the scripts for bash and zsh.

  completion_test.py YFW EXAMPLES COMPLETIONS [-k ...]
"""
import os
import pathlib
import pty
import re
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

YFW = pathlib.Path(sys.argv[1]).resolve()
EXAMPLES = pathlib.Path(sys.argv[2]).resolve()
SCRIPTS = pathlib.Path(sys.argv[3]).resolve()
LIMIT = 60
STATE = tempfile.TemporaryDirectory()
ENVIRONMENT = {**os.environ, "XDG_STATE_HOME": STATE.name, "HOME": STATE.name, "TERM": "dumb", "LC_ALL": "C.UTF-8",
               "PATH": f"{YFW.parent}:{os.environ['PATH']}"}
INTERFACE = "/lldp/interfaces/interface"


def complete(*words):
    result = subprocess.run([YFW, "complete", "--", "yfw", *words], capture_output=True, text=True, timeout=LIMIT,
                            env=ENVIRONMENT, check=True)
    return result.stdout.splitlines()


def insert(line, breaks=" \t\n\"'><=;|&(:"):
    """What bash is told to insert for the word that it completes."""
    result = subprocess.run([YFW, "complete", "--line", line, "--breaks", breaks], capture_output=True, text=True,
                            timeout=LIMIT, env=ENVIRONMENT, check=True)
    return result.stdout.splitlines()


class Words(unittest.TestCase):
    def test_are_commands(self):
        self.assertEqual(complete("nei"), ["neighbors"])
        self.assertIn("topology", complete(""))
        self.assertNotIn("complete", complete(""))
        self.assertEqual(complete("lab", "s"), ["status"])

    def test_are_options(self):
        self.assertEqual(complete("get", "--app"), ["--applied"])
        self.assertIn("--device", complete("get", "/lldp", "--"))
        self.assertNotIn("--applied", complete("set", "--"))

    def test_are_values_of_options(self):
        self.assertEqual(complete("get", "--format", "x"), ["xml"])
        self.assertEqual(complete("edit", "--operation", "re"), ["replace", "remove"])
        self.assertEqual(complete("get", "--device", ""), [":files", "lldpd:"])
        self.assertEqual(complete("edit", ""), [":files"])

    def test_are_nodes_of_the_model(self):
        self.assertEqual(complete("get", ""), ["/lldp/"])
        self.assertEqual(complete("get", "/lldp/c"), ["/lldp/config/"])
        self.assertEqual(complete("get", "/lldp/config/hello"), ["/lldp/config/hello-timer"])
        self.assertEqual(complete("get", f"{INTERFACE}"), [f"{INTERFACE}/", f"{INTERFACE}[name="])
        self.assertEqual(complete("get", "/lldp", f"{INTERFACE}[name=eth1]/st"), [f"{INTERFACE}[name=eth1]/state/"])
        self.assertEqual(complete("get", "/lldp/*/hello"), ["/lldp/*/hello-timer"])

    def test_are_configuration_in_edits(self):
        self.assertEqual(complete("set", "/lldp/s"), [])
        self.assertEqual(complete("delete", "/lldp/config/hello-timer", f"{INTERFACE}[name=eth1]/"),
                         [f"{INTERFACE}[name=eth1]/config/"])
        self.assertEqual(complete("commit", "--", "set", "/lldp/config/hello-timer", "30", "del"), ["delete"])
        self.assertEqual(complete("commit", "--", "delete", "/lldp/config/hello"), ["/lldp/config/hello-timer"])

    def test_are_values_of_leaves(self):
        self.assertEqual(complete("set", "/lldp/config/enabled", ""), ["true", "false"])
        self.assertIn("SYSTEM_NAME", complete("set", "/lldp/config/suppress-tlv-advertisement", "SYSTEM"))
        self.assertEqual(complete("set", "/lldp/config/system-name", ""), [])

    def test_are_keys(self):
        self.assertEqual(complete("get", f"{INTERFACE}["), [f"{INTERFACE}[name="])
        self.assertEqual(complete("get", f"{INTERFACE}[name=eth"),
                         [f"{INTERFACE}[name=eth{number}]" for number in (1, 2, 3)])
        self.assertEqual(complete("get", f"{INTERFACE}[name='eth3"), [f"{INTERFACE}[name='eth3']"])

    def test_are_keys_of_the_device(self):
        neighbors = f"{INTERFACE}[name=eth1]/neighbors/neighbor[id="
        self.assertEqual(complete("get", neighbors), [f"{neighbors}r2.example.net#eth1]"])
        self.assertEqual(complete("get", "--device", str(EXAMPLES / "r2"), neighbors),
                         [f"{neighbors}r1.example.net#eth1]"])

    def test_are_none_where_nothing_fits(self):
        for words in (["frobnicate", ""], ["get", "/lldp/nothing/"], ["get", "/lldp[[["], ["show", ""],
                      ["get", "--device", "/nowhere", f"{INTERFACE}[name="]):
            self.assertEqual(complete(*words), [], words)


class LinesOfBash(unittest.TestCase):
    def test_get_what_follows_the_last_break(self):
        self.assertEqual(insert(f"yfw get {INTERFACE}[name=eth1"), ["eth1]"])
        self.assertEqual(insert("yfw get /lldp/conf"), ["/lldp/config/"])
        self.assertEqual(insert("yfw get --device lldpd:/x /lldp/conf"), ["/lldp/config/"])

    def test_get_the_whole_text_in_quotes(self):
        self.assertEqual(insert(f"yfw get \"{INTERFACE}[name='eth1"), [f"{INTERFACE}[name='eth1']"])
        self.assertEqual(insert(f"yfw get '{INTERFACE}[name=eth1"), [f"{INTERFACE}[name=eth1]"])

    def test_get_their_special_characters_escaped(self):
        self.assertEqual(insert(f"yfw get {INTERFACE}[name=eth1]/neighbors/neighbor[id="),
                         ["r2.example.net\\#eth1]"])


class Shell:
    """A shell on a terminal, as somebody types into it."""

    def __init__(self, *command, directory):
        self.process, self.terminal = pty.fork()
        if self.process == 0:
            os.chdir(directory)
            os.execvpe(command[0], command, ENVIRONMENT)
        self.text = ""

    def type(self, text):
        os.write(self.terminal, text.encode())

    def expect(self, pattern):
        end = time.monotonic() + LIMIT
        while time.monotonic() < end:
            if re.search(pattern, self.text):
                return
            if select.select([self.terminal], [], [], 0.1)[0]:
                try:
                    self.text += os.read(self.terminal, 65536).decode(errors="replace").replace("\a", "")
                except OSError:
                    break
        raise AssertionError(f"no {pattern!r} in {self.text!r}")

    def end(self):
        os.kill(self.process, 9)
        os.waitpid(self.process, 0)
        os.close(self.terminal)


class Typing(unittest.TestCase):
    def shell(self, name, *command):
        if shutil.which(name) is None:
            if os.environ.get("CI"):
                self.fail(f"{name} is not installed")
            self.skipTest(f"{name} is not installed")
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        (pathlib.Path(directory.name) / "changes.txt").write_text("")
        shell = Shell(*command, directory=directory.name)
        self.addCleanup(shell.end)
        return shell

    def expect_completions(self, shell):
        for typed, whole in (("yfw neigh", "neighbors"), ("yfw get /lldp/conf", "/lldp/config/"),
                             (f"yfw get {INTERFACE}[name=eth1]/conf", f"{INTERFACE}[name=eth1]/config/"),
                             ("yfw topology --do", "--dot"), ("yfw commit -f chan", "changes.txt")):
            shell.type(f"echo {'x' * 3}; {typed}\t")
            shell.text = ""
            shell.expect(re.escape(whole[-8:]))
            shell.type("\x15echo y$((40+2))\n")
            shell.expect("y42")

    def test_in_bash_is_completed(self):
        shell = self.shell("bash", "bash", "--norc", "--noprofile", "-i")
        shell.type(f"PS1='> '; bind 'set enable-bracketed-paste off'; source {SCRIPTS}/yfw.bash; echo read$((1+1))\n")
        shell.expect("read2")
        self.expect_completions(shell)
        shell.type(f"yfw get {INTERFACE}[name=eth3\t/state\t")
        shell.expect(re.escape("eth3]") + ".*/state/")

    def test_in_zsh_is_completed(self):
        shell = self.shell("zsh", "zsh", "-f", "-i")
        shell.type(f"PS1='> '; unsetopt zle_bracketed_paste; fpath=({SCRIPTS} $fpath); autoload -U compinit; "
                   "compinit -u -D; echo read$((1+1))\n")
        shell.expect("read2")
        self.expect_completions(shell)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[4:])
