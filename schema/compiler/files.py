"""The names of a package's files."""

from __future__ import annotations

from collections.abc import Iterator

from compiler import form


def header_names(package: form.Package) -> Iterator[tuple[str, str]]:
    """The headers that every package has: name without extension, and a description of the content."""
    yield "export", "the export macro"
    yield "Enumerations", "the enumerations"
    yield "Handles", "the handles"
    yield package.singleton.rpartition("::")[2], "the meta package"
    yield all_header(package), "all types together"


def all_header(package: form.Package) -> str:
    """The header that includes those of all types; it is named after the namespace."""
    return package.schema.namespace.rpartition("::")[2]


def folder(package: form.Package) -> str:
    """The folder of a package's headers below include/."""
    return package.schema.namespace.replace("::", "/")
