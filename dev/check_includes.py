#!/usr/bin/python3
"""Holds the sources written by hand to the order of the house: which folder may include what.

Each room may include its own headers, those of the rooms that it may use and of all that these may use in turn, the
C++ standard library, and the other libraries granted to it. Quoted includes stay within the room.
"""

from __future__ import annotations

import argparse
import pathlib
import re
import sys
from dataclasses import dataclass, field


@dataclass(frozen=True)
class Grant:
    """What a room may include beside itself and the standard library."""

    rooms: tuple[str, ...] = ()
    libraries: tuple[str, ...] = ()
    generated: bool = False


PLATFORM = ("platform/keel", "platform/zx", "platform/ordo", "platform/mi", "platform/typesys")
PRODUCT = ("valuetypes", "package", "script")

HOUSE = {
    "platform/keel": Grant(),
    "platform/zx": Grant(("platform/keel",)),
    "platform/ordo": Grant(("platform/zx",), ("boost",)),
    "platform/typesys": Grant(("platform/keel",)),
    "platform/mi": Grant(("platform/ordo", "runtime")),
    "runtime": Grant(("platform/keel", "platform/zx"), ("boost", "posix")),
    "elements": Grant(("runtime",)),
    "valuetypes/foreign": Grant(("elements",), generated=True),
    "valuetypes": Grant(("valuetypes/foreign", "platform/typesys"), generated=True),
    "package": Grant(("valuetypes", *PLATFORM), generated=True),
    "script": Grant(("package",), generated=True),
    "python": Grant(PLATFORM, ("python", "posix")),
    "tools": Grant(PRODUCT, ("posix", "cli11", "pugixml", "libzip"), generated=True),
    "examples": Grant(PRODUCT, ("posix",), generated=True),
    "bench": Grant(PRODUCT, ("posix", "benchmark", "python", "pybind11"), generated=True),
    "tests": Grant(PRODUCT, ("posix", "gtest"), generated=True),
}

# Other libraries, by what their headers' names begin with.
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

# The C++ standard library's headers, those it takes over from C included, have no ending.
STANDARD = re.compile(r"[a-z0-9_]+$")
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:<([^>]+)>|"([^"]+)")', re.MULTILINE)


@dataclass
class House:
    """One tree of sources with its rooms."""

    root: pathlib.Path
    generated: pathlib.Path | None = None
    grants: dict[str, Grant] = field(default_factory=lambda: HOUSE)

    def reach(self, room: str) -> set[str]:
        """The rooms whose headers `room` may include: its own and all below it."""
        reached: set[str] = set()
        waiting = [room]
        while waiting:
            current = waiting.pop()
            if current not in reached:
                reached.add(current)
                waiting += self.grants[current].rooms
        return reached

    def complaint(self, room: str, file: pathlib.Path, angle: str, quoted: str) -> str | None:
        """What is wrong with one include, or None."""
        if quoted:
            target = (file.parent / quoted).resolve()
            if not target.is_relative_to((self.root / room).resolve()):
                return f'"{quoted}" leaves the room'
            return None if target.is_file() else f'"{quoted}" isn\'t there; write <...> for headers of other rooms'
        if STANDARD.match(angle):
            return None
        reached = self.reach(room)
        for owner in self.grants:
            if (self.root / owner / "include" / angle).is_file():
                return None if owner in reached else f"<{angle}> is of {owner}/, which {room}/ may not use"
        for name, pattern in LIBRARIES.items():
            if pattern.match(angle):
                granted = any(name in self.grants[below].libraries for below in reached)
                return None if granted else f"<{angle}> is of {name}, which {room}/ may not use"
        if self.is_generated(angle):
            return None if self.grants[room].generated else f"<{angle}> is generated, and {room}/ knows no schema"
        if self.generated is None and self.grants[room].generated:
            return None  # nothing was generated yet, so it can't be told
        return f"<{angle}> is of no room and no library that is known here"

    def is_generated(self, header: str) -> bool:
        if self.generated is None:
            return False
        return any((package / "include" / header).is_file() for package in self.generated.iterdir())

    def complaints(self) -> list[str]:
        """All that is wrong, a line each, in order of file and line."""
        found = []
        for room in sorted(self.grants):
            inner = [self.root / other for other in self.grants if other.startswith(f"{room}/")]
            for file in sorted((self.root / room).rglob("*")):
                if any(file.is_relative_to(other) for other in inner):
                    continue
                # What a generator is expected to write isn't written by hand.
                if file.suffix not in (".h", ".cpp") or "expected" in file.parts:
                    continue
                text = file.read_text(encoding="utf-8")
                for match in INCLUDE.finditer(text):
                    wrong = self.complaint(room, file, match[1] or "", match[2] or "")
                    if wrong:
                        line = text.count("\n", 0, match.start()) + 1
                        found.append(f"{file.relative_to(self.root)}:{line}: {wrong}")
        return found


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("--generated", type=pathlib.Path, help="where the build puts generated packages")
    options = parser.parse_args()
    generated = options.generated if options.generated and options.generated.is_dir() else None
    found = House(options.root, generated).complaints()
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
