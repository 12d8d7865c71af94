#!/usr/bin/env python3
"""Converts what lldpcli reported on a router into the native instance data of a device directory."""

import argparse
import ipaddress
import json
import pathlib
import re
import sys
from xml.sax.saxutils import escape

LLDP_CFG = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg"
LLDP_OPER = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper"
IFMGR_CFG = "urn:tarvo:yang:Tarvo-QD-ifmgr-cfg"

# Subtype numbers from IEEE Std 802.1AB, clauses 8.5.2.2 and 8.5.3.2, by lldpd's names for them. "unhandled" is
# lldpd's name for a subtype that it does not report; no number is written for it.
CHASSIS_SUBTYPES = {"ifalias": 2, "mac": 4, "ip": 5, "ifname": 6, "local": 7, "unhandled": None}
PORT_SUBTYPES = {"ifalias": 1, "mac": 3, "ip": 4, "ifname": 5, "local": 7, "unhandled": None}

# lldpd's name, the bit number in IEEE Std 802.1AB, and the letter, in bit order.
CAPABILITIES = [
    ("Other", 0, "O"),
    ("Repeater", 1, "P"),
    ("Bridge", 2, "B"),
    ("Wlan", 3, "W"),
    ("Router", 4, "R"),
    ("Tel", 5, "T"),
    ("Docsis", 6, "C"),
    ("Station", 7, "S"),
]

# (transmits, receives), by lldpd's names for an interface's status.
STATUSES = {
    "RX and TX": (True, True),
    "TX only": (True, False),
    "RX only": (False, True),
    "disabled": (False, False),
}

# The native counter and lldpd's field for it, in the order of the native module.
INTERFACE_COUNTERS = [
    ("transmitted-packets", "tx"),
    ("received-packets", "rx"),
    ("discarded-packets", "rx_discarded_cnt"),
    ("unrecognized-tl-vs", "rx_unrecognized_cnt"),
]
NODE_COUNTERS = INTERFACE_COUNTERS + [("aged-out-entries", "ageout_cnt")]

# The range of the native timer, in seconds.
TIMER_RANGE = range(5, 65535)

# A native counter has 32 bits and wraps around to 0.
COUNTER_MODULUS = 2**32

NOT_SET = "(none)"
NOT_XML_TEXT = re.compile("[^\t\n\u0020-\ud7ff\ue000-\ufffd\U00010000-\U0010ffff]")


class RecordingError(Exception):
    """A recording that cannot be used; the message names the file and the place in it."""


def note(place, text):
    """Prints on standard error what is left out of the device."""
    print(f"from-lldpcli.py: note: {place}: {text}", file=sys.stderr)


class Record:
    """An object of lldpcli's json0, where every member is a list, with its place for messages."""

    def __init__(self, place, members):
        if not isinstance(members, dict):
            raise RecordingError(f"{place}: expected an object")
        self.place = place
        self.members = members

    def all(self, name):
        """The objects under a member, none when it is absent."""
        entries = self.members.get(name, [])
        place = f"{self.place}/{name}"
        if not isinstance(entries, list):
            raise RecordingError(f"{place}: expected a list")
        return [Record(f"{place}[{index}]", entry) for index, entry in enumerate(entries)]

    def first(self, name):
        """The first object under a member, None when it is absent."""
        return next(iter(self.all(name)), None)

    def one(self, name):
        """The first object under a mandatory member."""
        found = self.first(name)
        if found is None:
            raise RecordingError(f"{self.place}: no {name}")
        return found

    def text(self, name):
        """The text of a mandatory member of this object."""
        found = self.members.get(name)
        if not isinstance(found, str):
            raise RecordingError(f"{self.place}: no text named {name}")
        if NOT_XML_TEXT.search(found):
            raise RecordingError(f"{self.place}/{name}: holds a character that XML does not allow")
        return found

    def value(self, name, field="value"):
        """The text of a field of the first object under a member; None when the member is absent."""
        found = self.first(name)
        return None if found is None else found.text(field)

    def flag(self, name):
        """The Boolean value of a mandatory member of this object."""
        found = self.members.get(name)
        if not isinstance(found, bool):
            raise RecordingError(f"{self.place}: no true or false named {name}")
        return found

    def word(self, name, meanings):
        """The meaning of a word; an error if the word is not in the table."""
        found = self.text(name)
        if found not in meanings:
            known = ", ".join(sorted(meanings))
            raise RecordingError(f"{self.place}/{name}: unknown word {found!r}, known are {known}")
        return meanings[found]


