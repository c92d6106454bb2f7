#!/usr/bin/python3
"""Checks which source may include what, and that no sources depend on each other in a circle.

A folder may include its own headers, those of the folders that it may use and of all that these may use in turn, the
C++ standard library, and the other libraries granted to it. Quoted includes stay within the folder.

Inside a folder, a header and the source of the same name are one module. What either of them includes is a dependency
of the module; dependencies must not form a circle, except as listed in `CIRCLES`.
"""

from __future__ import annotations

import argparse
import pathlib
import re
import sys
from collections.abc import Iterator
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Grant:
    """What a folder may include besides its own headers and the standard library."""

    folders: tuple[str, ...] = ()
    libraries: tuple[str, ...] = ()
    generated: bool = False


# From the bottom up.
GRANTS = {
    "runtime/keel": Grant(),
    "runtime/zx": Grant(("runtime/keel",)),
    "runtime/base": Grant(("runtime/keel",), ("boost", "posix")),
    "runtime/element": Grant(("runtime/base",)),
    "runtime/journal": Grant(("runtime/element",)),
    "runtime/model": Grant(("runtime/journal",)),
    "runtime/collection": Grant(("runtime/model",)),
    "runtime/meta": Grant(("runtime/collection",)),
    "runtime/operation": Grant(("runtime/meta",)),
    "runtime/query": Grant(("runtime/operation",)),
    "runtime/io": Grant(("runtime/operation", "runtime/zx")),
    "runtime/elements": Grant(("runtime/query", "runtime/zx")),
    "script/ordo": Grant(("runtime/zx",), ("boost",)),
    "script/mi": Grant(("script/ordo", "runtime/query", "runtime/io")),
    "script/python": Grant(("script/mi",), ("python", "posix")),
    "record/typesys": Grant(("runtime/keel",)),
    "record/foreign": Grant(("runtime/elements",), generated=True),
    "record/valuetypes": Grant(("record/foreign", "record/typesys"), generated=True),
    "record/script": Grant(("record/valuetypes", "script/mi"), generated=True),
    "tools": Grant(("record/script",), ("cli11", "pugixml", "libzip"), generated=True),
    "examples": Grant(("record/script",), generated=True),
    "bench": Grant(("record/script",), ("benchmark", "python", "pybind11"), generated=True),
    "tests": Grant(("record/script",), ("gtest",), generated=True),
}

# Modules of one folder that depend on each other: each set with the reason why it isn't split.
CIRCLES: dict[frozenset[str], str] = {}

# Other libraries, by the beginning of their headers' names.
LIBRARIES = {
    "boost": re.compile(r"boost/"),
    "posix": re.compile(r"(sys/|(dlfcn|fcntl|link|malloc|pthread|unistd)\.h$)"),
    "python": re.compile(r"(Python|structmember|numpy/\w+)(\.h)?$"),
    "pybind11": re.compile(r"pybind11/"),
    "benchmark": re.compile(r"benchmark/"),
    "cli11": re.compile(r"CLI/"),
    "pugixml": re.compile(r"pugixml\.hpp$"),
    "libzip": re.compile(r"zip\.h$"),
    "gtest": re.compile(r"(gtest|gmock|rapidcheck)[/.]"),
}

# Headers of the C++ standard library have no file extension, nor have those that it takes over from C.
STANDARD = re.compile(r"[a-z0-9_]+$")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:<([^>]+)>|"([^"]+)")', re.MULTILINE)


