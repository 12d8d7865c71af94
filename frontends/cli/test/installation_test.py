#!/usr/bin/env python3
"""Installs the program below a temporary prefix and uses it there.

  installation_test.py CMAKE BUILD_DIRECTORY PACKAGING STANDARD_MODELS DOCUMENTS
"""
import contextlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import threading
import unittest

CMAKE, BUILD, PACKAGING, STANDARD_MODELS = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3]), sys.argv[4]
DOCUMENTS = pathlib.Path(sys.argv[5])
SSHD = shutil.which("sshd") or "/usr/sbin/sshd"


def run(*words, **more):
    return subprocess.run(words, capture_output=True, text=True, timeout=120, **more)


# Runs a program in a new mount namespace, where the package's directory is empty.
WITHOUT_PACKAGE = ("unshare", "--map-root-user", "--mount", "sh", "-c",
                   'mount -t tmpfs none "$0" && exec "$@"', STANDARD_MODELS)


def blocks_of(page):
    """The indented blocks of a page, each with the file that the line before it names, or None."""
    found = []
    for name, block in re.findall(r"(?:^`(\S+)`:\n\n)?((?:^    .*\n|^\n(?=    ))+)", page, re.M):
        found.append((name or None, "".join(line[4:] or "\n" for line in block.splitlines(keepends=True))))
    return found


def session_of(text):
    """The commands of a block, with the output that it shows for each, empty where it shows none."""
    parts = re.split(r"^\$ (.*)\n", text, flags=re.M)
    return list(zip(parts[1::2], parts[2::2]))


def can_hide_packages():
    return shutil.which("unshare") is not None and run(*WITHOUT_PACKAGE, "true").returncode == 0


