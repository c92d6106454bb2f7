"""Makes every decision about a package's output, as plain data that the templates loop over."""

from __future__ import annotations

from dataclasses import dataclass

from compiler import cpp, form
from compiler.names import flat, lower, slot, slots
from compiler.plan_class import Maps, PlannedClass, bases_first, keyed_maps, native_declarations, plan_class
from compiler.files import all_header
from compiler.plan_docs import PlannedDoc, plan_docs
from compiler.plan_property import MetaProperty, plan_constrainable, plan_meta
from compiler.scope import Scope


@dataclass(frozen=True)
class PlannedLiteral:
    name: str
    doc: str
    value: int
    meta_name: str
    id: str
    slot: str


@dataclass(frozen=True)
class PlannedEnumeration:
    name: str
    qualified: str
    doc: str
    literals: tuple[PlannedLiteral, ...]
    meta_name: str
    id: str
    slot: str
    script: str
    table: str


@dataclass(frozen=True)
class PlannedDataType:
    """A value type: its class is written by hand, and declared here."""

    name: str
    qualified: str
    fields: tuple[MetaProperty, ...]
    meta_name: str
    id: str
    slot: str
    script: str
    table: str


@dataclass(frozen=True)
class PlannedPrimitive:
    meta_name: str
    slot: str


@dataclass(frozen=True)
class PlannedSlot:
    meta: str
    name: str


@dataclass(frozen=True)
class PlannedPackage:
    """A package and all of its types, each kind in byte order of the names."""

    source: str
    folder: str
    namespace: str
    api: str
    # The meta package: qualified, the class alone, its namespace (empty for none).
    meta_qualified: str
    meta_class: str
    meta_namespace: str
    # The schema package's name, which is also the name of its slot.
    schema: str
    schema_slot: str
    brings_up: tuple[str, ...]
    imports: tuple[str, ...]
    imports_table: str
    id: str
    uri: str
    schema_name: str
    schema_uri: str
    native_prefix: str
    script_prefix: str
    slots: tuple[tuple[PlannedSlot, ...], ...]
    classes: tuple[PlannedClass, ...]
    handles: tuple[PlannedClass, ...]
    enumerations: tuple[PlannedEnumeration, ...]
    data_types: tuple[PlannedDataType, ...]
    primitives: tuple[PlannedPrimitive, ...]
    classes_table: str
    enumerations_table: str
    data_types_table: str
    primitives_table: str
    native_declarations: tuple[str, ...]
    handles_includes: tuple[str, ...]
    meta_includes: tuple[str, ...]
    all_includes: tuple[str, ...]
    # Docs for scripts; empty unless they are wanted.
    docs: tuple[PlannedDoc, ...]


@dataclass(frozen=True)
class OutputFile:
    """A file below the output folder, the template that it is made from and, for a class's own file, the class."""

    path: str
    template: str
    cls: PlannedClass | None = None


@dataclass(frozen=True)
class Plan:
    package: PlannedPackage
    files: tuple[OutputFile, ...]


def plan(scope: Scope, with_docs: bool = False) -> Plan:
    """Plans the output of a package without mistakes; `with_docs` adds the docs that scripts show as help."""
    package = _plan_package(scope, plan_docs(scope) if with_docs else ())
    return Plan(package, _plan_files(scope.package, package))


def _plan_package(scope: Scope, docs: tuple[PlannedDoc, ...]) -> PlannedPackage:
    package = scope.package
    schema = package.schema
    meta_namespace, _, meta_class = package.singleton.rpartition("::")
    meta_header = cpp.header_path(package, meta_class)
    maps: Maps = keyed_maps(scope)
    classes = {name: plan_class(scope, scope.classes[name], maps, meta_header) for name in sorted(scope.classes)}
    enumerations = tuple(_plan_enumeration(scope, name) for name in sorted(scope.enumerations))
    data_types = tuple(_plan_data_type(scope, name) for name in sorted(scope.data_types))
    primitives = tuple(PlannedPrimitive(cpp.text16(word.text), word.text) for word in package.primitives)
    return PlannedPackage(
        source=package.file.name,
        folder=schema.namespace.replace("::", "/"),
        namespace=schema.namespace,
        api=f"{package.library.upper()}_API",
        meta_qualified=package.singleton,
        meta_class=meta_class,
        meta_namespace=meta_namespace,
        schema=schema.name,
        schema_slot=flat(schema.name),
        brings_up=tuple(other.singleton for other in package.brings_up),
        imports=tuple(cpp.text16(word.text) for word in package.imports),
        imports_table="imports" if package.imports else "{}",
        id=cpp.text(package.id or ""),
        uri=cpp.text16(package.uri),
        schema_name=cpp.text16(schema.name),
        schema_uri=cpp.text16(schema.uri),
        native_prefix=cpp.text(f"{schema.namespace}::"),
        script_prefix=cpp.text(f"{schema.script}."),
        slots=_slot_groups(scope),
        classes=tuple(classes.values()),
        handles=tuple(classes[cls.entry.name] for cls in bases_first(scope)),
        enumerations=enumerations,
        data_types=data_types,
        primitives=primitives,
        classes_table="classes" if classes else "{}",
        enumerations_table="enums" if enumerations else "{}",
        data_types_table="dataTypes" if data_types else "{}",
        primitives_table="primitives" if primitives else "{}",
        native_declarations=native_declarations(scope),
        handles_includes=_handles_includes(scope),
        meta_includes=_meta_includes(scope),
        all_includes=_all_includes(scope, meta_header),
        docs=docs,
    )


