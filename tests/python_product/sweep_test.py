"""Every class of the record by its script name: construction, every property by its shape, every createInto."""

from __future__ import annotations

import importlib
import math
from typing import Any

import numpy as np
import ordo
import pytest
from compiler import defaults, form
from compiler.scope import ClassType, DataType, EnumerationType, PrimitiveType, Type
from record import CLASSES, CONCRETE, PACKAGE, SCHEMA, chain_of, refused

info = importlib.import_module(PACKAGE)

# For each type: pairs of a value to write and the value to read back, and values that are refused.
TEXTS = [("", ""), ("a\0b", "a\0b"), ("\U0001f600é", "\U0001f600é"), ("x" * 1000, "x" * 1000)]
VALUES: dict[str, list[tuple[Any, Any]]] = {
    "Boolean": [(True, True), (0, False), (-2.5, True), (False, False), (10**30, True)],
    "Integer": [(2**31 - 1, 2**31 - 1), (-(2**31), -(2**31)), (3.0, 3), (np.int16(7), 7), (True, 1)],
    "UnlimitedNatural": [(2**32 - 1, 2**32 - 1), (0, 0), (3.0, 3)],
    "UInteger64": [(2**64 - 1, 2**64 - 1), (2**53 + 1, 2**53 + 1), (0, 0)],
    "Real": [(-1.5, -1.5), (math.inf, math.inf), (2, 2.0), (5e-324, 5e-324), (np.float32(0.5), 0.5)],
    "String": [*TEXTS, ("\ud800", "\ud800"), ("\udc80x", "\udc80x")],
    "StdString": [*TEXTS, ("\udc80x", "\udc80x")],
    "ZxArray": [
        (1.5, 1.5),
        ("text", "text"),
        ([True, False], np.array([True, False])),
        ({"a": 1.0, "b": {"c": "d"}}, {"a": 1.0, "b": {"c": "d"}}),
        ([{"a": 1.0}, {"a": 2.0}], [{"a": 1.0}, {"a": 2.0}]),
        (["x", [1.0, "y"]], ["x", [1.0, "y"]]),
        (np.arange(6, dtype=np.int16).reshape(2, 3), np.arange(6, dtype=np.int16).reshape(2, 3)),
        (None, None),
    ],
}
NUMBERS_REFUSED = ["1", "", [1, 2], {}, b"1", 1j]
REFUSED: dict[str, list[Any]] = {
    "Boolean": [*NUMBERS_REFUSED, None],
    "Integer": [*NUMBERS_REFUSED, None, 2**31, -(2**31) - 1, 0.5, math.nan, math.inf, 10**30],
    "UnlimitedNatural": [*NUMBERS_REFUSED, None, -1, 2**32, 0.5],
    "UInteger64": [*NUMBERS_REFUSED, None, -1, 2**64, 0.5, 10**30],
    "Real": [*NUMBERS_REFUSED, None],
    "String": [1, 1.5, True, None, b"x", ["x", "y"], {}],
    "StdString": [1, 1.5, True, None, b"x", ["x", "y"], {}, "\ud800"],
    "ZxArray": [b"x", lambda: None],
}


def module_of(found: Any) -> Any:
    return importlib.import_module((found.entry.script or f"{found.scope.package.schema.script}.x").rpartition(".")[0])


def same(a: Any, b: Any) -> bool:
    """Whether two values are equal, and of the same types at all depths."""
    if isinstance(b, np.ndarray):
        return isinstance(a, np.ndarray) and a.dtype == b.dtype and a.shape == b.shape and bool((a == b).all())
    if isinstance(b, list):
        return isinstance(a, list) and len(a) == len(b) and all(map(same, a, b))
    if isinstance(b, dict):
        return isinstance(a, dict) and a.keys() == b.keys() and all(same(a[k], b[k]) for k in b)
    return type(a) is type(b) and a == b


def values_of(found: Type) -> list[tuple[Any, Any]]:
    if isinstance(found, PrimitiveType):
        return VALUES[found.name]
    script = getattr(module_of(found), found.entry.name)
    if isinstance(found, EnumerationType):
        pairs = [(literal.name, literal.value) for literal in found.entry.literals]
        made = [getattr(script, name) for name, _ in pairs]
        assert [int(one) for one in made] == [value for _, value in pairs]
        return [(given, one) for (name, value), one in zip(pairs, made) for given in (name, value, one, float(value))]
    assert isinstance(found, DataType)
    other = script()
    for prop in found.properties:
        field = found.scope.find(prop.type)
        assert field is not None
        given, read = values_of(field)[1]
        setattr(other, prop.name, given)
        assert same(getattr(other, prop.name), read)
    assert other != script()
    return [(other, other), (script(), script())]


def refused_by(found: Type) -> list[Any]:
    if isinstance(found, PrimitiveType):
        return REFUSED[found.name]
    if isinstance(found, EnumerationType):
        return ["NoSuchLiteral", 999, 0.5, [0, 1], {}, info.RateInfo()]
    return [None, 1, "x", {}, info.QueueType.Q_TYPE_FIFO]


def start_of(found: Type, prop: form.Property) -> Any:
    if prop.shape == "optional" or (isinstance(found, PrimitiveType) and found.name == "ZxArray"):
        return None
    if isinstance(found, EnumerationType):
        return getattr(getattr(module_of(found), found.entry.name), prop.default or found.entry.literals[0].name)
    if isinstance(found, DataType):
        return getattr(module_of(found), found.entry.name)()
    return defaults.zero(found) if prop.default is None else defaults.parse(found, prop.default)