class Recording:
    """The five files that lldpcli wrote on one router."""

    def __init__(self, directory, router):
        self.directory = directory
        self.router = router
        self.chassis = self.load("chassis", "local-chassis").one("chassis")
        self.configuration = self.load("configuration", "configuration").one("config")
        self.interfaces = self.load("interfaces", "lldp").all("interface")
        self.neighbors = self.load("neighbors", "lldp").all("interface")
        self.statistics = self.load("statistics", "lldp").all("interface")

    def load(self, what, top):
        path = self.directory / f"{self.router}-{what}.json"
        try:
            parsed = json.loads(path.read_text(encoding="utf-8"))
        except OSError as error:
            raise RecordingError(f"{path}: {error.strerror}") from error
        except json.JSONDecodeError as error:
            raise RecordingError(f"{path}:{error.lineno}:{error.colno}: {error.msg}") from error
        except UnicodeDecodeError as error:
            raise RecordingError(f"{path}: byte {error.start} is not UTF-8") from error
        return Record(f"{path}#", parsed).one(top)


def number(place, text):
    """A decimal number without a sign."""
    if not re.fullmatch("[0-9]+", text):
        raise RecordingError(f"{place}: {text!r} is not a number")
    return int(text)


def octets(place, text):
    """The bytes of lldpcli's list of hexadecimal octets: "61,62,63"."""
    parts = text.split(",") if text else []
    if not all(re.fullmatch("[0-9A-Fa-f]{2}", part) for part in parts):
        raise RecordingError(f"{place}: {text!r} is not a list of octets")
    return bytes(int(part, 16) for part in parts)


def age_in_seconds(place, text):
    """The seconds of an age as lldpcli prints it: "0 day, 00:00:31"."""
    match = re.fullmatch("([0-9]+) days?, ([0-9]{2}):([0-5][0-9]):([0-5][0-9])", text)
    if not match:
        raise RecordingError(f"{place}: {text!r} is not an age like '0 day, 00:00:31'")
    days, hours, minutes, seconds = map(int, match.groups())
    return ((days * 24 + hours) * 60 + minutes) * 60 + seconds


class Xml:
    """Elements as indented lines. An element without a value is not written."""

    def __init__(self):
        self.lines = []
        self.depth = 0

    def leaf(self, name, value):
        if value is not None:
            self.lines.append(f"{'  ' * self.depth}<{name}>{escape(str(value))}</{name}>")

    def open(self, name, namespace=None):
        attribute = f' xmlns="{namespace}"' if namespace else ""
        self.lines.append(f"{'  ' * self.depth}<{name}{attribute}>")
        self.depth += 1
        return Element(self, name)

    def text(self):
        return "".join(line + "\n" for line in self.lines)


class Element:
    """Closes an element at the end of a with block, and removes it if it is empty."""

    def __init__(self, xml, name):
        self.xml = xml
        self.name = name
        self.start = len(xml.lines)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.xml.depth -= 1
        if len(self.xml.lines) == self.start:
            self.xml.lines.pop()
        else:
            self.xml.lines.append(f"{'  ' * self.xml.depth}</{self.name}>")


def set_value(record, name):
    """A configured value; None when it is absent or lldpcli says that it was not set."""
    found = record.value(name)
    return None if found == NOT_SET else found


def timer(configuration):
    """The recorded interval, where the native timer can hold it."""
    recorded = configuration.value("tx-delay")
    if recorded is None:
        return None
    place = f"{configuration.place}/tx-delay"
    seconds = number(place, recorded)
    if seconds in TIMER_RANGE:
        return seconds
    note(place, f"{seconds} s is not a valid native timer ({TIMER_RANGE[0]} to {TIMER_RANGE[-1]} s), left out")
    return None


def configuration_xml(recording):
    """The running configuration: modules Tarvo-QD-ethernet-lldp-cfg and Tarvo-QD-ifmgr-cfg."""
    xml = Xml()
    with xml.open("lldp", LLDP_CFG):
        xml.leaf("enable", "true")
        xml.leaf("timer", timer(recording.configuration))
        xml.leaf("system-name", set_value(recording.configuration, "hostname"))
        xml.leaf("system-description", set_value(recording.configuration, "description"))
    with xml.open("interface-configurations", IFMGR_CFG):
        for interface in recording.interfaces:
            transmits, receives = interface.one("status").word("value", STATUSES)
            with xml.open("interface-configuration"):
                xml.leaf("active", "act")
                xml.leaf("interface-name", interface.text("name"))
                with xml.open("lldp", LLDP_CFG):
                    xml.leaf("enable", "true")
                    with xml.open("transmit"):
                        xml.leaf("disable", None if transmits else "true")
                    with xml.open("receive"):
                        xml.leaf("disable", None if receives else "true")
    return xml.text()


