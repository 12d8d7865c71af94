#!/usr/bin/env python3
"""Compares whole processes: `yfw get /lldp --format xml` on a large device, and yanglint parsing, validating and
printing only the answer.

  bench/compare-with-yanglint.py build/plain            five pairs at 10,000 and 40,000 neighbors
  bench/compare-with-yanglint.py build/plain --runs 3
"""
import argparse
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
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


def pairs(build, folder, neighbors, runs):
    device = folder / f"device-{neighbors}.xml"
    answer = folder / f"answer-{neighbors}.xml"
    with open(device, "wb") as sink:
        subprocess.run([build / "bin/make_device", str(neighbors // 4), str(neighbors), "40"], stdout=sink, check=True)
    ours = [build / "bin/yfw", "get", "/lldp", "--format", "xml", "--native", device]
    measure(ours, answer)  # a warm-up, and the input of the peer
    peer = ["yanglint", "-p", MODELS, "-t", "data", "-f", "xml", MODELS / "openconfig-lldp-types.yang",
            MODELS / "openconfig-lldp.yang", answer]
    measured = [(measure(ours, folder / "ours"), measure(peer, folder / "peer")) for _ in range(runs)]
    print(f"{neighbors} neighbors: {device.stat().st_size / 1e6:.0f} MB in, {answer.stat().st_size / 1e6:.0f} MB out")
    for i, (what, unit) in enumerate((("wall", "s"), ("cpu", "s"), ("peak", "MiB"))):
        mine = statistics.median(a[i] for a, _ in measured)
        others = statistics.median(b[i] for _, b in measured)
        ratio = statistics.median(a[i] / b[i] for a, b in measured)
        print(f"  {what:5} yfw {mine:8.2f} {unit}   yanglint {others:8.2f} {unit}   ratio {ratio:.2f}")
    return statistics.median(a[1] for a, _ in measured)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path, help="build directory, with benchmarks")
    parser.add_argument("--runs", type=int, default=5, help="counted pairs (default 5)")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        small, large = (pairs(options.build.resolve(), pathlib.Path(name), n, options.runs) for n in (10000, 40000))
    print(f"growth from 10000 to 40000 neighbors: {large / small:.2f}-fold (cpu)")


if __name__ == "__main__":
    main()
