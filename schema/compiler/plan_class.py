"""Makes all decisions about a class: its base, its includes, the order of its members."""

from __future__ import annotations

from dataclasses import dataclass

from compiler import cpp, form
from compiler.names import lower, slot, upper
from compiler.plan_property import (
    KeyedMap,
    PlannedConstrainable,
    PlannedProperty,
    plan_constrainable,
    plan_property,
)
from compiler.scope import ClassType, Scope

_ELEMENT = "quay::zero::ModelElement"
_ROW_WIDTH = 105


@dataclass(frozen=True)
class PlannedArgument:
    name: str
    passed: str
    meta_name: str
    meta_type: str
    id: str
    slot: str


@dataclass(frozen=True)
class PlannedOperation:
    """A static operation of the handle; its body is written by hand."""

    name: str
    doc: str
    result: str
    arguments: tuple[PlannedArgument, ...]
    meta_name: str
    meta_result: str
    id: str
    slot: str
    table: str


@dataclass(frozen=True)
class PlannedClass:
    """A class and its properties."""

    name: str
    qualified: str
    doc: str
    sources: str
    base: str
    # For a class without superclass the builder's base comes from the pattern, otherwise from the superclass.
    base_is_element: bool
    abstract: bool
    first_index: int
    # The headers of the fields: those of the runtime and those of packages.
    field_includes: tuple[str, ...]
    header_includes: tuple[str, ...]
    source_includes: tuple[str, ...]
    # All properties by index, a derived one right after its source; then the properties without the derived ones.
    properties: tuple[PlannedProperty, ...]
    indexed: tuple[PlannedProperty, ...]
    # The properties with values whose setters are to be defined, and the properties that own children.
    set_values: tuple[PlannedProperty, ...]
    children: tuple[PlannedProperty, ...]
    # The fields, values before children; and the fields that the constructor connects with the element.
    fields: tuple[PlannedProperty, ...]
    collections: tuple[PlannedProperty, ...]
    # The properties in the order of descriptors, those with an index first; and the descriptors cut into source lines.
    descriptors: tuple[PlannedProperty, ...]
    descriptor_lines: tuple[tuple[str, ...], ...]
    # The functions for queries: those of the class's own properties, and those of all, inherited ones first.
    constrainables: tuple[PlannedConstrainable, ...]
    all_constrainables: tuple[PlannedConstrainable, ...]
    operations: tuple[PlannedOperation, ...]
    meta_name: str
    meta_base: str
    id: str
    slot: str
    script: str
    properties_table: str
    operations_table: str


Maps = dict[tuple[str, str], tuple[KeyedMap, ...]]


def keyed_maps(scope: Scope) -> Maps:
    """The maps that each property is the key of, by class and property name; owners in byte order."""
    found: dict[tuple[str, str], list[KeyedMap]] = {}
    for owner in sorted(scope.classes):
        for prop in scope.classes[owner].properties:
            child = scope.find(prop.type)
            if prop.key is None or not isinstance(child, ClassType):
                continue
            holder = next(c for c in [child, *scope.ancestors(child)] if any(p.name == prop.key for p in c.properties))
            one = KeyedMap(owner, prop.index or 0, prop.shape == "map owned")
            found.setdefault((holder.entry.name, prop.key), []).append(one)
    return {key: tuple(maps) for key, maps in found.items()}


def plan_class(scope: Scope, cls: ClassType, maps: Maps, meta_header: str) -> PlannedClass:
    """Plans a class; `maps` are those of the whole package."""
    entry = cls.entry
    name = entry.name
    properties = tuple(plan_property(scope, cls, p, maps.get((name, p.name), ())) for p in cls.properties)
    indexed = tuple(p for p in properties if p.index)
    values = tuple(p for p in indexed if not p.owned)
    children = tuple(p for p in indexed if p.owned)
    descriptors = indexed + tuple(p for p in properties if not p.index)
    base = scope.base_of(cls)
    return PlannedClass(
        name=name,
        qualified=cpp.qualified(cls),
        doc=entry.doc or "",
        sources=_sources(cls),
        base=cpp.type_name(base, scope) if base else _ELEMENT,
        base_is_element=base is None,
        abstract=entry.abstract,
        first_index=scope.first_index(cls),
        field_includes=tuple(sorted({p.shape.header for p in properties if p.shape.header})),
        header_includes=_header_includes(scope, cls, base),
        source_includes=_source_includes(scope, cls, meta_header),
        properties=properties,
        indexed=indexed,
        set_values=tuple(p for p in values if p.has_setter),
        children=children,
        fields=values + children,
        collections=tuple(p for p in values + children if p.shape.collection),
        descriptors=descriptors,
        descriptor_lines=_lines([p.descriptor for p in descriptors]),
        constrainables=_plan_constrainables(scope, [cls]),
        all_constrainables=_plan_constrainables(scope, [*reversed(scope.ancestors(cls)), cls]),
        operations=tuple(_plan_operation(scope, name, operation) for operation in cls.operations),
        meta_name=cpp.text16(name),
        meta_base=cpp.text16(entry.base or "ModelElement"),
        id=cpp.text(entry.id or ""),
        slot=slot(name),
        script=cpp.text(entry.script) if entry.script else "",
        properties_table=f"{lower(name)}Properties" if properties else "{}",
        operations_table=f"{lower(name)}Operations" if cls.operations else "{}",
    )


