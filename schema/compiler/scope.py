"""Resolves names: the types of a package and of the packages that it brings up, with the parts of each class
together."""

from __future__ import annotations

from collections.abc import Iterator
from dataclasses import dataclass
from typing import TypeVar, Union

from compiler import form

ELEMENT = "ModelElement"
MODEL = "Model"
META_URI = "quay0://quay/quay0/meta/19700101"

PRIMITIVES = ("Boolean", "Integer", "UnlimitedNatural", "UInteger64", "Real", "String", "StdString", "ZxArray")
# Types that only operations take: the runtime's model, and pointers into the environment.
OPERATION_TYPES = (MODEL, "nativeTypes.DataTypeTablePtr", "nativeTypes.VwBlockPtr")


@dataclass(frozen=True)
class PrimitiveType:
    name: str


@dataclass(frozen=True, eq=False)
class EnumerationType:
    entry: form.Enumeration
    scope: Scope


@dataclass(frozen=True, eq=False)
class DataType:
    entry: form.DataType
    scope: Scope

    @property
    def properties(self) -> list[form.Property]:
        """The fields in order."""
        return list(self.entry.properties)


@dataclass(frozen=True, eq=False)
class ClassType:
    """A class: the entry that declares it, and the entries that continue it."""

    entry: form.Class
    scope: Scope
    continuations: tuple[form.Class, ...]

    @property
    def parts(self) -> tuple[form.Class, ...]:
        return (self.entry, *self.continuations)

    @property
    def properties(self) -> list[form.Property]:
        """The own properties of all parts by index, a derived one right after its source; misplaced ones last."""
        found = [p for part in self.parts for p in part.properties]
        indices = {p.name: p.index for p in found}

        def rank(p: form.Property) -> tuple[float, bool]:
            index = indices.get(p.derives) if p.derives else p.index
            return (float("inf") if index is None else index, p.derives is not None)

        return sorted(found, key=rank)

    @property
    def operations(self) -> tuple[form.Operation, ...]:
        return tuple(o for part in self.parts for o in part.operations)


OwnType = Union[EnumerationType, DataType, ClassType]
Type = Union[PrimitiveType, OwnType]
_Named = TypeVar("_Named", EnumerationType, DataType, ClassType)


def describe(found: Type) -> str:
    """A type's kind, as sentences about mistakes call it."""
    if isinstance(found, ClassType):
        return "a class"
    if isinstance(found, EnumerationType):
        return "an enumeration"
    return "a data type" if isinstance(found, DataType) else "a primitive type"


class Scope:
    """The names that the files of one package can use. If two types have the same name, the first counts."""

    def __init__(self, package: form.Package, shared: dict[int, Scope] | None = None) -> None:
        # A package that several packages bring up has one scope.
        shared = {} if shared is None else shared
        shared[id(package)] = self
        self.package = package
        self.foreign: dict[str, Scope] = {}
        for other in package.brings_up:
            self.foreign[other.schema.name] = shared[id(other)] if id(other) in shared else Scope(other, shared)

        continuations: dict[str, list[form.Class]] = {}
        for entry in package.classes:
            if entry.continued:
                continuations.setdefault(entry.name, []).append(entry)
        self.own: dict[str, OwnType] = {}
        self.enumerations = self._enter(EnumerationType(e, self) for e in package.enumerations)
        self.data_types = self._enter(DataType(d, self) for d in package.data_types)
        self.classes = self._enter(
            ClassType(c, self, tuple(continuations.get(c.name, ()))) for c in package.classes if not c.continued
        )

    def find(self, name: str) -> Type | None:
        """The type with this name, as a property's `type` gives it: a foreign type is qualified by its package."""
        if name in PRIMITIVES:
            return PrimitiveType(name)
        if name in self.own:
            return self.own[name]
        package, _, last = name.rpartition(".")
        return self.foreign[package].own.get(last) if package in self.foreign else None

    def base_of(self, cls: ClassType) -> ClassType | None:
        """The superclass. None for a plain element, and for a base that doesn't exist or isn't a class."""
        base = cls.entry.base
        found = None if base is None else cls.scope.find(base)
        return found if isinstance(found, ClassType) else None

    def ancestors(self, cls: ClassType) -> list[ClassType]:
        """The superclasses, nearest first; stops at the first one that occurs twice."""
        chain: list[ClassType] = []
        base = self.base_of(cls)
        while base is not None and base is not cls and base not in chain:
            chain.append(base)
            base = self.base_of(base)
        return chain

    def first_index(self, cls: ClassType) -> int:
        """The index at which a class's own properties start: the one after its superclass's last."""
        return 1 + sum(p.derives is None for ancestor in self.ancestors(cls) for p in ancestor.properties)

    def _enter(self, types: Iterator[_Named]) -> dict[str, _Named]:
        """Adds those whose name isn't in use."""
        free = {}
        for one in types:
            if self.own.setdefault(one.entry.name, one) is one:
                free[one.entry.name] = one
        return free

    def structured(self) -> list[ClassType | DataType]:
        """Classes and data types in byte order of their names."""
        found: list[ClassType | DataType] = [*self.classes.values(), *self.data_types.values()]
        return sorted(found, key=lambda one: one.entry.name)

    def names(self) -> Iterator[str]:
        """Every type name that can be written in this package."""
        yield from PRIMITIVES
        yield from self.own
        for package, scope in self.foreign.items():
            yield from (f"{package}.{name}" for name in scope.own)

    def all(self) -> list[Scope]:
        """This scope and the scopes of all packages below it, each once."""
        found = [self]
        for other in self.foreign.values():
            found += [scope for scope in other.all() if scope not in found]
        return found
