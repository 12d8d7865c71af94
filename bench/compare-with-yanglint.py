#!/usr/bin/env python3
"""Compares whole processes: `yfw get /lldp --format xml` on a large device, and yanglint parsing, validating and
printing only the answer.

  bench/compare-with-yanglint.py build/plain            five pairs at 10,000 and 40,000 neighbors
  bench/compare-with-yanglint.py build/plain --runs 3
"""
import argparse
import pathlib
import statistics
import tempfile

from processes import compare, get_command, make_device, measure, ratio, yanglint_command


def pairs(build, folder, neighbors, runs):
    device = folder / f"device-{neighbors}.xml"
    answer = folder / f"answer-{neighbors}.xml"
    make_device(build, device, neighbors // 4, neighbors, 40)
    ours = get_command(build, device)
    measure(ours, answer)  # a warm-up, and the input of the peer
    measured = compare(ours, yanglint_command(answer), folder, runs)
    print(f"{neighbors} neighbors: {device.stat().st_size / 1e6:.0f} MB in, {answer.stat().st_size / 1e6:.0f} MB out")
    for i, (what, unit) in enumerate((("wall", "s"), ("cpu", "s"), ("peak", "MiB"))):
        mine = statistics.median(a[i] for a, _ in measured)
        others = statistics.median(b[i] for _, b in measured)
        print(f"  {what:5} yfw {mine:8.2f} {unit}   yanglint {others:8.2f} {unit}   ratio {ratio(measured, i):.2f}")
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