def bases_first(scope: Scope) -> list[ClassType]:
    """The classes in byte order of their names, but each after its superclass."""
    ordered: dict[str, ClassType] = {}
    for name in sorted(scope.classes):
        chain = [scope.classes[name], *scope.ancestors(scope.classes[name])]
        for cls in reversed(chain):
            if cls.scope is scope:
                ordered.setdefault(cls.entry.name, cls)
    return list(ordered.values())


def native_declarations(scope: Scope) -> tuple[str, ...]:
    """The forward declarations of the environment's types that operations take."""
    operations = [o for cls in scope.classes.values() for o in cls.operations]
    names = {name for o in operations for name in (o.result, *(a.type for a in o.arguments))}
    natives = [cpp.native(name, scope) for name in names]
    return tuple(sorted({n.declaration for n in natives if n and n.declaration}))


def _plan_constrainables(scope: Scope, chain: list[ClassType]) -> tuple[PlannedConstrainable, ...]:
    planned = (plan_constrainable(scope, cls, prop) for cls in chain for prop in cls.properties)
    return tuple(one for one in planned if one)


def _sources(cls: ClassType) -> str:
    files: list[str] = []
    for part in cls.parts:
        file = part.place.file.rpartition("/")[2]
        if file not in files:
            files.append(file)
    return " and ".join(files)


def _header_includes(scope: Scope, cls: ClassType, base: ClassType | None) -> tuple[str, ...]:
    """The headers that a class's header needs; a superclass must be complete."""
    found = {cpp.header(cls)}
    if base is not None:
        found |= {cpp.header(base), cpp.header_path(base.scope.package, base.entry.name)}
    for prop in cls.properties:
        used = scope.find(prop.type)
        found.add(cpp.header(used) if used else None)
    return tuple(sorted(path for path in found if path))


def _source_includes(scope: Scope, cls: ClassType, meta_header: str) -> tuple[str, ...]:
    """The headers that a class's source needs: those of its children, complete, and of its properties' meta
    packages."""
    found = {meta_header}
    for ancestor in scope.ancestors(cls):
        if any(plan_constrainable(scope, ancestor, prop) for prop in ancestor.properties):
            package = ancestor.scope.package
            found.add(cpp.header_path(package, package.singleton.rpartition("::")[2]))
    for prop in cls.properties:
        child = scope.find(prop.type)
        if isinstance(child, ClassType) and child is not cls:
            found.add(cpp.header_path(child.scope.package, child.entry.name))
    return tuple(sorted(found))


def _lines(names: list[str]) -> tuple[tuple[str, ...], ...]:
    """Cuts the list of descriptors into lines that aren't too long."""
    lines: list[list[str]] = []
    width = _ROW_WIDTH
    for name in names:
        length = len(f" &R::{name},")
        if width + length > _ROW_WIDTH:
            lines.append([])
            width = 0
        lines[-1].append(name)
        width += length
    return tuple(map(tuple, lines))


def _plan_operation(scope: Scope, owner: str, operation: form.Operation) -> PlannedOperation:
    arguments = tuple(
        PlannedArgument(
            name=argument.name,
            passed=_passed(scope, argument.type),
            meta_name=cpp.text16(argument.name),
            meta_type=cpp.text16(argument.type),
            id=cpp.text(argument.id or ""),
            slot=slot(owner, operation.name, argument.name),
        )
        for argument in operation.arguments
    )
    return PlannedOperation(
        name=operation.name,
        doc=operation.doc or "",
        result=_returned(scope, operation.result),
        arguments=arguments,
        meta_name=cpp.text16(operation.name),
        meta_result=cpp.text16(operation.result),
        id=cpp.text(operation.id or ""),
        slot=slot(owner, operation.name),
        table=f"{lower(owner)}{upper(operation.name)}Arguments" if arguments else "{}",
    )


def _passed(scope: Scope, name: str) -> str:
    found = scope.find(name)
    native = cpp.native(name, scope)
    assert found or native
    return cpp.passed(found, scope) if found else native.passed if native else ""


def _returned(scope: Scope, name: str) -> str:
    found = scope.find(name)
    return cpp.type_name(found, scope) if found else _passed(scope, name).removesuffix(" const&")
