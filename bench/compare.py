#!/usr/bin/python3
"""Compares the benchmarks of two builds, one benchmark after the other: its runs alternate between the builds (A, B, A, B
and so on), so that other load on the machine affects both. Prints the least time of each build, and the median of the
ratios of each pair of runs. Sorted by that ratio: what is slower in B comes last."""

from __future__ import annotations

import argparse
import json
import pathlib
import statistics
import subprocess
import tempfile
from typing import Any


def names(build: pathlib.Path, pattern: str) -> list[str]:
    """The benchmarks of a build whose names the regular expression matches."""
    command = [str(build / "bin" / "bench"), "--benchmark_list_tests", f"--benchmark_filter={pattern}"]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.splitlines()


def run(build: pathlib.Path, name: str, arguments: list[str]) -> float:
    """Nanoseconds of one run of a benchmark: processor time, or the benchmark's own time if it measures that itself."""
    with tempfile.NamedTemporaryFile(suffix=".json") as output:
        program = str(build / "bin" / "bench")
        command = [program, f"--benchmark_filter=^{name}$", f"--benchmark_out={output.name}", *arguments]
        ran = subprocess.run([*command, "--benchmark_out_format=json"], capture_output=True, text=True)
        if ran.returncode != 0:
            raise SystemExit(f"{program} failed:\n{ran.stderr}")
        result: dict[str, Any] = json.load(output)["benchmarks"][0]
    measured: float = result["real_time" if name.endswith("/manual_time") else "cpu_time"]
    return measured * {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[result["time_unit"]]


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("a", type=pathlib.Path, help="build folder of the code before a change")
    parser.add_argument("b", type=pathlib.Path, help="build folder of the code after it")
    parser.add_argument("--rounds", type=int, default=5, help="how often each build's benchmarks run (5)")
    parser.add_argument("--filter", default=".", help="regular expression: run only benchmarks whose name it matches")
    parser.add_argument("--min-time", default="0.1", help="seconds that a benchmark runs in a round (0.1)")
    options = parser.parse_args()

    arguments = [f"--benchmark_min_time={options.min_time}"]
    listed = names(options.a, options.filter), names(options.b, options.filter)
    rows: list[tuple[float, str, float, float]] = []
    for name in listed[0]:
        if name not in listed[1]:
            continue
        pairs = [
            (run(options.a, name, arguments), run(options.b, name, arguments)) for _ in range(options.rounds)
        ]
        ratio = statistics.median(b / a for a, b in pairs)
        rows.append((ratio, name, min(a for a, _ in pairs), min(b for _, b in pairs)))

    width = max((len(name) for _, name, _, _ in rows), default=0)
    print(f"{'benchmark':{width}} {'A (ns)':>14} {'B (ns)':>14} {'B / A':>8}")
    for ratio, name, a, b in sorted(rows):
        print(f"{name:{width}} {a:14.1f} {b:14.1f} {ratio:8.3f}")
    for left_out in sorted(set(listed[0]) ^ set(listed[1])):
        print(f"{left_out}: only in {'A' if left_out in listed[0] else 'B'}")


if __name__ == "__main__":
    main()
