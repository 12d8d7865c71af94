"""What the comparisons of whole processes share."""
import os
import pathlib
import statistics
import subprocess
import sys
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
MODELS = TOP / "manageability/yang/framework/models"


def measure(command, output):
    """Wall seconds, processor seconds and peak memory in MiB of one run."""
    with open(output, "wb") as sink:
        start = time.monotonic()
        process = subprocess.Popen(command, stdout=sink)
        _, status, usage = os.wait4(process.pid, 0)
        wall = time.monotonic() - start
    if os.waitstatus_to_exitcode(status) != 0:
        sys.exit(f"{command[0]} failed")
    return wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def make_device(build, file, interfaces, neighbors, nodes):
    with open(file, "wb") as sink:
        subprocess.run([build / "bin/make_device", str(interfaces), str(neighbors), str(nodes)], stdout=sink, check=True)


def get_command(build, device):
    return [build / "bin/yfw", "get", "/lldp", "--format", "xml", "--native", device]


def yanglint_command(answer):
    return ["yanglint", "-p", MODELS, "-t", "data", "-f", "xml", MODELS / "openconfig-lldp-types.yang",
            MODELS / "openconfig-lldp.yang", answer]


def compare(ours, peer, folder, runs):
    """Pairs of what measure() tells of our command and of its peer, after each other."""
    return [(measure(ours, folder / "ours"), measure(peer, folder / "peer")) for _ in range(runs)]


def ratio(measured, part):
    """The median ratio of a part of measure()'s results: 0 wall time, 1 processor time, 2 memory."""
    return statistics.median(a[part] / b[part] for a, b in measured)
