#!/usr/bin/python3
"""Measures the cost of compiling against the product's headers: processor time of small sources, compared with one that
uses <vector> and <string>, with the flags of a user's release build. The sources are compiled in turn, and the least
time of each counts. The include folders come from a build folder."""

from __future__ import annotations

import argparse
import json
import os
import pathlib
import shlex
import subprocess
import tempfile

FLAGS = ["-O2", "-std=c++20"]

STANDARD = """
#include <string>
#include <vector>
std::vector<std::string> use(std::string const& first) {
    std::vector<std::string> made;
    made.push_back(first);
    made.emplace_back("second");
    return made;
}
"""

ONE_CLASS = """
#include <ModelRefInfoRepo/InportInformation.h>
using ModelRefInfoRepo::InportInformation;
InportInformation use(quay::zero::Model const& model) {
    InportInformation const created = InportInformation::create(model, {});
    created->setIsNotDerivPort(true);
    InportInformation::Builder builder(model);
    builder.setIsNotDerivPort(created->getIsNotDerivPort()).setHasSystemInitMethod(true);
    return builder.create();
}
"""

UMBRELLA = """
#include <ModelRefInfoRepo/ModelRefInfoRepo.h>
using namespace ModelRefInfoRepo;
ModelRefInfoRoot use(quay::zero::Model const& model) {
    ModelRefInfoRoot::Builder builder(model);
    builder.setDataDictionary(u"data").setHasSavedSparseJacobian(true).setSolverStatusFlags(3u);
    builder.setFundamentalSampleTimePeriod(0.001).setHasConstantOutput(false);
    builder.addInports(std::make_unique<InportInformation::Builder>());
    return builder.create();
}
"""

SOURCES = {"<vector>, <string>": STANDARD, "one class header": ONE_CLASS, "umbrella header": UMBRELLA}


def include_flags(build: pathlib.Path) -> list[str]:
    """The include folders of a program in `build` that uses the product."""
    entries: list[dict[str, str]] = json.loads((build / "compile_commands.json").read_text())
    command = next(entry["command"] for entry in entries if entry["file"].endswith("/examples/record_interface.cpp"))
    return [argument for argument in shlex.split(command) if argument.startswith("-I")]


def processor_seconds(command: list[str]) -> float:
    """User and system time of the command and of the processes that it started."""
    process = subprocess.Popen(command, env={**os.environ, "CCACHE_DISABLE": "1"})
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise SystemExit(f"failed: {shlex.join(command)}")
    seconds: float = usage.ru_utime + usage.ru_stime
    return seconds


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=pathlib.Path, help="build folder of the product, its headers generated")
    parser.add_argument("--runs", type=int, default=9, help="how often each source is compiled (9)")
    parser.add_argument("--compiler", default="c++")
    options = parser.parse_args()
    includes = include_flags(options.build)

    seconds: dict[str, list[float]] = {name: [] for name in SOURCES}
    sizes: dict[str, int] = {}
    with tempfile.TemporaryDirectory() as folder:
        source, output = pathlib.Path(folder, "source.cpp"), pathlib.Path(folder, "source.o")
        for _ in range(options.runs):
            for name, text in SOURCES.items():
                source.write_text(text)
                command = [options.compiler, *FLAGS, *includes, "-c", str(source), "-o", str(output)]
                seconds[name].append(processor_seconds(command))
                sizes[name] = output.stat().st_size

    floor = min(seconds["<vector>, <string>"])
    print(f"{'source':20}{'seconds':>9}{'ratio':>8}{'object':>11}")
    for name, measured in seconds.items():
        print(f"{name:20}{min(measured):9.3f}{min(measured) / floor:8.2f}{sizes[name]:9} B")


if __name__ == "__main__":
    main()
