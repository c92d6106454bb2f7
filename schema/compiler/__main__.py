"""The command: python3 -m compiler --package schema/package.yaml --out FOLDER."""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from compiler.check import check
from compiler.emit import write
from compiler.emit_typing import typing_files, write_typing
from compiler.load import load
from compiler.mistakes import Report
from compiler.plan import plan
from compiler.plan_typing import plan_typing
from compiler.scope import Scope


def main(arguments: list[str] | None = None) -> int:
    """Runs the command. Returns 0, or 1 after printing every mistake of the schema to the standard error stream."""
    parser = argparse.ArgumentParser(prog="compiler", description="Turns a schema told as YAML into C++.")
    parser.add_argument("--package", type=Path, required=True, help="the package.yaml to compile")
    parser.add_argument("--out", type=Path, help="folder that gets include/ and src/")
    parser.add_argument("--typing", type=Path, help="folder that gets the modules which Python's type checkers read")
    parser.add_argument("--script-docs", action="store_true", help="add the docs that scripts show for help")
    parser.add_argument("--list", action="store_true", help="print the files that --out would get, and write none")
    parser.add_argument("--check-only", action="store_true", help="look for mistakes and write nothing")
    options = parser.parse_args(arguments)
    if not (options.out or options.typing or options.list or options.check_only):
        parser.error("nothing to do: give --out, --typing, --list or --check-only")

    report = Report()
    package = load(options.package, report)
    if package is not None:
        scope = Scope(package)
        check(scope, report)
    mistakes = report.sorted()
    if package is None or mistakes:
        for mistake in mistakes:
            print(mistake, file=sys.stderr)
        return 1

    if options.typing:
        modules = plan_typing(scope)
        if options.list:
            print("\n".join(typing_files(modules)))
        elif not options.check_only:
            write_typing(modules, options.typing)
    if options.out or not options.typing:
        planned = plan(scope, options.script_docs)
        if options.list:
            print("\n".join(file.path for file in planned.files))
        elif not options.check_only:
            write(planned, options.out)
    return 0


if __name__ == "__main__":
    sys.exit(main())