def _plan_enumeration(scope: Scope, name: str) -> PlannedEnumeration:
    found = scope.enumerations[name]
    entry = found.entry
    return PlannedEnumeration(
        name=name,
        qualified=cpp.qualified(found),
        doc=entry.doc or "",
        literals=tuple(
            PlannedLiteral(
                name=literal.name,
                doc=literal.doc or "",
                value=literal.value,
                meta_name=cpp.text16(literal.name),
                id=cpp.text(literal.id or ""),
                slot=slot(name, literal.name),
            )
            for literal in entry.literals
        ),
        meta_name=cpp.text16(name),
        id=cpp.text(entry.id or ""),
        slot=slot(name),
        script=cpp.text(entry.script) if entry.script else "",
        table=f"{lower(name)}Literals",
    )


def _plan_data_type(scope: Scope, name: str) -> PlannedDataType:
    found = scope.data_types[name]
    entry = found.entry
    return PlannedDataType(
        name=name,
        qualified=cpp.qualified(found),
        fields=tuple(plan_meta(name, prop) for prop in entry.properties),
        meta_name=cpp.text16(name),
        id=cpp.text(entry.id or ""),
        slot=slot(name),
        script=cpp.text(entry.script) if entry.script else "",
        table=f"{lower(name)}Fields",
    )


def _slot_groups(scope: Scope) -> tuple[tuple[PlannedSlot, ...], ...]:
    """The meta package's members in groups: a type starts a group, and so do the packages and the primitive types."""
    starts = ("Class", "DataType", "Enum")
    groups: list[list[PlannedSlot]] = []
    previous = ""
    for one in slots(scope):
        if one.meta in starts or (one.meta in ("Package", "PrimitiveType") and one.meta != previous):
            groups.append([])
        groups[-1].append(PlannedSlot(one.meta, one.name))
        previous = one.meta
    return tuple(map(tuple, groups))


def _handles_includes(scope: Scope) -> tuple[str, ...]:
    """The headers of foreign bases, and of the types that operations take and queries compare with."""
    found = {cpp.header_path(scope.package, "export")}
    for cls in scope.classes.values():
        base = scope.base_of(cls)
        if base is not None and base.scope is not scope:
            found.add(cpp.header(base) or "")
        for owner in (cls, *scope.ancestors(cls)):
            for prop in owner.properties:
                used = owner.scope.find(prop.type)
                path = cpp.header(used) if used and plan_constrainable(scope, owner, prop) else None
                if path and path != cpp.header(cls):
                    found.add(path)
        for operation in cls.operations:
            for name in (operation.result, *(argument.type for argument in operation.arguments)):
                used = scope.find(name)
                path = cpp.header(used) if used else None
                if path and path != cpp.header(cls):
                    found.add(path)
    return tuple(sorted(found))


def _meta_includes(scope: Scope) -> tuple[str, ...]:
    """The headers that the declaration needs: those of the package's own types, and of the packages to bring up."""
    found = {cpp.header_path(other, other.singleton.rpartition("::")[2]) for other in scope.package.brings_up}
    found |= {cpp.header(one) or "" for one in scope.own.values()}
    return tuple(sorted(found))


def _all_includes(scope: Scope, meta_header: str) -> tuple[str, ...]:
    names = [*scope.classes, *scope.data_types]
    found = {meta_header, *(cpp.header_path(scope.package, name) for name in names)}
    return tuple(sorted(found | {cpp.header(one) or "" for one in scope.own.values()}))


def _plan_files(entry: form.Package, package: PlannedPackage) -> tuple[OutputFile, ...]:
    include = f"include/{package.folder}"
    files = [OutputFile(f"{include}/export.h", "export.h.j2")]
    if package.enumerations:
        files.append(OutputFile(f"{include}/Enumerations.h", "Enumerations.h.j2"))
    if package.classes:
        files.append(OutputFile(f"{include}/Handles.h", "Handles.h.j2"))
    for cls in package.classes:
        files.append(OutputFile(f"{include}/{cls.name}.h", "class.h.j2", cls))
        files.append(OutputFile(f"src/{cls.name}.cpp", "class.cpp.j2", cls))
    files.append(OutputFile(f"{include}/{all_header(entry)}.h", "all.h.j2"))
    files.append(OutputFile(f"{include}/{package.meta_class}.h", "meta_package.h.j2"))
    files.append(OutputFile(f"src/{package.meta_class}.cpp", "meta_package.cpp.j2"))
    if package.docs:
        files.append(OutputFile("src/ScriptDocs.cpp", "script_docs.cpp.j2"))
    return tuple(sorted(files, key=lambda file: file.path))
