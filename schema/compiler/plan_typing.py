"""Makes all decisions about the type stubs of a package: modules with an interface for each class."""

from __future__ import annotations

from dataclasses import dataclass

from compiler import form
from compiler.names import upper
from compiler.plan_class import bases_first
from compiler.scope import ClassType, DataType, EnumerationType, OwnType, PrimitiveType, Scope, Type

_PRIMITIVES = {
    "Boolean": "bool",
    "Integer": "int",
    "UnlimitedNatural": "int",
    "UInteger64": "int",
    "Real": "float",
    "String": "str",
    "StdString": "str",
    # The content of an array is known at run time only.
    "ZxArray": "_Any",
}
_COLLECTIONS = {
    "sequence": "PrimitiveSequence",
    "set": "PrimitiveSet",
    "sequence owned": "Sequence",
    "set owned": "Set",
    "map owned": "Map",
    "multimap owned": "Multimap",
}


@dataclass(frozen=True)
class TypedProperty:
    """A property: its declaration in the class, and the type of its field in a class's initialiser, if it has one."""

    name: str
    doc: str
    # The type that reading gives. `written` differs from it where more types can be written.
    read: str
    written: str
    read_only: bool
    field: str
    # The method that creates a child in place, and the child's type; empty for none.
    creator: str = ""
    child: str = ""
    child_fields: str = ""


@dataclass(frozen=True)
class TypedClass:
    name: str
    doc: str
    base: str
    base_fields: str
    abstract: bool
    properties: tuple[TypedProperty, ...]

    @property
    def fields(self) -> tuple[TypedProperty, ...]:
        return tuple(p for p in self.properties if p.field)

    @property
    def creators(self) -> tuple[TypedProperty, ...]:
        """The methods that create children: those for collections come before those for single children."""
        made = [p for p in self.properties if p.creator]
        return tuple([p for p in made if p.read_only] + [p for p in made if not p.read_only])


@dataclass(frozen=True)
class TypedEnumeration:
    name: str
    doc: str
    literals: tuple[form.Literal, ...]


@dataclass(frozen=True)
class TypedDataType:
    name: str
    doc: str
    properties: tuple[TypedProperty, ...]


@dataclass(frozen=True)
class TypedModule:
    """A module by its script name. It imports whole modules, so that no name of a schema can hide another."""

    name: str
    source: str
    # Whether the whole module belongs to packages that the compiled package brings up.
    foreign: bool
    imports: tuple[str, ...]
    classes: tuple[TypedClass, ...]
    enumerations: tuple[TypedEnumeration, ...]
    data_types: tuple[TypedDataType, ...]


def plan_typing(scope: Scope) -> tuple[TypedModule, ...]:
    """The modules of a package and of all that it brings up, in order of their names."""
    found: dict[str, list[tuple[Scope, OwnType]]] = {}
    for one in scope.all():
        for own in one.own.values():
            found.setdefault(script_module(own), []).append((one, own))
    return tuple(_plan_module(module, found[module], scope) for module in sorted(found))


def script_name(found: OwnType) -> str:
    """A type's full script name."""
    return found.entry.script or f"{found.scope.package.schema.script}.{found.entry.name}"


def short_name(found: OwnType) -> str:
    """The name of a type within its module."""
    return script_name(found).rpartition(".")[2]


def script_module(found: OwnType) -> str:
    return script_name(found).rpartition(".")[0]


def _plan_module(module: str, types: list[tuple[Scope, OwnType]], compiled: Scope) -> TypedModule:
    attributes = frozenset(p.name for _, o in types if not isinstance(o, EnumerationType) for p in o.properties)
    user = _User(module, attributes)
    scopes = list(dict.fromkeys(scope for scope, _ in types))
    ordered = [cls for scope in scopes for cls in bases_first(scope) if script_module(cls) == module]
    own = [found for _, found in types]
    return TypedModule(
        name=module,
        source=", ".join(dict.fromkeys(f"{scope.package.schema.name}'s schema" for scope in scopes)),
        foreign=compiled not in scopes,
        classes=tuple(_plan_class(cls, user) for cls in ordered),
        enumerations=tuple(
            TypedEnumeration(short_name(e), e.entry.doc or "", e.entry.literals)
            for e in sorted((o for o in own if isinstance(o, EnumerationType)), key=lambda e: e.entry.name)
        ),
        data_types=tuple(
            TypedDataType(short_name(d), d.entry.doc or "", tuple(_plan_property(d.scope, p, user) for p in d.properties))
            for d in sorted((o for o in own if isinstance(o, DataType)), key=lambda d: d.entry.name)
        ),
        imports=tuple(sorted(user.imports)),
    )