def capability_bits(chassis):
    """The bits of the available and of the enabled capabilities; None if none are recorded."""
    recorded = chassis.all("capability")
    if not recorded:
        return None
    bits = {word: bit for word, bit, _ in CAPABILITIES}
    has = on = 0
    for capability in recorded:
        bit = 1 << capability.word("type", bits)
        has |= bit
        if capability.flag("enabled"):
            on |= bit
    return has, on


def letters(bits):
    """Capability letters joined by commas; None for no capability at all."""
    return ",".join(letter for _, bit, letter in CAPABILITIES if bits & 1 << bit) or None


def write_addresses(xml, chassis):
    """One entry per management address. lldpcli lists the interfaces' numbers separately from the addresses."""
    addresses = chassis.all("mgmt-ip")
    numbers = chassis.all("mgmt-iface")
    with xml.open("network-addresses"):
        for index, address in enumerate(addresses):
            text = address.text("value")
            try:
                version = ipaddress.ip_address(text).version
            except ValueError as error:
                raise RecordingError(f"{address.place}/value: {text!r} is not an address") from error
            with xml.open("lldp-addr-entry"):
                with xml.open("address"):
                    xml.leaf("address-type", f"ipv{version}")
                    xml.leaf(f"ipv{version}-address", text)
                if len(numbers) == len(addresses):
                    place = f"{numbers[index].place}/value"
                    xml.leaf("if-num", number(place, numbers[index].text("value")))


def tlv_text(tlv):
    """The bytes of a TLV as text; None, with a note, for bytes that XML cannot carry as text."""
    place = f"{tlv.place}/value"
    content = octets(place, tlv.text("value")) if "value" in tlv.members else b""
    if len(content) != number(f"{tlv.place}/len", tlv.text("len")):
        raise RecordingError(f"{place}: {len(content)} octets where len says {tlv.text('len')}")
    try:
        text = content.decode("utf-8")
    except UnicodeDecodeError:
        text = None
    if text is None or NOT_XML_TEXT.search(text):
        note(place, "the octets are not text, tlv-value left out")
        return None
    return text or None


def write_tlvs(xml, neighbor):
    """The TLVs that lldpd passed on without interpreting them."""
    with xml.open("org-def-tlv-list"):
        for group in neighbor.all("unknown-tlvs"):
            for tlv in group.all("unknown-tlv"):
                with xml.open("lldp-org-def-tlv-entry"):
                    xml.leaf("oui", octets(f"{tlv.place}/oui", tlv.text("oui")).hex(":"))
                    xml.leaf("tlv-subtype", number(f"{tlv.place}/subtype", tlv.text("subtype")))
                    xml.leaf("tlv-value", tlv_text(tlv))


def device_id(neighbor):
    """A neighbor's identifier: its system name, "[DISABLED]" if it did not announce one."""
    return neighbor.one("chassis").value("name") or "[DISABLED]"


def write_neighbor(xml, neighbor):
    chassis, port = neighbor.one("chassis"), neighbor.one("port")
    chassis_id, port_id = chassis.one("id"), port.one("id")
    ttl = port.value("ttl")
    bits = capability_bits(chassis)
    with xml.open("lldp-neighbor"):
        xml.leaf("receiving-interface-name", neighbor.text("name"))
        xml.leaf("device-id", device_id(neighbor))
        xml.leaf("chassis-id", chassis_id.text("value"))
        xml.leaf("port-id-detail", port_id.text("value"))
        xml.leaf("hold-time", None if ttl is None else number(f"{port.place}/ttl", ttl))
        with xml.open("detail"):
            write_addresses(xml, chassis)
            xml.leaf("port-description", port.value("descr"))
            xml.leaf("system-name", chassis.value("name"))
            xml.leaf("system-description", chassis.value("descr"))
            if bits:
                xml.leaf("system-capabilities", letters(bits[0]))
                xml.leaf("enabled-capabilities", letters(bits[1]))
            xml.leaf("age", age_in_seconds(f"{neighbor.place}/age", neighbor.text("age")))
        with xml.open("mib"):
            if bits:
                xml.leaf("combined-capabilities", bits[0] << 16 | bits[1])
            xml.leaf("chassis-id-sub-type", chassis_id.word("type", CHASSIS_SUBTYPES))
            xml.leaf("port-id-sub-type", port_id.word("type", PORT_SUBTYPES))
            write_tlvs(xml, neighbor)


