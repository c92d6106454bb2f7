"""Visits every entry of a package, including duplicated and misplaced ones."""

from __future__ import annotations

from collections.abc import Iterator

from compiler import form


def described(package: form.Package) -> Iterator[tuple[str, form.Described]]:
    """Every entry that needs an id and a doc, with its qualified name below the package ("Bed.label")."""
    for enumeration in package.enumerations:
        yield enumeration.name, enumeration
        yield from _members(enumeration.name, enumeration.literals)
    for data_type in package.data_types:
        yield data_type.name, data_type
        yield from _members(data_type.name, data_type.properties)
    for cls in package.classes:
        if not cls.continued:
            yield cls.name, cls
        yield from _members(cls.name, cls.properties)
        for operation in cls.operations:
            name = f"{cls.name}.{operation.name}"
            yield name, operation
            yield from _members(name, operation.arguments)


def types(package: form.Package) -> Iterator[form.Enumeration | form.DataType | form.Class]:
    """Every entry that declares a type."""
    yield from package.enumerations
    yield from package.data_types
    yield from (cls for cls in package.classes if not cls.continued)


def _members(owner: str, members: tuple[form.Described, ...]) -> Iterator[tuple[str, form.Described]]:
    for member in members:
        yield f"{owner}.{member.name}", member
