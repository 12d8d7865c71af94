#!/usr/bin/env python3
"""Runs every command of the README and the manual pages as it stands.

  documented_commands_test.py YFW SOURCE [-k ...]

What needs a daemon, a laboratory or a server runs in namespaces of its own, which needs root. `./check` is not run: it
runs this test.
"""
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

YFW = pathlib.Path(sys.argv[1]).resolve()
SOURCE = pathlib.Path(sys.argv[2]).resolve()
LIMIT = 120
INSIDE = "YFW_TEST_INSIDE" in os.environ
# Commands that end when they are interrupted.
ENDLESS = re.compile(r"(yfw|run) (serve|watch)| -w$")
LIVE = re.compile(r"lldpd:|(yfw|run) lab|--lab|(yfw|run) serve")

CHANGES = "set /lldp/config/enabled true\nset /lldp/config/hello-timer 15\n"
EDIT = ('<lldp xmlns="http://openconfig.net/yang/lldp"><config><enabled>true</enabled><hello-timer>20</hello-timer>'
        "</config></lldp>\n")
# What the pages take for granted: some commits, and something to delete.
COMMITS = (("set", "/lldp/config/hello-timer", "10"), ("set", "/lldp/config/hello-timer", "20"),
           ("set", "/lldp/config/suppress-tlv-advertisement", "SYSTEM_NAME"),
           ("set", "/lldp/interfaces/interface[name=eth1]/config/enabled", "true"))


def plain(roff):
    """A line of a manual page as a reader sees it."""
    return re.sub(r"\\(-|e|&|\(aq)", lambda found: {"-": "-", "e": "\\", "&": "", "(aq": "'"}[found[1]], roff)


def manual():
    return subprocess.run([YFW, "manual"], capture_output=True, text=True, timeout=LIMIT, check=True).stdout


def commands_of_manuals():
    pages = [manual()] + [page.read_text(encoding="utf-8") for page in sorted((SOURCE / "docs/man").glob("*.[1-9]"))]
    lines = [plain(line).strip() for page in pages for line in page.splitlines() if line.startswith("  yfw ")]
    return list(dict.fromkeys(lines))


def session_of_readme():
    """Commands with the output that the README shows for them, empty where it shows none."""
    session = []
    for block in re.findall(r"(?:^    .*\n|^\n)+", (SOURCE / "README.md").read_text(encoding="utf-8"), re.M):
        lines = [line[4:] for line in block.strip("\n").splitlines()]
        in_session = False
        for line in lines:
            command = line.removeprefix("$ ")
            if command.startswith("./"):
                in_session = line != command
                session.append([re.sub(r" +# .*", "", command), []])
            elif in_session:
                session[-1][1].append(line)
    return [(command, "\n".join(output).strip("\n")) for command, output in session]


class Place:
    """A directory with the files that the commands name, and a state of its own."""

    def __init__(self, directory):
        self.directory = pathlib.Path(directory)
        os.symlink(SOURCE / "examples", self.directory / "examples")
        os.symlink(YFW, self.directory / "run")
        (self.directory / "changes.txt").write_text(CHANGES)
        (self.directory / "change.xml").write_text(EDIT)
        for number, name in enumerate(("config.xml", "oper.json")):
            example = sorted((SOURCE / "examples/r1").glob("*.xml"))[0]
            if number == 0:
                shutil.copy(example, self.directory / name)
            else:
                (self.directory / name).write_text("{}")
        (self.directory / "openconfig").mkdir()
        os.symlink(SOURCE / "manageability/yang/framework/models", self.directory / "openconfig/public")
        self.environment = {**os.environ, "HOME": directory, "XDG_STATE_HOME": str(self.directory / "state"),
                            "TERM": "dumb", "PATH": f"{YFW.parent}:{os.environ['PATH']}"}

    def make_certificates(self):
        for name in ("server", "clients"):
            subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1", "-subj", "/CN=x",
                            "-keyout", f"{name}.key", "-out", f"{name}.pem"], cwd=self.directory, check=True,
                           capture_output=True, timeout=LIMIT)

    def make_commits(self):
        for words in COMMITS:
            subprocess.run([YFW, *words], env=self.environment, check=True, capture_output=True, timeout=LIMIT)

    def run(self, command):
        process = subprocess.Popen(["bash", "-o", "pipefail", "-c", command], cwd=self.directory, env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                                   start_new_session=True)
        try:
            if ENDLESS.search(command):
                time.sleep(3)
                if process.poll() is None:
                    os.killpg(process.pid, signal.SIGINT)
            output, errors = process.communicate(timeout=LIMIT)
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            output, errors = process.communicate()
        return process.returncode, output, errors


class Documented(unittest.TestCase):
    maxDiff = None

    def place(self):
        directory = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.addCleanup(directory.cleanup)
        return Place(directory.name)

    def expect_success(self, place, command):
        status, output, errors = place.run(command)
        expected = (0, 130, -signal.SIGINT) if ENDLESS.search(command) else (0,)
        self.assertIn(status, expected, f"{command}\n{output}{errors}")
        told = re.compile("yfw: (warning: |lab: |NETCONF on |gNMI on )")
        self.assertFalse([line for line in errors.splitlines() if line.startswith("yfw: ") and not told.match(line)],
                         f"{command}\n{errors}")
        return output