@dataclass
class Tree:
    """A tree of sources, and what each folder may include."""

    root: pathlib.Path
    generated: pathlib.Path | None = None
    grants: dict[str, Grant] = field(default_factory=lambda: GRANTS)
    circles: dict[frozenset[str], str] = field(default_factory=lambda: CIRCLES)

    def sources(self) -> Iterator[tuple[str, pathlib.Path]]:
        """Each source written by hand with its folder, in order. Expected output of generators is left out."""
        for folder in sorted(self.grants):
            inner = [self.root / other for other in self.grants if other.startswith(f"{folder}/")]
            for file in sorted((self.root / folder).rglob("*")):
                if any(file.is_relative_to(other) for other in inner):
                    continue
                if file.suffix in (".h", ".cpp") and "expected" not in file.parts:
                    yield folder, file

    def reach(self, folder: str) -> set[str]:
        """The folders whose headers `folder` may include: its own and all below it."""
        reached: set[str] = set()
        waiting = [folder]
        while waiting:
            current = waiting.pop()
            if current not in reached:
                reached.add(current)
                waiting += self.grants[current].folders
        return reached

    def header(self, angle: str) -> tuple[str, pathlib.Path] | None:
        """The folder and file of a header that is included by <...>, if it belongs to the tree."""
        for folder in self.grants:
            file = self.root / folder / "include" / angle
            if file.is_file():
                return folder, file
        return None

    def complaint(self, folder: str, file: pathlib.Path, angle: str, quoted: str) -> str | None:
        """The fault of one include as a message, or None."""
        if quoted:
            target = (file.parent / quoted).resolve()
            if not target.is_relative_to((self.root / folder).resolve()):
                return f'"{quoted}" leaves the folder'
            return None if target.is_file() else f'"{quoted}" isn\'t there; write <...> for headers of other folders'
        if STANDARD.match(angle):
            return None
        reached = self.reach(folder)
        header = self.header(angle)
        if header is not None:
            return None if header[0] in reached else f"<{angle}> is of {header[0]}/, which {folder}/ may not use"
        for name, pattern in LIBRARIES.items():
            if pattern.match(angle):
                granted = any(name in self.grants[below].libraries for below in reached)
                return None if granted else f"<{angle}> is of {name}, which {folder}/ may not use"
        if self.is_generated(angle):
            return None if self.grants[folder].generated else f"<{angle}> is generated, and {folder}/ knows no schema"
        if self.generated is None and self.grants[folder].generated:
            return None  # nothing was generated yet, so it can't be checked
        return f"<{angle}> is of no folder and no library that is known here"

    def is_generated(self, header: str) -> bool:
        if self.generated is None:
            return False
        return any((package / "include" / header).is_file() for package in self.generated.iterdir())

    def dependencies(self) -> dict[str, set[str]]:
        """Each module's name, such as runtime/model/transaction, with the modules that it depends on."""
        # A source belongs to the module of the header with its name: the one beside it, else the first one in the
        # folder.
        headers: dict[tuple[str, str], str] = {}
        for folder, file in self.sources():
            if file.suffix == ".h":
                headers.setdefault((folder, file.stem), self.name(folder, file))

        def module(folder: str, file: pathlib.Path) -> str:
            own = self.name(folder, file)
            if file.suffix == ".h" or file.with_suffix(".h").is_file():
                return own
            return headers.get((folder, file.stem), own)

        result: dict[str, set[str]] = {}
        for folder, file in self.sources():
            here = module(folder, file)
            uses = result.setdefault(here, set())
            for angle, quoted in INCLUDE.findall(file.read_text(encoding="utf-8")):
                target = (folder, (file.parent / quoted).resolve()) if quoted else self.header(angle)
                if target is not None and target[1].is_file() and self.is_in(*target):
                    uses.add(module(*target))
            uses.discard(here)
        return result

    def is_in(self, folder: str, file: pathlib.Path) -> bool:
        return file.resolve().is_relative_to((self.root / folder).resolve())

    def name(self, folder: str, file: pathlib.Path) -> str:
        parts = file.resolve().relative_to((self.root / folder).resolve()).with_suffix("").parts
        return "/".join((folder, *(part for part in parts if part not in ("include", "src", "quay", "zero"))))

    def circle_complaints(self) -> list[str]:
        """The circles that aren't listed as exceptions, and the exceptions that are no longer circles."""
        found = [frozenset(circle) for circle in circles(self.dependencies())]
        complaints = [f"these depend on each other: {', '.join(sorted(c))}" for c in found if c not in self.circles]
        gone = [c for c in self.circles if c not in found]
        return sorted(complaints) + [f"no longer a circle: {', '.join(sorted(c))}" for c in gone]

    def complaints(self) -> list[str]:
        """All faults, one line each: includes in order of file and line, then circles."""
        found = []
        for folder, file in self.sources():
            text = file.read_text(encoding="utf-8")
            for match in INCLUDE.finditer(text):
                wrong = self.complaint(folder, file, match[1] or "", match[2] or "")
                if wrong:
                    line = text.count("\n", 0, match.start()) + 1
                    found.append(f"{file.relative_to(self.root)}:{line}: {wrong}")
        return found + self.circle_complaints()


def circles(graph: dict[str, set[str]]) -> list[set[str]]:
    """The sets of two or more nodes that can all be reached from each other (Tarjan's algorithm)."""
    index: dict[str, int] = {}
    low: dict[str, int] = {}
    stack: list[str] = []
    found: list[set[str]] = []

    def visit(node: str) -> None:
        index[node] = low[node] = len(index)
        stack.append(node)
        for other in sorted(graph.get(node, ())):
            if other not in index:
                visit(other)
                low[node] = min(low[node], low[other])
            elif other in stack:
                low[node] = min(low[node], index[other])
        if low[node] == index[node]:
            at = stack.index(node)
            if len(stack) - at > 1:
                found.append(set(stack[at:]))
            del stack[at:]

    for node in sorted(graph):
        if node not in index:
            visit(node)
    return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("--generated", type=pathlib.Path, help="where the build puts generated packages")
    options = parser.parse_args()
    generated = options.generated if options.generated and options.generated.is_dir() else None
    found = Tree(options.root, generated).complaints()
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
