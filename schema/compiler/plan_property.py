"""Makes all decisions about a property: types, accessors, initial value, its descriptor and its line in the
declaration."""

from __future__ import annotations

from dataclasses import dataclass

from compiler import cpp, form
from compiler.names import lower, descriptor, slot, upper
from compiler.scope import ClassType, DataType, Scope, Type


@dataclass(frozen=True)
class Shape:
    """What follows from a property's shape: its template, its classes in the runtime, its word in the declaration.

    `header` is that of the field's class template.
    """

    template: str
    descriptor: str
    meta: str
    collection: str = ""
    header: str = ""


_VALUES = "quay/zero/primitive_collection.h"
_BOOLS = "quay/zero/bool_sequence.h"
_MAP = "quay/zero/element_map.h"
_SHAPES = {
    "single": Shape("value", "Single", "Single"),
    "optional": Shape("optional", "Optional", "Optional", header="boost/optional.hpp"),
    "sequence": Shape("values", "Sequence", "Sequence", "PrimitiveSequence", _VALUES),
    "set": Shape("values", "Set", "Set", "PrimitiveSet", _VALUES),
    "single owned": Shape("child", "SingleOwned", "SingleOwned"),
    "sequence owned": Shape(
        "children", "SequenceOwned", "SequenceOwned", "ElementSequence", "quay/zero/element_sequence.h"
    ),
    "set owned": Shape("children", "SetOwned", "SetOwned", "UnorderedElementSet", "quay/zero/element_set.h"),
    "map owned": Shape("keyed_children", "MapOwned", "MapOwned", "ElementMap", _MAP),
    "multimap owned": Shape("keyed_children", "MultimapOwned", "MultimapOwned", "ElementMultimap", _MAP),
}
_CONSTRAINABLES = {"single": "Constrainable", "optional": "OptionalConstrainable"}
_BOOLEANS = Shape("values", "Sequence", "Sequence", "PrimitiveSequence", _BOOLS)
_ARRAY = Shape("array", "SingleArray", "Single", header="zx/array_holder.h")
_KEY = Shape("key", "SingleKey", "Single")
_DERIVED = Shape("derived", "Derived", "Single")


@dataclass(frozen=True)
class KeyedMap:
    """A map that a property is the key of: its class, its index there, and whether it has one entry per key."""

    owner: str
    index: int
    unique: bool


@dataclass(frozen=True)
class MetaProperty:
    """A property's line in the declaration of the meta-model. Texts are C++ literals, or nullptr."""

    name: str
    shape: str
    type: str
    index: int
    default: str
    key: str
    id: str
    slot: str


@dataclass(frozen=True)
class PlannedProperty:
    """A class's property. `upper` is the name in accessors, `field` its field, `descriptor` its member of
    Descriptors."""

    name: str
    doc: str
    index: int
    upper: str
    field: str
    descriptor: str
    shape: Shape
    # The type of the value, or the handle of the child; and the type of a function's parameter for it.
    type: str
    passed: str
    # The expression with which a builder's setter passes its parameter on.
    given: str
    # The initial value of a plain field, including the tokens before it; empty for none.
    initial: str
    # Of a map: the type of its key, and the child's getter of the key. Of a key: its maps, and the array that lists
    # them.
    key_type: str
    key_getter: str
    maps: tuple[KeyedMap, ...]
    maps_name: str
    owned: bool
    # Whether the whole value can be set, not only member by member.
    has_setter: bool
    # Whether a child can be created without a builder.
    makes_child: bool
    meta: MetaProperty


def plan_property(scope: Scope, owner: ClassType, prop: form.Property, maps: tuple[KeyedMap, ...]) -> PlannedProperty:
    """Plans a class's property; `maps` are those that it is the key of."""
    found = scope.find(prop.type)
    assert found is not None
    member = descriptor(prop.name, scope)
    initial = cpp.value(found, prop.default, scope) if prop.shape == "single" else ""
    key = _key(scope, found, prop)
    key_type = scope.find(key.type) if key else None
    return PlannedProperty(
        name=prop.name,
        doc=prop.doc or "",
        index=prop.index or 0,
        upper=upper(prop.name),
        field=f"{lower(prop.name)}_",
        descriptor=member,
        shape=_shape(prop, maps),
        type=cpp.type_name(found, scope),
        passed=cpp.passed(found, scope),
        given="value" if cpp.is_scalar(found) else "std::move(value)",
        initial=f" = {initial}" if initial else "",
        key_type=cpp.type_name(key_type, scope) if key_type else "",
        key_getter=f"get{upper(key.name)}" if key else "",
        maps=maps,
        maps_name=_free_name(f"{member}Maps", owner),
        owned=isinstance(found, ClassType),
        has_setter=prop.shape in ("single", "optional", "single owned"),
        makes_child=isinstance(found, ClassType) and not found.entry.abstract,
        meta=plan_meta(owner.entry.name, prop),
    )


@dataclass(frozen=True)
class PlannedConstrainable:
    """A property's function for queries: a static function of the handle, and a member of Constrainables."""

    name: str
    # Its type under an attachment, as written in the scope where it is declared.
    type: str
    # The meta package, and its member for the property.
    slot: str


def plan_constrainable(scope: Scope, owner: ClassType, prop: form.Property) -> PlannedConstrainable | None:
    """Plans the query function of a property that `owner` declares, as `scope` writes it; None if queries have none."""
    found = owner.scope.find(prop.type)
    assert found is not None
    if prop.derives is not None or prop.unqueried:
        return None
    if isinstance(found, ClassType):
        # For a single element of another package, queries compare the element itself.
        whole = prop.shape == "single owned" and found.scope is not owner.scope
        kind = "Constrainable" if whole else "ConstrainableRelation"
    elif prop.shape not in _CONSTRAINABLES or prop.type == "ZxArray" or isinstance(found, DataType):
        return None
    else:
        kind = _CONSTRAINABLES[prop.shape]
    return PlannedConstrainable(
        name=descriptor(prop.name, scope),
        type=f"{kind}<{cpp.type_name(found, scope)}>",
        slot=f"{owner.scope.package.singleton}::getInstance()->{slot(owner.entry.name, prop.name)}",
    )


def plan_meta(owner: str, prop: form.Property) -> MetaProperty:
    """Plans the declaration of a class's property or a data type's field."""
    return MetaProperty(
        name=cpp.text16(prop.name),
        shape=_SHAPES[prop.shape].meta,
        type=cpp.text16(prop.type),
        index=prop.index or 0,
        default="nullptr" if prop.default is None else cpp.text16(prop.default),
        key="nullptr" if prop.key is None else cpp.text16(prop.key),
        id=cpp.text(prop.id or ""),
        slot=slot(owner, prop.name),
    )


def _shape(prop: form.Property, maps: tuple[KeyedMap, ...]) -> Shape:
    if prop.derives is not None:
        return _DERIVED
    if prop.type == "ZxArray":
        return _ARRAY
    if prop.type == "Boolean" and prop.shape == "sequence":
        return _BOOLEANS
    return _KEY if maps else _SHAPES[prop.shape]


def _key(scope: Scope, child: Type, prop: form.Property) -> form.Property | None:
    """The property of the child that is the key of a map."""
    if prop.key is None or not isinstance(child, ClassType):
        return None
    chain = [child, *scope.ancestors(child)]
    return next(p for cls in chain for p in cls.properties if p.name == prop.key)


def _free_name(name: str, owner: ClassType) -> str:
    """The name, changed if it is the name of one of the class's descriptors."""
    taken = {descriptor(p.name, owner.scope) for p in owner.properties}
    while name in taken:
        name += "_"
    return name

