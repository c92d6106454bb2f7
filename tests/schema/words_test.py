"""Compares the schema compiler's list of query functions with the functions that the built library exports.

They are called by symbol, without a C++ declaration, so that the test covers all of them.
"""

from __future__ import annotations

import ctypes
import os
from pathlib import Path

import pytest

from compiler.load import load
from compiler.mistakes import Report
from compiler.plan import Plan, plan
from compiler.scope import Scope

BUILD = Path(os.environ["QUAY_BUILD_DIR"])
SCHEMA = Path(__file__).parents[2] / "schema"


@pytest.fixture(scope="module")
def planned() -> Plan:
    package = load(SCHEMA / "package.yaml", Report())
    assert package is not None
    return plan(Scope(package))


def test_are_as_many_as_properties_that_can_be_constrained(planned: Plan) -> None:
    classes = planned.package.classes
    words = [one for cls in classes for one in cls.all_constrainables]
    foreign = [one for one in words if "MetaPackageVw_modelref_info::" not in one.slot]
    assert (len(words), len(foreign), {one.name for one in foreign}) == (722, 5, {"linkedSet"})
    assert sum(len(cls.constrainables) for cls in classes) == 552
    # Each property of the schema has one slot, and each class one query function for it.
    for cls in classes:
        names = [one.name for one in cls.all_constrainables]
        assert len(set(names)) == len(names)
    assert len({one.slot for one in words}) == 552 + 2


def test_are_one_object_a_class_and_property(planned: Plan) -> None:
    library = ctypes.CDLL(str(BUILD / "lib" / "libvw_modelref_info.so"))
    objects: set[int] = set()
    properties: dict[str, int] = {}
    for cls in planned.package.classes:
        for one in cls.all_constrainables:
            # The standard library adds a tag to names of functions that mention its strings.
            tag = "B5cxx11" if "std::" in one.type else ""
            function = library[f"_ZN16ModelRefInfoRepo{len(cls.name)}{cls.name}{len(one.name)}{one.name}{tag}Ev"]
            function.restype = ctypes.c_void_p
            made = function()
            assert made == function()
            assert made not in objects
            objects.add(made)
            # The object has three machine words: a virtual table, the attachment, the property.
            held = ctypes.c_void_p.from_address(made + 2 * ctypes.sizeof(ctypes.c_void_p)).value
            assert held is not None
            assert properties.setdefault(one.slot, held) == held
    assert len(objects) == 722
    assert len(set(properties.values())) == len(properties)
