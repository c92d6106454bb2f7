"""YAML to entries: reads a package, its type files and the packages that it brings up.

Checks only the form: that files parse, that keys are known and there, that values have the right YAML type.
"""

from __future__ import annotations

from pathlib import Path

from compiler.entry import Entry, Unreadable, read_file
from compiler.form import (
    Argument,
    Class,
    DataType,
    Enumeration,
    Literal,
    Operation,
    Package,
    Property,
    SchemaHead,
)
from compiler.mistakes import Place, Report


def load(file: Path, report: Report) -> Package | None:
    """Reads the package that `file` describes. None, after a report, if something could not be read."""
    return _Loading(report).package(file, None)


class _Loading:
    """One run: reads each package once, even if several packages bring it up."""

    def __init__(self, report: Report) -> None:
        self._report = report
        self._done: dict[Path, Package | None] = {}
        self._open: list[Path] = []

    def package(self, file: Path, place: Place | None) -> Package | None:
        real = file.resolve()
        if real in self._open:
            self._report.add(place or Place(str(file), 1), "", f"{file} brings up itself")
            return None
        if real not in self._done:
            self._open.append(real)
            try:
                self._done[real] = self._read_package(file, place)
            except Unreadable:
                self._done[real] = None
            self._open.pop()
        return self._done[real]

    def _read_package(self, file: Path, place: Place | None) -> Package | None:
        top = read_file(file, self._report, place)
        entry = top.child("package")
        top.close()
        head = entry.child("schema")
        schema = SchemaHead(
            head.place,
            head.text("name"),
            head.text("uri"),
            head.text("namespace"),
            head.text("script"),
        )
        head.close()

        types = _Types([], [], [])
        complete = True
        folder = file.parent
        for word in entry.words("files"):
            try:
                types.read(read_file(folder / f"{word.text}.yaml", self._report, word.place))
            except Unreadable:
                complete = False
        brings_up = []
        for word in entry.words("brings_up"):
            other = self.package(folder / word.text / "package.yaml", word.place)
            if other is None:
                complete = False
            else:
                brings_up.append(other)

        package = Package(
            place=entry.place,
            file=file,
            singleton=entry.text("singleton"),
            library=entry.text("library"),
            id=entry.optional_text("id"),
            uri=entry.text("uri"),
            schema=schema,
            imports=entry.words("imports"),
            primitives=entry.words("primitives"),
            enumerations=tuple(types.enumerations),
            data_types=tuple(types.data_types),
            classes=tuple(types.classes),
            brings_up=tuple(brings_up),
        )
        entry.close()
        return package if complete else None


class _Types:
    """The types of a package, file by file."""

    def __init__(self, enumerations: list[Enumeration], data_types: list[DataType], classes: list[Class]) -> None:
        self.enumerations = enumerations
        self.data_types = data_types
        self.classes = classes

    def read(self, file: Entry) -> None:
        file.text("domain")
        self.enumerations += file.children("enumerations", _enumeration)
        self.data_types += file.children("data_types", _data_type)
        self.classes += file.children("classes", _class)
        file.close()


def _enumeration(entry: Entry) -> Enumeration:
    return Enumeration(
        entry.place,
        entry.text("name"),
        entry.optional_text("id"),
        entry.optional_text("doc"),
        script=entry.optional_text("script"),
        literals=entry.children("literals", _literal),
    )


def _literal(entry: Entry) -> Literal:
    return Literal(
        entry.place,
        entry.text("name"),
        entry.optional_text("id"),
        entry.optional_text("doc"),
        value=entry.whole("value"),
    )


def _data_type(entry: Entry) -> DataType:
    return DataType(
        entry.place,
        entry.text("name"),
        entry.optional_text("id"),
        entry.optional_text("doc"),
        script=entry.optional_text("script"),
        properties=entry.children("properties", _property),
    )


def _class(entry: Entry) -> Class:
    continued = entry.flag("continued")
    return Class(
        entry.place,
        entry.text("name"),
        # The entry that declares a class has these; an entry that continues it only adds members.
        None if continued else entry.optional_text("id"),
        None if continued else entry.optional_text("doc"),
        base=None if continued else entry.optional_text("base"),
        abstract=False if continued else entry.flag("abstract"),
        script=None if continued else entry.optional_text("script"),
        continued=continued,
        properties=entry.children("properties", _property),
        operations=entry.children("operations", _operation),
    )


def _property(entry: Entry) -> Property:
    return Property(
        entry.place,
        entry.text("name"),
        entry.optional_text("id"),
        entry.optional_text("doc"),
        index=entry.optional_whole("index"),
        derives=entry.optional_text("derives"),
        type=entry.text("type"),
        shape=entry.text("shape"),
        default=entry.optional_text("default"),
        key=entry.optional_text("key"),
        unqueried=entry.flag("unqueried"),
    )


def _operation(entry: Entry) -> Operation:
    return Operation(
        entry.place,
        entry.text("name"),
        entry.optional_text("id"),
        entry.optional_text("doc"),
        result=entry.text("result"),
        arguments=entry.children("arguments", _argument),
    )


def _argument(entry: Entry) -> Argument:
    return Argument(
        entry.place,
        entry.text("name"),
        entry.optional_text("id"),
        entry.optional_text("doc"),
        type=entry.text("type"),
    )