def write_neighbors(xml, recording):
    """The native list has one entry per interface and device; a device heard twice appears twice in its entry."""
    details = {}
    for neighbor in recording.neighbors:
        protocol = neighbor.text("via")
        if protocol != "LLDP":
            note(neighbor.place, f"heard by {protocol}, left out")
            continue
        details.setdefault((neighbor.text("name"), device_id(neighbor)), []).append(neighbor)
    with xml.open("neighbors"), xml.open("details"):
        for (interface, device), announcements in details.items():
            with xml.open("detail"):
                xml.leaf("interface-name", interface)
                xml.leaf("device-id", device)
                for announcement in announcements:
                    write_neighbor(xml, announcement)


def count(record, field):
    """lldpd's counter in a field; None if it has none."""
    recorded = record.value(field, field)
    return None if recorded is None else number(f"{record.place}/{field}", recorded)


def write_counters(xml, counters, records):
    """Counters summed over records; a counter that no record has is left out."""
    for name, field in counters:
        counts = [found for found in (count(record, field) for record in records) if found is not None]
        xml.leaf(name, sum(counts) % COUNTER_MODULUS if counts else None)


def write_interfaces(xml, recording):
    counted = {record.text("name"): record for record in recording.statistics}
    with xml.open("interfaces"):
        for interface in recording.interfaces:
            name = interface.text("name")
            transmits, receives = interface.one("status").word("value", STATUSES)
            with xml.open("interface"):
                xml.leaf("interface-name", name)
                xml.leaf("tx-enabled", int(transmits))
                xml.leaf("rx-enabled", int(receives))
                with xml.open("interface-stats"):
                    if name in counted:
                        write_counters(xml, INTERFACE_COUNTERS, [counted[name]])


def operational_xml(recording):
    """The operational data: module Tarvo-QD-ethernet-lldp-oper."""
    xml = Xml()
    chassis_id = recording.chassis.one("id")
    with xml.open("lldp", LLDP_OPER):
        with xml.open("global-lldp"), xml.open("lldp-info"):
            xml.leaf("chassis-id", chassis_id.text("value"))
            xml.leaf("chassis-id-sub-type", chassis_id.word("type", CHASSIS_SUBTYPES))
            xml.leaf("system-name", recording.chassis.value("name"))
            xml.leaf("system-description", recording.chassis.value("descr"))
        with xml.open("nodes"), xml.open("node"):
            xml.leaf("node-name", recording.router)
            write_neighbors(xml, recording)
            write_interfaces(xml, recording)
            with xml.open("statistics"):
                write_counters(xml, NODE_COUNTERS, recording.statistics)
    return xml.text()


def parse_arguments(arguments):
    here = pathlib.Path(__file__).resolve().parent
    parser = argparse.ArgumentParser(
        prog="from-lldpcli.py",
        formatter_class=argparse.RawDescriptionHelpFormatter,
        description="Turn what lldpcli reported on a router into config.xml and oper.xml, the native\n"
        "configuration and operational data of a device directory.",
        epilog="""\
The recordings are ROUTER-WHAT.json, made on the router with
  lldpcli -f json0 show neighbors details   > ROUTER-neighbors.json
  lldpcli -f json0 show interfaces details  > ROUTER-interfaces.json
  lldpcli -f json0 show statistics          > ROUTER-statistics.json
  lldpcli -f json0 show chassis details     > ROUTER-chassis.json
  lldpcli -f json0 show configuration       > ROUTER-configuration.json

example, which makes examples/r1 anew:
  examples/from-lldpcli.py r1

example with recordings of your own:
  examples/from-lldpcli.py --recordings ~/lab --output /tmp/leaf7 leaf7""",
    )
    parser.add_argument("router", metavar="ROUTER", help="the router's short name, with which the file names begin")
    parser.add_argument("--recordings", metavar="DIR", type=pathlib.Path, default=here / "recordings",
                        help="where the recordings are (default: recordings/ next to this program)")
    parser.add_argument("--output", metavar="DIR", type=pathlib.Path,
                        help="the device directory to write (default: ROUTER/ next to this program)")
    parsed = parser.parse_args(arguments)
    parsed.output = parsed.output or here / parsed.router
    return parsed


def main(arguments):
    """0 when both files are written, 2 with one line on standard error when they are not."""
    parsed = parse_arguments(arguments)
    try:
        recording = Recording(parsed.recordings, parsed.router)
        # Builds both texts before touching either file, so that a bad recording leaves the device unchanged.
        files = {"config.xml": configuration_xml(recording), "oper.xml": operational_xml(recording)}
        parsed.output.mkdir(parents=True, exist_ok=True)
        for name, text in files.items():
            (parsed.output / name).write_text(text, encoding="utf-8", newline="\n")
    except (RecordingError, OSError) as error:
        print(f"from-lldpcli.py: {error}", file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
