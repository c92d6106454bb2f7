"""The type stubs of the classes."""

from __future__ import annotations

import ast
import os
import subprocess
import sys
from collections.abc import Sequence, Set
from pathlib import Path

import pytest
import quay.zero.meta

PYTHON = Path(os.environ["QUAY_BUILD_DIR"]).resolve() / "python"
ROOT = Path(__file__).parents[2]

EXACT = """
from pathlib import Path
from typing import assert_type
from uuid import UUID

import quay
from numpy.typing import NDArray
from quay.zero import Map, ModelElement, Multimap, PrimitiveSequence, Sequence
from quay.zero.meta import Class, Property, Type
from vwtp.mm.core import EventScope
from Varlow.ModelReference.internal.compileInfo import *

model = quay.zero.Model()
root = ModelRefInfoRoot(model, {"inports": [{"isNotDerivPort": True, "rateInfos": [RateInfo()]}]}, UUID(int=3))
ModelRefInfoRoot(model, "0e54007f-7a55-3c94-a420-4268d173b4cb", {"triggerType": 3})
port = root.createIntoInports({"designMin": -1})
assert_type(port, InportInformation)
assert_type(root.inports, Sequence[InportInformation])
assert_type(root.inports[0], InportInformation)
assert_type(root.inports[1:], list[InportInformation])
assert_type([p for p in root.inports], list[InportInformation])
assert_type(port.isNotDerivPort, bool)
assert_type(port.designMin, float)
assert_type(root.triggerType, int)
assert_type(port.rateInfos, PrimitiveSequence[RateInfo])
assert_type(port.dataEventsInfo, InputDataEventsInfo | None)
assert_type(port.uuid, UUID)
assert_type(port.container, ModelElement | None)
assert_type(port.model, quay.zero.Model)
assert_type(VwtpEventData(model).scope, EventScope)
assert_type(InterfaceParameterInfo(model).groupedArgumentMap, Map[str, GroupedArgument])
assert_type(VarTsUIDMap(model).entries, Map[int, VarTsUIDEntry])
assert_type(QueueType.Q_TYPE_FIFO.getLiteral(), str)
assert_type(ModelRefInfoRoot.StaticMetaClass(), Class)
assert_type(RateInfo() < RateInfo(), bool)
VwtpEventData(model).scope = "Global"
VwtpEventData(model).scope = None
names = PeriodicEventPortUnsupportedBlockInfo(model).deterministicRTBs
assert_type(names & ["a"], set[str])
assert_type({1} | names, set[int | str])
assert_type([1] - names, set[int])
assert_type(names ^ {1}, set[str | int])
assert_type(names <= {"a"} or names.isdisjoint([1]), bool)
assert_type(root.inports.index(port) + root.inports.count(port), int)
assert_type(ModelRefInfoRoot.StaticMetaClass().properties[0].type, Type | None)
assert_type(ModelRefInfoRoot.StaticMetaClass().properties, list[Property])
model.save(Path("a"))
port.isNotDerivPort = 1.5
with model.transaction():
    port.destroy()
"""

WRONG = [
    ("port.isNotDerivPor", "attr-defined"),
    ("port.designMin = 'x'", "assignment"),
    ("port.isNotDerivPort = None", "assignment|misc"),
    ("root.inports = []", "misc"),
    ("root.inports.add(root)", "arg-type"),
    ("ModelRefInfoRoot(model, {'noSuch': 1})", "call-overload|arg-type|typeddict"),
    ("ModelRefInfoRoot()", "call-overload"),
    ("InterfaceParameter(model)", "arg-type"),
    ("Type(model)", "arg-type"),
    ("names & 1", "operator"),
    ("ModelRefInfoRoot.StaticMetaClass().lower", "attr-defined"),
    ("root.createIntoInports(1)", "call-overload"),
]


# Methods behind operators, loops and blocks; Python uses further special methods internally.
USUAL = {*dir(Set), *dir(Sequence), "__enter__", "__exit__"} - {*dir(object), "_from_iterable"}


def check(folder: Path, text: str) -> str:
    file = folder / "script.py"
    file.write_text(text, encoding="utf-8")
    environment = {**os.environ, "MYPYPATH": str(PYTHON), "LD_PRELOAD": ""}
    command = [sys.executable, "-m", "mypy", "--strict", "--cache-dir", str(folder / "cache"), str(file)]
    done = subprocess.run(command, capture_output=True, text=True, env=environment, cwd=folder)
    return done.stdout if done.returncode else ""


def test_types_are_exact_and_mistakes_are_found(tmp_path: Path) -> None:
    pytest.importorskip("mypy")
    assert check(tmp_path, EXACT) == ""
    found = check(tmp_path, EXACT + "\n".join(line for line, _ in WRONG) + "\n")
    first = EXACT.count("\n") + 1
    for i, (line, codes) in enumerate(WRONG):
        told = [one for one in found.splitlines() if f"script.py:{first + i}: error:" in one]
        assert told and any(f"[{code}" in one for one in told for code in codes.split("|")), (line, told)


def test_the_runtimes_classes_are_told_as_they_are(tmp_path: Path) -> None:
    pytest.importorskip("mypy")
    lines = ['# mypy: disable-error-code="type-arg"', "import quay.zero.meta"]
    for module in (quay.zero, quay.zero.meta):
        told = (PYTHON / module.__name__.replace(".", "/") / "__init__.pyi").read_text(encoding="utf-8")
        classes = {node.name: node for node in ast.parse(told).body if isinstance(node, ast.ClassDef)}
        for name in (one for one in dir(module) if isinstance(getattr(module, one), type)):
            cls = getattr(module, name)
            members = [one for one in dir(cls) if not one.startswith("_") or one in USUAL]
            lines += [f"def use_{len(lines)}(one: {module.__name__}.{name}) -> None:", "    pass"]
            lines += [f"    one.{member}" for member in members]
            for function in classes[name].body:
                assert not isinstance(function, ast.FunctionDef) or hasattr(cls, function.name), (name, function.name)
        assert set(classes) - {"Attribute", "_SetMembers"} <= set(dir(module))
    assert check(tmp_path, "\n".join(lines) + "\n") == ""


def test_modules_and_examples_pass(tmp_path: Path) -> None:
    pytest.importorskip("mypy")
    modules = "import ci, ordo, quay.zero.meta, vw.quayzero.treeNode, vw.type_info, vwexec.sto, vwtp.mm.core\n"
    assert check(tmp_path, modules) == ""
    for example in sorted((ROOT / "examples").glob("**/*.py")):
        assert check(tmp_path, example.read_text(encoding="utf-8")) == "", example
