"""Tests of from-lldpcli.py on files, run as a user does."""

import contextlib
import importlib.util
import io
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import types
import unittest

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent
PROGRAM = EXAMPLES / "from-lldpcli.py"
RECORDINGS = EXAMPLES / "recordings"
ROUTERS = ["r1", "r2", "r3", "r4"]


sys.dont_write_bytecode = True
source = importlib.util.spec_from_file_location("from_lldpcli", PROGRAM)
converter = importlib.util.module_from_spec(source)
source.loader.exec_module(converter)


def run(*arguments):
    """Runs the program's main and returns what it printed and its exit status."""
    stdout, stderr = io.StringIO(), io.StringIO()
    with contextlib.redirect_stdout(stdout), contextlib.redirect_stderr(stderr):
        status = converter.main([str(argument) for argument in arguments])
    return types.SimpleNamespace(returncode=status, stdout=stdout.getvalue(), stderr=stderr.getvalue())


class Lab:
    """A copy of r1's recordings for a test to change, and the device generated from it."""

    def __init__(self, directory):
        self.recordings = pathlib.Path(directory) / "recordings"
        self.output = pathlib.Path(directory) / "device"
        self.recordings.mkdir()
        for path in RECORDINGS.glob("r1-*.json"):
            shutil.copy(path, self.recordings)

    def path(self, what):
        return self.recordings / f"r1-{what}.json"

    def change(self, what, edit):
        parsed = json.loads(self.path(what).read_text(encoding="utf-8"))
        edit(parsed)
        self.path(what).write_text(json.dumps(parsed), encoding="utf-8")

    def convert(self):
        return run("--recordings", self.recordings, "--output", self.output, "r1")

    def read(self, name):
        return (self.output / name).read_text(encoding="utf-8")


def neighbor(index=0):
    """An accessor for a neighbor of a parsed neighbors file."""
    return lambda parsed: parsed["lldp"][0]["interface"][index]


def values(xml, name):
    return re.findall(f"<{name}>([^<]*)</{name}>", xml)


