#!/usr/bin/python3
"""Compares the benchmarks of two builds. Their bin/bench run alternately (A, B, A, B and so on), so that other load on
the machine affects both, and the least time of each benchmark counts. Sorted by the ratio of B to A: what is slower in
B comes last."""

from __future__ import annotations

import argparse
import json
import pathlib
import subprocess
import tempfile
from typing import Any


def run(build: pathlib.Path, arguments: list[str]) -> dict[str, float]:
    """Nanoseconds by benchmark, from one run of the build's program: processor time, or the benchmark's own time if it
    measures that itself."""
    with tempfile.NamedTemporaryFile(suffix=".json") as output:
        program = str(build / "bin" / "bench")
        command = [program, f"--benchmark_out={output.name}", "--benchmark_out_format=json", *arguments]
        ran = subprocess.run(command, capture_output=True, text=True)
        if ran.returncode != 0:
            raise SystemExit(f"{program} failed:\n{ran.stderr}")
        results = json.load(output)["benchmarks"]

    def time(result: dict[str, Any]) -> float:
        measured: float = result["real_time" if result["name"].endswith("/manual_time") else "cpu_time"]
        return measured * {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[result["time_unit"]]

    return {result["name"]: time(result) for result in results}


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("a", type=pathlib.Path, help="build folder of the code before a change")
    parser.add_argument("b", type=pathlib.Path, help="build folder of the code after it")
    parser.add_argument("--rounds", type=int, default=5, help="how often each build's benchmarks run (5)")
    parser.add_argument("--filter", default=".", help="regular expression: run only benchmarks whose name it matches")
    parser.add_argument("--min-time", default="0.1", help="seconds that a benchmark runs in a round (0.1)")
    options = parser.parse_args()

    arguments = [f"--benchmark_filter={options.filter}", f"--benchmark_min_time={options.min_time}"]
    best: list[dict[str, float]] = [{}, {}]
    for _ in range(options.rounds):
        for least, build in zip(best, (options.a, options.b)):
            for name, time in run(build, arguments).items():
                least[name] = min(time, least.get(name, time))

    rows = [(best[1][name] / best[0][name], name) for name in best[0] if name in best[1]]
    width = max((len(name) for _, name in rows), default=0)
    print(f"{'benchmark':{width}} {'A (ns)':>14} {'B (ns)':>14} {'B / A':>8}")
    for ratio, name in sorted(rows):
        print(f"{name:{width}} {best[0][name]:14.1f} {best[1][name]:14.1f} {ratio:8.3f}")
    for left_out in sorted(best[0].keys() ^ best[1].keys()):
        print(f"{left_out}: only in {'A' if left_out in best[0] else 'B'}")


if __name__ == "__main__":
    main()
