"""Reads one mapping of a YAML file key by key, and reports faults of its form."""

from __future__ import annotations

import importlib
import re
from collections.abc import Callable
from pathlib import Path
from typing import Any, TypeVar

from compiler.form import Word
from compiler.mistakes import Place, Report, did_you_mean

T = TypeVar("T")

# Loaded by name: the type stubs of yaml are a separate package, which may not be installed.
yaml: Any = importlib.import_module("yaml")
Node = Any

# The C parser is ten times as fast and has the same interface.
_PARSER = getattr(yaml, "CSafeLoader", yaml.SafeLoader)

_KINDS = {
    "str": "text",
    "int": "a whole number",
    "bool": "true or false",
    "float": "a number with a fraction",
    "null": "nothing",
    "timestamp": "a date",
    "map": "a mapping",
    "seq": "a list",
}


class Unreadable(Exception):
    """A fault after which an entry can't be used; it has been reported."""


def _kind(node: Node) -> str:
    return str(node.tag).rpartition(":")[2]


class Entry:
    """Reads a mapping's values by key and type.

    A value that is missing or of the wrong type is reported and read as empty, so that one run reports all faults of an
    entry; `close` then raises. A key that wasn't read is a fault, too.
    """

    def __init__(self, node: Node, file: str, owner: str, report: Report) -> None:
        self._file = file
        self._report = report
        self._asked: set[str] = set()
        self._nodes: dict[str, tuple[Node, Node]] = {}
        self._readable = True
        self.subject = owner
        self.place = self._place_of(node)
        if not isinstance(node, yaml.MappingNode):
            self._fault(node, f"here stands {self._describe(node)}, not a mapping of keys to values")
            raise Unreadable
        for key, value in node.value:
            self._nodes.setdefault(key.value, (key, value))
        if "name" in self._nodes and isinstance(self._nodes["name"][1], yaml.ScalarNode):
            name = self._nodes["name"][1].value
            self.subject = f"{owner}.{name}" if owner else name
        for key, _ in node.value:
            if self._nodes[key.value][0] is not key:
                self._fault(key, f'the key "{key.value}" is given twice')

    def text(self, key: str) -> str:
        """The text of a required key."""
        return self._text_of(self._required(key), key) or ""

    def optional_text(self, key: str) -> str | None:
        return self._text_of(self._find(key), key)

    def whole(self, key: str) -> int:
        """The whole number of a required key."""
        return self._whole_of(self._required(key), key) or 0

    def optional_whole(self, key: str) -> int | None:
        return self._whole_of(self._find(key), key)

    def flag(self, key: str) -> bool:
        """A truth value; false when the key isn't there."""
        node = self._find(key)
        if node is not None and _kind(node) != "bool":
            self._wrong(node, key, "true or false")
        return node is not None and str(node.value).lower() in ("true", "yes", "on")

    def words(self, key: str) -> tuple[Word, ...]:
        """The texts of a list; none when the key isn't there."""
        return tuple(Word(self._place_of(node), self._text_of(node, key) or "") for node in self._list(key))

    def child(self, key: str) -> Entry:
        """The mapping under a required key. Raises Unreadable if it isn't there."""
        node = self._required(key)
        if node is None:
            raise Unreadable
        return Entry(node, self._file, self.subject, self._report)

    def children(self, key: str, read: Callable[[Entry], T]) -> tuple[T, ...]:
        """Reads and closes the mappings of a list; leaves out those with a fault; none when the key isn't there."""
        results: list[T] = []
        for node in self._list(key):
            try:
                entry = Entry(node, self._file, self.subject, self._report)
                result = read(entry)
                entry.close()
                results.append(result)
            except Unreadable:
                self._readable = False
        return tuple(results)

    def close(self) -> None:
        """Ends the reading: reports unknown keys, and raises Unreadable if there was any fault."""
        for name, (key, _) in self._nodes.items():
            if name not in self._asked:
                self._fault(key, f'unknown key "{name}"{did_you_mean(name, self._asked)}')
        if not self._readable:
            raise Unreadable

    def _find(self, key: str) -> Node | None:
        self._asked.add(key)
        return self._nodes[key][1] if key in self._nodes else None

    def _required(self, key: str) -> Node | None:
        node = self._find(key)
        if node is None:
            self._readable = False
            self._report.add(self.place, self.subject, f'the key "{key}" is missing')
        return node

    def _list(self, key: str) -> list[Node]:
        node = self._find(key)
        if node is None:
            return []
        if not isinstance(node, yaml.SequenceNode):
            self._wrong(node, key, "a list")
            return []
        return list(node.value)

    def _text_of(self, node: Node | None, key: str) -> str | None:
        if node is None:
            return None
        if _kind(node) != "str":
            self._wrong(node, key, "text; put it in quotes" if isinstance(node, yaml.ScalarNode) else "text")
            return None
        return str(node.value)

    def _whole_of(self, node: Node | None, key: str) -> int | None:
        if node is None:
            return None
        if _kind(node) != "int":
            self._wrong(node, key, "a whole number")
            return None
        # YAML reads 010 as eight and 1:30 as ninety.
        if not re.fullmatch(r"0|-?[1-9][0-9]*", node.value):
            self._wrong(node, key, "one in decimal digits")
            return None
        return int(node.value)

    def _wrong(self, node: Node, key: str, expected: str) -> None:
        self._fault(node, f'"{key}" is {self._describe(node)}, but should be {expected}')

    def _describe(self, node: Node) -> str:
        kind = _KINDS.get(_kind(node), _kind(node))
        return f"{kind} ({node.value})" if isinstance(node, yaml.ScalarNode) and node.value else kind

    def _fault(self, node: Node, text: str) -> None:
        self._readable = False
        self._report.add(self._place_of(node), self.subject, text)

    def _place_of(self, node: Node) -> Place:
        return Place(self._file, node.start_mark.line + 1)


def read_file(path: Path, report: Report, place: Place | None = None) -> Entry:
    """Parses a file whose top is a mapping.

    `place` is where another file names this one; a file that isn't there is reported at it. Raises Unreadable.
    """
    try:
        with path.open(encoding="utf-8") as stream:
            node = yaml.compose(stream, Loader=_PARSER)
    except OSError as error:
        report.add(place or Place(str(path), 1), "", f"cannot read {path}: {error.strerror}")
        raise Unreadable from error
    except UnicodeDecodeError as error:
        report.add(Place(str(path), 1), "", f"the file is not UTF-8: {error.reason}")
        raise Unreadable from error
    except yaml.YAMLError as error:
        mark = getattr(error, "problem_mark", None) or getattr(error, "context_mark", None)
        line = mark.line + 1 if mark else 1
        text = getattr(error, "problem", None) or "the file is not YAML"
        report.add(Place(str(path), line), "", f"not valid YAML: {text}")
        raise Unreadable from error
    if node is None:
        report.add(Place(str(path), 1), "", "the file is empty")
        raise Unreadable
    return Entry(node, str(path), "", report)