class FromLldpcli(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.lab = Lab(directory.name)

    def changed_device(self, what, edit, name):
        """The text of one file of the device generated from a changed recording."""
        self.lab.change(what, edit)
        done = self.lab.convert()
        self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)
        return self.lab.read(name)

    def test_the_shipped_devices_are_what_the_recordings_give(self):
        for router in ROUTERS:
            for name in ("config.xml", "oper.xml"):
                with self.subTest(router=router, file=name), tempfile.TemporaryDirectory() as output:
                    done = run("--output", output, router)
                    self.assertEqual(done.returncode, 0, done.stderr)
                    made = (pathlib.Path(output) / name).read_bytes()
                    self.assertEqual(made, (EXAMPLES / router / name).read_bytes())

    def test_help_shows_an_example_and_how_to_record(self):
        done = subprocess.run([sys.executable, PROGRAM, "--help"], capture_output=True, text=True, check=False)
        self.assertEqual(done.returncode, 0)
        self.assertIn("examples/from-lldpcli.py r1", done.stdout)
        self.assertIn("lldpcli -f json0 show neighbors details", done.stdout)

    def test_an_age_is_written_in_seconds(self):
        for words, seconds in [
            ("0 day, 00:00:31", "31"), ("1 day, 01:02:03", "90123"), ("2 days, 00:00:00", "172800"),
            ("0 day, 23:59:59", "86399"),
        ]:
            with self.subTest(words=words):
                oper = self.changed_device("neighbors", lambda p: neighbor()(p).update(age=words), "oper.xml")
                self.assertEqual(values(oper, "age")[0], seconds)

    def test_capabilities_are_written_as_letters_and_as_bits(self):
        for recorded, letters, bits in [
            ([("Other", True)], ["O", "O"], 0x00010001),
            ([("Docsis", True), ("Repeater", False)], ["P,C", "C"], 0x00420040),
            ([("Router", True), ("Bridge", True)], ["B,R", "B,R"], 0x00140014),
            ([("Tel", False), ("Wlan", False), ("Station", False)], ["W,T,S", None], 0x00A80000),
            ([], [None, None], None),
        ]:
            with self.subTest(recorded=recorded):
                listed = [{"type": word, "enabled": enabled} for word, enabled in recorded]

                def edit(parsed):
                    parsed["lldp"][0]["interface"] = [neighbor()(parsed)]
                    neighbor()(parsed)["chassis"][0]["capability"] = listed

                oper = self.changed_device("neighbors", edit, "oper.xml")
                leaves = [values(oper, f"{kind}-capabilities") for kind in ("system", "enabled")]
                self.assertEqual([next(iter(leaf), None) for leaf in leaves], letters)
                self.assertEqual(values(oper, "combined-capabilities"), [] if bits is None else [str(bits)])

    def test_subtypes_are_written_as_their_numbers(self):
        for member, word, leaf, subtype in [
            ("chassis", "ifalias", "chassis-id-sub-type", "2"), ("chassis", "mac", "chassis-id-sub-type", "4"),
            ("chassis", "ip", "chassis-id-sub-type", "5"), ("chassis", "ifname", "chassis-id-sub-type", "6"),
            ("chassis", "local", "chassis-id-sub-type", "7"),
            ("chassis", "unhandled", "chassis-id-sub-type", None),
            ("port", "ifalias", "port-id-sub-type", "1"), ("port", "mac", "port-id-sub-type", "3"),
            ("port", "ip", "port-id-sub-type", "4"), ("port", "ifname", "port-id-sub-type", "5"),
            ("port", "local", "port-id-sub-type", "7"), ("port", "unhandled", "port-id-sub-type", None),
        ]:
            with self.subTest(member=member, word=word):
                def edit(parsed):
                    parsed["lldp"][0]["interface"] = [neighbor()(parsed)]
                    neighbor()(parsed)[member][0]["id"][0]["type"] = word

                oper = self.changed_device("neighbors", edit, "oper.xml")
                mib = oper[oper.index("<mib>"):]
                self.assertEqual(values(mib, leaf), [] if subtype is None else [subtype])

    def test_a_status_says_what_an_interface_sends_and_takes_in(self):
        for status, switches, disables in [
            ("RX and TX", ["1", "1"], []), ("TX only", ["1", "0"], ["receive"]),
            ("RX only", ["0", "1"], ["transmit"]), ("disabled", ["0", "0"], ["transmit", "receive"]),
        ]:
            with self.subTest(status=status):
                def edit(parsed):
                    parsed["lldp"][0]["interface"][0]["status"][0]["value"] = status

                oper = self.changed_device("interfaces", edit, "oper.xml")
                self.assertEqual([values(oper, f"{way}-enabled")[0] for way in ("tx", "rx")], switches)
                config = self.lab.read("config.xml")
                disabled = re.findall(r"<(transmit|receive)>\s*<disable>true</disable>", config)
                self.assertEqual(disabled, disables)

    def test_an_interval_is_configured_only_where_the_native_timer_holds_it(self):
        for interval, timers in [
            ("2", []), ("4", []), ("5", ["5"]), ("30", ["30"]), ("65534", ["65534"]), ("65535", []),
        ]:
            with self.subTest(interval=interval):
                def edit(parsed):
                    parsed["configuration"][0]["config"][0]["tx-delay"][0]["value"] = interval

                config = self.changed_device("configuration", edit, "config.xml")
                self.assertEqual(values(config, "timer"), timers)

    def test_an_interval_that_is_left_out_is_told(self):
        self.assertRegex(self.lab.convert().stderr, "r1-configuration.json#.*/tx-delay: 2 s is not a valid native timer")

    def test_a_name_that_was_not_set_is_not_configured(self):
        def edit(parsed):
            parsed["configuration"][0]["config"][0]["hostname"][0]["value"] = "(none)"

        self.assertNotIn("system-name", self.changed_device("configuration", edit, "config.xml"))

    def test_a_neighbor_without_a_name_is_shown_as_disabled(self):
        def edit(parsed):
            del neighbor()(parsed)["chassis"][0]["name"]

        oper = self.changed_device("neighbors", edit, "oper.xml")
        self.assertEqual(values(oper, "device-id")[:2], ["[DISABLED]"] * 2)

    def test_a_device_heard_twice_on_an_interface_is_one_entry_with_two_announcements(self):
        def edit(parsed):
            neighbor(1)(parsed)["name"] = "eth1"
            neighbor(1)(parsed)["chassis"][0]["name"][0]["value"] = "r2.example.net"
            neighbor(1)(parsed)["port"][0]["id"][0]["value"] = "eth7"
            parsed["lldp"][0]["interface"] = parsed["lldp"][0]["interface"][:2]

        oper = self.changed_device("neighbors", edit, "oper.xml")
        self.assertEqual(len(re.findall("<device-id>r2.example.net</device-id>\\s*<lldp-neighbor>", oper)), 1)
        self.assertEqual(values(oper, "port-id-detail"), ["eth1", "eth7"])

    def test_a_neighbor_heard_through_another_protocol_is_left_out_and_told(self):
        self.lab.change("neighbors", lambda p: neighbor()(p).update(via="CDPv2"))
        done = self.lab.convert()
        self.assertIn("r1-neighbors.json#/lldp[0]/interface[0]: heard by CDPv2, left out", done.stderr)
        heard_on = values(self.lab.read("oper.xml"), "receiving-interface-name")
        self.assertEqual(heard_on, ["eth2", "eth3", "eth3"])

    def test_a_router_without_neighbors_has_no_neighbors(self):
        oper = self.changed_device("neighbors", lambda p: p["lldp"][0].pop("interface"), "oper.xml")
        self.assertNotIn("<neighbors>", oper)
        self.assertEqual(len(values(oper, "rx-enabled")), 3)

    def test_a_counter_that_was_not_recorded_is_absent(self):
        def edit(parsed):
            for interface in parsed["lldp"][0]["interface"]:
                del interface["rx_discarded_cnt"]

        self.assertNotIn("discarded-packets", self.changed_device("statistics", edit, "oper.xml"))

    def test_the_counters_of_the_node_are_the_sums_of_the_interfaces(self):
        def edit(parsed):
            for index, interface in enumerate(parsed["lldp"][0]["interface"]):
                interface["rx"][0]["rx"] = str(10**index)
                interface["ageout_cnt"][0]["ageout_cnt"] = str(2 * 10**index)

        oper = self.changed_device("statistics", edit, "oper.xml")
        self.assertEqual(values(oper, "received-packets"), ["1", "10", "100", "111"])
        self.assertEqual(values(oper, "aged-out-entries"), ["222"])

    def test_a_tlv_is_written_as_text_where_its_octets_are_text(self):
        for octets, text, told in [
            ("3C,26,3E", ["&lt;&amp;&gt;"], False), ("C3,A9", ["\u00e9"], False), (None, [], False),
            ("00,01", [], True), ("FF", [], True),
        ]:
            with self.subTest(octets=octets):
                tlv = {"oui": "00,80,C2", "subtype": "9", "len": str(len(octets.split(",")) if octets else 0)}
                if octets:
                    tlv["value"] = octets

                def edit(parsed):
                    parsed["lldp"][0]["interface"] = [neighbor()(parsed)]
                    neighbor()(parsed)["unknown-tlvs"] = [{"unknown-tlv": [tlv]}]

                self.lab.change("neighbors", edit)
                done = self.lab.convert()
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertEqual("the octets are not text" in done.stderr, told)
                oper = self.lab.read("oper.xml")
                self.assertEqual((values(oper, "oui"), values(oper, "tlv-value")), (["00:80:c2"], text))

    def test_a_bad_recording_is_refused_with_its_file_and_place(self):
        at = r"/lldp\[0\]/interface\[0\]"
        tlv = at + r"/unknown-tlvs\[0\]/unknown-tlv\[0\]"

        def first_tlv(parsed):
            return neighbor()(parsed)["unknown-tlvs"][0]["unknown-tlv"][0]

        for what, edit, message in [
            ("neighbors", lambda p: neighbor()(p).update(age="31 s"), at + "/age: '31 s' is not an age"),
            ("neighbors", lambda p: neighbor()(p).pop("age"), at + ": no text named age"),
            ("neighbors", lambda p: neighbor()(p).pop("port"), at + ": no port"),
            ("neighbors", lambda p: neighbor()(p)["port"][0].update(ttl=[{"value": "-8"}]),
             "/ttl: '-8' is not a number"),
            ("neighbors", lambda p: neighbor()(p)["chassis"][0].update(descr=[{"value": "a\u0001"}]),
             r"/descr\[0\]/value: holds a character that XML does not allow"),
            ("neighbors", lambda p: neighbor()(p)["chassis"][0]["id"][0].update(type="eui"),
             at + r"/chassis\[0\]/id\[0\]/type: unknown word 'eui'"),
            ("neighbors", lambda p: neighbor()(p)["chassis"][0]["capability"][0].update(type="Toaster"),
             r"/capability\[0\]/type: unknown word 'Toaster'"),
            ("neighbors", lambda p: neighbor()(p)["chassis"][0]["capability"][0].update(enabled="yes"),
             r"/capability\[0\]: no true or false named enabled"),
            ("neighbors", lambda p: neighbor()(p)["chassis"][0]["mgmt-ip"][1].update(value="2001:db8:::2"),
             r"/mgmt-ip\[1\]/value: '2001:db8:::2' is not an address"),
            ("neighbors", lambda p: first_tlv(p).update(oui="00,80,xy"),
             tlv + "/oui: '00,80,xy' is not a list of octets"),
            ("neighbors", lambda p: first_tlv(p).update(len="4"), tlv + "/value: 3 octets where len says 4"),
            ("neighbors", lambda p: p.update(lldp="none"), "/lldp: expected a list"),
            ("neighbors", lambda p: p.update(lldp=["none"]), r"/lldp\[0\]: expected an object"),
            ("interfaces", lambda p: p["lldp"][0]["interface"][0]["status"][0].update(value="asleep"),
             at + r"/status\[0\]/value: unknown word 'asleep'"),
            ("statistics", lambda p: p["lldp"][0]["interface"][0]["tx"][0].update(tx="many"),
             at + "/tx: 'many' is not a number"),
            ("chassis", lambda p: p.pop("local-chassis"), ": no local-chassis"),
            ("configuration", lambda p: p["configuration"][0].pop("config"), r"/configuration\[0\]: no config"),
        ]:
            with self.subTest(what=what, message=message), tempfile.TemporaryDirectory() as directory:
                lab = Lab(directory)
                lab.change(what, edit)
                self.refused(lab, f"r1-{what}.json#.*{message}")

    def test_a_refused_recording_is_the_exit_status_of_the_program(self):
        done = subprocess.run([sys.executable, PROGRAM, "--recordings", self.lab.recordings, "r9"],
                              capture_output=True, text=True, check=False)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertRegex(done.stderr, "^from-lldpcli.py: .*r9-chassis.json: No such file or directory\n$")

    def test_a_file_that_cannot_be_read_is_refused_with_its_name(self):
        for spoil, message in [
            (lambda path: path.unlink(), "r1-chassis.json: No such file or directory"),
            (lambda path: path.write_text('{\n  "lldp": ]', encoding="utf-8"),
             "r1-chassis.json:2:11: Expecting value"),
            (lambda path: path.write_bytes(b'"\xff"'), "r1-chassis.json: byte 1 is not UTF-8"),
        ]:
            with self.subTest(message=message), tempfile.TemporaryDirectory() as directory:
                lab = Lab(directory)
                spoil(lab.path("chassis"))
                self.refused(lab, message)

    def test_an_output_that_cannot_be_written_is_refused_with_its_name(self):
        self.lab.output.write_text("in the way", encoding="utf-8")
        done = self.lab.convert()
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertRegex(done.stderr.splitlines()[-1], "^from-lldpcli.py: .*device")

    def refused(self, lab, message):
        done = lab.convert()
        self.assertEqual((done.returncode, done.stdout), (2, ""), done.stderr)
        self.assertRegex(done.stderr.splitlines()[-1], f"^from-lldpcli.py: .*{message}")
        self.assertFalse(lab.output.exists())


if __name__ == "__main__":
    unittest.main()
