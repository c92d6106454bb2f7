"""The entries of schema files in the form that they have there, each with its place. Nothing has been checked yet."""

from __future__ import annotations

from dataclasses import dataclass
from pathlib import Path

from compiler.mistakes import Place


@dataclass(frozen=True)
class Word:
    """A text of a list, such as one imported URI."""

    place: Place
    text: str


@dataclass(frozen=True)
class Described:
    """The fields of every named entry. An id or doc that was left out is None."""

    place: Place
    name: str
    id: str | None
    doc: str | None


@dataclass(frozen=True)
class Literal(Described):
    value: int


@dataclass(frozen=True)
class Enumeration(Described):
    script: str | None
    literals: tuple[Literal, ...]


@dataclass(frozen=True)
class Property(Described):
    index: int | None
    derives: str | None
    type: str
    shape: str
    default: str | None
    key: str | None
    # Whether queries have no function for the property.
    unqueried: bool


@dataclass(frozen=True)
class DataType(Described):
    script: str | None
    properties: tuple[Property, ...]


@dataclass(frozen=True)
class Argument(Described):
    type: str


@dataclass(frozen=True)
class Operation(Described):
    result: str
    arguments: tuple[Argument, ...]


@dataclass(frozen=True)
class Class(Described):
    """A class; with `continued`, more properties and operations of a class that an earlier file declared."""

    base: str | None
    abstract: bool
    script: str | None
    continued: bool
    properties: tuple[Property, ...]
    operations: tuple[Operation, ...]


@dataclass(frozen=True)
class SchemaHead:
    """The package that holds the types, below the unnamed root package."""

    place: Place
    name: str
    uri: str
    namespace: str
    script: str


@dataclass(frozen=True)
class Package:
    """A package with all its type files, and with the packages that it brings up."""

    place: Place
    file: Path
    singleton: str
    library: str
    id: str | None
    uri: str
    schema: SchemaHead
    imports: tuple[Word, ...]
    primitives: tuple[Word, ...]
    enumerations: tuple[Enumeration, ...]
    data_types: tuple[DataType, ...]
    classes: tuple[Class, ...]
    brings_up: tuple[Package, ...]