class Installation(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.TemporaryDirectory()
        cls.prefix = pathlib.Path(cls.directory.name) / "usr"
        installed = run(CMAKE, "--install", BUILD, "--prefix", str(cls.prefix))
        if installed.returncode != 0:
            raise RuntimeError(installed.stderr)

    @classmethod
    def tearDownClass(cls):
        cls.directory.cleanup()

    @property
    def state(self):
        return {**os.environ, "XDG_STATE_HOME": self.directory.name}

    @property
    def gnmi_program(self):
        return self.prefix / "libexec/yfw/yfw-gnmi"

    def yfw(self, *words, before=()):
        return run(*before, self.prefix / "bin/yfw", *words, env=self.state)

    @contextlib.contextmanager
    def serving(self, *options):
        """A server on the socket, which ends well when it is told to."""
        command = [self.prefix / "bin/yfw", "serve", "--socket", self.path("socket"), *options]
        with subprocess.Popen(command, env=self.state, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              text=True) as server:
            limit = threading.Timer(60, server.kill)
            limit.start()
            self.addCleanup(limit.cancel)
            yield server
            server.terminate()
            self.assertEqual(server.wait(), 0)

    def path(self, name):
        return os.path.join(self.directory.name, name)

    def test_uses_what_is_installed_with_it(self):
        device = self.prefix / "share/yfw/examples/r1"
        for file in device.glob("*.xml"):
            file.write_text(file.read_text().replace("r1.example.net", "installed.example.net"))
        answer = self.yfw("get", "/lldp/config/system-name")
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        self.assertEqual(json.loads(answer.stdout)["openconfig-lldp:lldp"]["config"]["system-name"],
                         "installed.example.net")

    def test_tells_a_framework_where_the_contract_and_the_plug_in_are(self):
        environment = dict(os.environ, PKG_CONFIG_PATH=str(self.prefix / "lib/pkgconfig"))
        flags = run("pkg-config", "--cflags", "yfw-plugin", env=environment)
        self.assertEqual((flags.returncode, flags.stderr), (0, ""))
        plugins = run("pkg-config", "--variable=plugindir", "yfw-plugin", env=environment).stdout.strip()
        self.assertTrue((pathlib.Path(plugins) / "liboclldp.so").is_file())
        source = self.prefix / "contract.c"
        source.write_text("#include <yfw_map.h>\n#include <oclldp_callbacks.h>\nyfw_map_register_function registers;\n")
        compiled = run("cc", "-std=c11", "-Wall", "-Werror", *flags.stdout.split(), "-fsyntax-only", str(source))
        self.assertEqual((compiled.returncode, compiled.stderr), (0, ""))

    def test_builds_and_runs_the_mapping_that_the_documentation_writes(self):
        page = (DOCUMENTS / "writing-a-mapping.md").read_text()
        environment = {**self.state, "PKG_CONFIG_PATH": str(self.prefix / "lib/pkgconfig"),
                       "PATH": f"{self.prefix}/bin:{os.environ['PATH']}"}
        commands = 0
        with tempfile.TemporaryDirectory() as directory:
            for name, block in blocks_of(page):
                if name:
                    (pathlib.Path(directory) / name).write_text(block)
                for command, shown in session_of(block):
                    with self.subTest(command):
                        done = run("bash", "-o", "pipefail", "-c", command, cwd=directory, env=environment)
                        self.assertEqual((done.returncode, done.stderr), (0, ""), done.stdout)
                        self.assertEqual(done.stdout.strip("\n"), shown.strip("\n"))
                    commands += 1
        self.assertEqual(commands, 7)

    def test_uses_no_models_from_elsewhere(self):
        module = self.prefix / "share/yfw/models/openconfig-lldp.yang"
        text = module.read_text()
        module.write_text("nothing")
        self.addCleanup(module.write_text, text)
        answer = self.yfw("get", "/lldp/config")
        self.assertNotEqual(answer.returncode, 0)
        self.assertIn(str(module), answer.stderr)

    def test_serves_with_the_modules_of_packages(self):
        with open(self.path("rules.xml"), "w") as rules:
            rules.write('<nacm xmlns="urn:ietf:params:xml:ns:yang:ietf-netconf-acm"/>')
        with self.serving("--nacm", rules.name) as server:
            self.assertEqual(server.stderr.readline(), f"yfw: NETCONF on {self.path('socket')}\n")

    def test_serves_gnmi_with_the_program_that_has_it(self):
        if not self.gnmi_program.exists():
            self.skipTest("built without gNMI")
        with self.serving("--gnmi", "--insecure") as server:
            self.assertRegex(server.stdout.readline(), r"^gNMI on 127\.0\.0\.1:\d+, in plaintext\n$")
            self.assertEqual(os.readlink(f"/proc/{server.pid}/exe"), str(self.gnmi_program))

    def test_names_the_program_that_serves_gnmi_where_it_is_missing(self):
        aside = self.gnmi_program.with_suffix(".aside")
        if self.gnmi_program.exists():
            self.gnmi_program.rename(aside)
            self.addCleanup(aside.rename, self.gnmi_program)
        answer = self.yfw("serve", "--socket", self.path("socket"), "--gnmi")
        self.assertEqual(answer.returncode, 2)
        self.assertEqual(answer.stderr, "yfw: --gnmi: cannot run the program that serves gNMI, "
                                        f"{self.gnmi_program}: No such file or directory\n")

    @unittest.skipUnless(can_hide_packages(), "cannot create mount namespaces here")
    def test_names_the_package_whose_modules_are_missing(self):
        answer = self.yfw("serve", "--socket", self.path("socket"), before=WITHOUT_PACKAGE)
        self.assertEqual(answer.returncode, 2)
        self.assertEqual(answer.stderr,
                         "yfw: ietf-netconf@2011-06-01.yang: no such YANG module in "
                         f"{self.prefix}/share/yfw/models, {STANDARD_MODELS}; "
                         "the Debian package libyuma-base provides it\n")

    def test_uses_no_plugin_from_elsewhere(self):
        plugin = self.prefix / "lib/yfw/liboclldp.so"
        aside = plugin.with_suffix(".aside")
        plugin.rename(aside)
        self.addCleanup(aside.rename, plugin)
        answer = self.yfw("get", "/lldp/config")
        self.assertNotEqual(answer.returncode, 0)
        self.assertIn(str(plugin), answer.stderr)

    def test_uses_no_description_of_the_plugin_from_elsewhere(self):
        description = self.prefix / "lib/yfw/liboclldp.json"
        aside = description.with_suffix(".aside")
        description.rename(aside)
        self.addCleanup(aside.rename, description)
        answer = self.yfw("get", "/lldp/config")
        self.assertNotEqual(answer.returncode, 0)
        self.assertIn(str(description), answer.stderr)

    def test_answers_with_the_plugin_beside_it_too(self):
        with open(self.path("nothing.json"), "w") as native:
            native.write("{}")
        answer = self.yfw("get", "/lldp/state/enabled", "--native", native.name)
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))
        self.assertEqual(json.loads(answer.stdout), {"openconfig-lldp:lldp": {"state": {"enabled": False}}})

    def test_uses_no_plugin_beside_it_from_elsewhere(self):
        for name in ("libocextra.so", "libocextra.json"):
            with self.subTest(name):
                file = self.prefix / "lib/yfw" / name
                aside = file.with_suffix(".aside")
                file.rename(aside)
                try:
                    answer = self.yfw("get", "/lldp/config")
                finally:
                    aside.rename(file)
                self.assertNotEqual(answer.returncode, 0)
                self.assertIn(str(file), answer.stderr)

    def test_answers_with_a_plugin_that_is_installed_next_to_the_others(self):
        description = json.loads((self.prefix / "lib/yfw/libocextra.json").read_text())
        description["native-modules"].append("no-such-module")
        another = self.prefix / "lib/yfw/another.json"
        another.write_text(json.dumps(description))
        self.addCleanup(another.unlink)
        answer = self.yfw("get", "/lldp/config")
        self.assertEqual(answer.returncode, 2)
        self.assertIn("no-such-module", answer.stderr)

    def test_loads_a_plugin_that_is_named_by_itself(self):
        with open(self.path("nothing.json"), "w") as native:
            native.write("{}")
        answer = self.yfw("get", "/lldp/state/enabled", "--native", native.name, "--plugin",
                          self.prefix / "lib/yfw/liboclldp.so")
        self.assertEqual((answer.returncode, answer.stderr, answer.stdout.strip()), (0, "", "{}"))

    def test_refuses_a_directory_without_plugins(self):
        answer = self.yfw("get", "/lldp/config", "--plugin", self.prefix / "share")
        self.assertEqual(answer.returncode, 2)
        self.assertEqual(answer.stderr, f"yfw: {self.prefix}/share: no mapping plug-in here; expected a description, "
                                        "*.json, of at least one\n")

    def test_takes_the_plugin_by_its_description_too(self):
        answer = self.yfw("get", "/lldp/config/enabled", "--plugin", self.prefix / "lib/yfw/liboclldp.json")
        self.assertEqual((answer.returncode, answer.stderr), (0, ""))

    @unittest.skipUnless(os.path.exists(SSHD) or "CI" in os.environ, "sshd is not installed")
    def test_has_a_snippet_that_sshd_takes(self):
        key = pathlib.Path(self.directory.name) / "host_key"
        run("ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", str(key))
        config = pathlib.Path(self.directory.name) / "sshd_config"
        snippet = (self.prefix / "share/yfw/sshd-yfw-netconf.conf").read_text()
        config.write_text(f"HostKey {key}\n{snippet}")
        if os.geteuid() == 0:
            os.makedirs("/run/sshd", mode=0o755, exist_ok=True)  # sshd requires it; its service makes it
        checked = run(SSHD, "-T", "-f", str(config))
        self.assertEqual((checked.returncode, checked.stderr), (0, ""))
        self.assertIn("subsystem netconf /usr/bin/yfw netconf-stdio", checked.stdout)
        self.assertIn("port 830", checked.stdout)

    def test_has_a_unit_whose_command_the_program_takes(self):
        unit = (self.prefix / "lib/systemd/system/yfw-netconf.service").read_text()
        command = next(line for line in unit.splitlines() if line.startswith("ExecStart=")).split("=", 1)[1].split()
        self.assertEqual(command[:2], ["/usr/bin/yfw", "serve"])
        options = [word for word in command[2:] if word.startswith("--")]
        known = self.yfw("serve", "--help").stdout
        for option in options:
            self.assertIn(option, known)

    def test_has_a_unit_that_starts_a_crashed_server_again_however_often_it_crashes(self):
        unit = (self.prefix / "lib/systemd/system/yfw-netconf.service").read_text().splitlines()
        self.assertIn("Restart=on-failure", unit)
        self.assertIn("StartLimitIntervalSec=0", unit)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