def check_value(element: Any, prop: form.Property, found: Type) -> None:
    name = prop.name
    if prop.derives is None:
        assert same(getattr(element, name), start_of(found, prop))
    for given, read in values_of(found):
        setattr(element, name, given)
        assert same(getattr(element, name), read), (name, given)
    if prop.shape == "optional":
        setattr(element, name, None)
        assert getattr(element, name) is None
    setattr(element, name, values_of(found)[0][0])
    for bad in refused_by(found):
        if prop.shape == "optional" and (bad is None or bad == [1, 2]):
            continue
        with pytest.raises(ordo.Error) as caught:
            setattr(element, name, bad)
        assert isinstance(caught.value, (TypeError, ValueError)), (name, bad)
        assert caught.value.identifier.count(":") == 2
        assert same(getattr(element, name), values_of(found)[0][1]), (name, bad)


def check_values(element: Any, prop: form.Property, found: Type) -> None:
    values = getattr(element, prop.name)
    assert type(values).__name__ == ("PrimitiveSequence" if prop.shape == "sequence" else "PrimitiveSet")
    assert values is getattr(element, prop.name) and len(values) == 0
    read = [one for _, one in values_of(found)]
    for given, _ in values_of(found):
        values.add(given)
    distinct = [one for i, one in enumerate(read) if one not in read[:i]]
    assert len(values) == len(read if prop.shape == "sequence" else distinct)
    assert all(one in values for one in read)
    before = list(values)
    for bad in refused_by(found):
        assert bad not in values or bad in before
        with pytest.raises(ordo.Error):
            values.add(bad)
        assert list(values) == before
    if prop.shape == "sequence":
        assert [values[i] for i in range(len(values))] == before and values[-1] == before[-1]
        values.insertAt(read[0], 1)
        assert values[1] == read[0] and values.indexOf(read[0]) == 0
        values.removeAt(1)
    values.remove(read[0])
    assert len(values) == len(before) - 1
    values.clear()
    assert list(values) == []
    with refused("ordo:messages:ReadOnly", AttributeError):
        setattr(element, prop.name, [])


KINDS = {"sequence owned": "Sequence", "set owned": "Set", "map owned": "Map", "multimap owned": "Multimap"}


def check_children(element: Any, prop: form.Property, found: ClassType, model: Any) -> None:
    create = getattr(element, f"createInto{prop.name[0].upper()}{prop.name[1:]}")
    if found.entry.abstract:
        before = len(model.elements())
        with refused("quay0:messages:InvalidValue", ValueError):
            create()
        assert len(model.elements()) == before
        return
    child = create()
    assert type(child) is getattr(module_of(found), found.entry.name) and child
    assert child.container is element and model.find(child.uuid) is child
    if prop.shape == "single owned":
        assert getattr(element, prop.name) is child
        setattr(element, prop.name, None)
        assert getattr(element, prop.name) is None and child.container is None and child
        setattr(element, prop.name, child)
        with pytest.raises(TypeError):
            setattr(element, prop.name, model)
        assert getattr(element, prop.name) is child
        return
    children = getattr(element, prop.name)
    assert type(children).__name__ == KINDS[prop.shape] and children is getattr(element, prop.name)
    assert len(children) == 1
    if prop.key is None:
        assert list(children) == [child] and child in children
    else:
        key = getattr(child, prop.key)
        assert list(children) == [key] and key in children and list(children.values()) == [child]
        assert children[key] is child if prop.shape == "map owned" else children[key] == [child]
        before = len(model.elements())
        if prop.shape == "map owned":
            with refused("quay0:messages:UniquenessConstraint", ValueError):
                create()
            assert len(model.elements()) == before and len(children) == 1
    children.remove(child)
    assert len(children) == 0 and child and child.container is None
    children.add(child)
    if prop.shape != "sequence owned":
        children.add(child)  # it is a member already
    assert len(children) == 1 and child.container is element
    with pytest.raises(TypeError):
        children.add(model)
    with refused("ordo:messages:ReadOnly", AttributeError):
        setattr(element, prop.name, None)
    children.clear()
    assert len(children) == 0 and child.container is None
    child.destroy()


@pytest.mark.parametrize("name", CONCRETE)
def test_class(name: str, model: Any) -> None:
    script = getattr(info, name)
    element = script(model)
    assert type(element) is script and element and script.StaticMetaClass().name == name
    for cls in chain_of(name):
        for prop in cls.properties:
            found = cls.scope.find(prop.type)
            assert found is not None
            assert prop.doc and prop.doc in (getattr(script, prop.name).__doc__ or ""), prop.name
            if isinstance(found, ClassType):
                check_children(element, prop, found, model)
            elif prop.shape in ("sequence", "set"):
                check_values(element, prop, found)
            else:
                check_value(element, prop, found)
    element.destroy()
    assert not element and name in repr(element)


def test_knows_every_class_and_nothing_else() -> None:
    assert {*CLASSES, *SCHEMA.enumerations, *SCHEMA.data_types} <= set(dir(info))
    abstract = set(CLASSES) - set(CONCRETE)
    assert abstract == {"InterfaceParameter"}
    with pytest.raises(AttributeError, match="did you mean 'RateInfo'"):
        info.RateInf  # noqa: B018
    for name in ("", "__path_to__", "inports"):
        assert not hasattr(info, name)


def test_abstract_class_has_no_constructor(model: Any) -> None:
    with refused("ordo:messages:AbstractClass", TypeError):
        info.InterfaceParameter(model)
    assert model.elements() == []