class _User:
    """A module's names of types, and the imports that they need."""

    def __init__(self, module: str, attributes: frozenset[str]) -> None:
        self.module = module
        self.imports: set[str] = set()
        # Within a class, an attribute hides a type of the same name.
        self._attributes = attributes

    def name(self, found: Type, ending: str = "") -> str:
        if isinstance(found, PrimitiveType):
            return _PRIMITIVES[found.name]
        other = script_module(found)
        name = f"{short_name(found)}{ending}"
        if other == self.module and name not in self._attributes:
            return name
        self.imports.add(other)
        return f"{other}.{name}"


def _plan_class(cls: ClassType, user: _User) -> TypedClass:
    base = cls.scope.base_of(cls)
    return TypedClass(
        name=short_name(cls),
        doc=cls.entry.doc or "",
        base=user.name(base) if base else "_zero.ModelElement",
        base_fields=user.name(base, "Fields") if base else "_TypedDict",
        abstract=cls.entry.abstract,
        properties=tuple(_plan_property(cls.scope, p, user) for p in cls.properties),
    )


def _plan_property(scope: Scope, prop: form.Property, user: _User) -> TypedProperty:
    found = scope.find(prop.type)
    assert found is not None
    name = user.name(found)
    derived = prop.derives is not None
    common = {"name": prop.name, "doc": prop.doc or ""}
    if isinstance(found, ClassType):
        return _plan_children(scope, prop, found, user, common)
    if prop.shape in _COLLECTIONS:
        kind = _COLLECTIONS[prop.shape]
        members = f"_Members[{_taken(found, name)}]"
        return TypedProperty(**common, read=f"_zero.{kind}[{name}]", written="", read_only=True, field=members)
    if prop.shape == "optional":
        read, written = f"{name} | None", f"{_taken(found, name)} | None"
    else:
        read, written = name, _written(found, name)
    return TypedProperty(**common, read=read, written=written, read_only=False, field="" if derived else written)


def _plan_children(
    scope: Scope, prop: form.Property, child: ClassType, user: _User, common: dict[str, str]
) -> TypedProperty:
    name, fields = user.name(child), user.name(child, "Fields")
    made = {"creator": f"createInto{upper(prop.name)}", "child": name, "child_fields": fields}
    single = prop.shape == "single owned"
    # An abstract class can't be created from a dict, so its children can't be initialised.
    field = "" if child.entry.abstract else fields if single else f"_Children[{fields}]"
    if single:
        read = f"{name} | None"
        return TypedProperty(**common, read=read, written=read, read_only=False, field=field, **made)
    members = name
    if prop.key is not None:
        key = next(p for cls in [child, *scope.ancestors(child)] for p in cls.properties if p.name == prop.key)
        key_type = scope.find(key.type)
        assert key_type is not None
        members = f"{user.name(key_type)}, {name}"
    read = f"_zero.{_COLLECTIONS[prop.shape]}[{members}]"
    return TypedProperty(**common, read=read, written="", read_only=True, field=field, **made)


def _written(found: Type, name: str) -> str:
    """The types that can be written: more than a collection takes where None is the zero literal."""
    return f"{_taken(found, name)} | None" if isinstance(found, EnumerationType) else _taken(found, name)


def _taken(found: Type, name: str) -> str:
    """The types that are taken for a value: any number for a truth value, a literal's name or value for an
    enumeration."""
    if isinstance(found, EnumerationType):
        return f"{name} | str | int"
    if isinstance(found, PrimitiveType) and found.name == "Boolean":
        return "float"
    return name