@unittest.skipIf(INSIDE, "runs outside")
class WithoutADaemon(Documented):
    def test_the_readme_is_a_session_with_this_output(self):
        place = self.place()
        session = session_of_readme()
        self.assertGreater(len(session), 6)
        for command, shown in session:
            if LIVE.search(command) or command == "./check":
                continue
            with self.subTest(command):
                output = self.expect_success(place, command)
                if shown:
                    self.assertEqual(output.rstrip("\n"), shown)

    def test_the_manual_pages_have_commands_that_work(self):
        commands = [command for command in commands_of_manuals() if not LIVE.search(command)]
        self.assertGreater(len(commands), 30)
        for command in commands:
            with self.subTest(command), tempfile.TemporaryDirectory() as directory:
                place = Place(directory)
                place.make_commits()
                self.expect_success(place, command)

    def test_the_manual_page_has_every_command_and_option(self):
        page = plain(manual())
        commands = re.findall(r"^  ([a-z-]+) ", self.help().split("Subcommands:\n")[1].split("\n\n")[0], re.M)
        self.assertGreater(len(commands), 15)
        for command in commands:
            self.assertTrue(re.search(rf"\n\.SS yfw {command}[ \n]", page), command)
            for option in re.findall(r"^ +(?:-\w,)?(--[a-z-]+)", self.help(command), re.M):
                self.assertTrue(option in page.split(f".SS yfw {command}")[1], f"{command} {option}")

    def help(self, *command):
        return subprocess.run([YFW, *command, "--help"], capture_output=True, text=True, timeout=LIMIT,
                              check=True).stdout

    def test_the_manual_pages_are_well_formed(self):
        if shutil.which("groff") is None:
            self.fail("groff is not installed") if os.environ.get("CI") else self.skipTest("groff is not installed")
        for text in [manual()] + [page.read_text(encoding="utf-8") for page in (SOURCE / "docs/man").iterdir()]:
            result = subprocess.run(["groff", "-man", "-ww", "-Tutf8"], input=text, capture_output=True, text=True,
                                    timeout=LIMIT)
            self.assertEqual((result.returncode, result.stderr), (0, ""))


@unittest.skipIf(INSIDE, "runs outside")
class WithADaemon(unittest.TestCase):
    def test_the_commands_work_in_namespaces_of_their_own(self):
        missing = [name for name in ("unshare", "lldpd", "ip", "sshd", "openssl") if shutil.which(name) is None]
        if missing or os.geteuid() != 0:
            reason = f"needs root and {' '.join(missing)}"
            self.fail(reason) if os.environ.get("CI") else self.skipTest(reason)
        result = subprocess.run(["unshare", "--mount", "--net", "--pid", "--fork", "--mount-proc", "--kill-child",
                                 sys.executable, __file__, YFW, SOURCE], env={**os.environ, "YFW_TEST_INSIDE": "1"},
                                capture_output=True, text=True, timeout=480)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)


@unittest.skipUnless(INSIDE, "runs in namespaces of its own")
class Inside(Documented):
    def setUp(self):
        subprocess.run(["mount", "-t", "tmpfs", "none", "/run"], check=True)
        for directory in ("lldpd", "sshd", "yfw"):
            os.mkdir(f"/run/{directory}")
        groups = tempfile.NamedTemporaryFile("w")
        self.addCleanup(groups.close)
        groups.write(pathlib.Path("/etc/group").read_text() + "netadmin:x:60001:\nnetops:x:60002:\n")
        groups.flush()
        os.chmod(groups.name, 0o644)
        subprocess.run(["mount", "--bind", groups.name, "/etc/group"], check=True)
        subprocess.run(["ip", "link", "set", "lo", "up"], check=True)
        subprocess.run(["ip", "link", "add", "eth0", "type", "veth", "peer", "name", "eth1"], check=True)
        self.daemon = subprocess.Popen(["lldpd", "-d", "-u", "/run/lldpd.socket"], stdout=subprocess.DEVNULL,
                                       stderr=subprocess.DEVNULL)
        self.addCleanup(self.end_daemon)
        end = time.monotonic() + LIMIT
        while not os.path.exists("/run/lldpd.socket"):
            self.assertLess(time.monotonic(), end, "lldpd does not start")
            time.sleep(0.1)

    def end_daemon(self):
        self.daemon.terminate()
        self.daemon.wait(LIMIT)

    def test_the_commands_work(self):
        place = self.place()
        place.make_certificates()
        readme = [command for command, _ in session_of_readme()]
        commands = [command for command in readme + commands_of_manuals() if LIVE.search(command)]
        self.assertGreater(len(commands), 15)
        subprocess.run([YFW, "set", "/lldp/config/hello-timer", "20", "--device", "lldpd:"], env=place.environment,
                       check=True, capture_output=True, timeout=LIMIT)
        # A laboratory is there between its first and its last command.
        for command in sorted(commands, key=lambda command: ("lab up" not in command) + ("lab down" in command)):
            with self.subTest(command):
                self.expect_success(place, command)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1] + sys.argv[3:])
