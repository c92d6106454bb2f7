"""Arguments, identity, lifetime and transactions, tested on a few representative classes."""

from __future__ import annotations

import gc
import importlib
import subprocess
import sys
import textwrap
import types
import uuid
from collections.abc import Callable
from typing import Any

import ordo
import pytest
import quay
from record import PACKAGE, refused

# The tests violate the classes' types on purpose, so the type checker must not see them.
info: Any = importlib.import_module(PACKAGE)
CompServicePort, GroupedArgument, InportInformation = info.CompServicePort, info.GroupedArgument, info.InportInformation
InterfaceParameterInfo, ModelRefInfoRoot, RateInfo = info.InterfaceParameterInfo, info.ModelRefInfoRoot, info.RateInfo
VarTsUIDMap = info.VarTsUIDMap

ID = uuid.UUID("0e54007f-7a55-3c94-a420-4268d173b4cb")
INVALID = "quay0:messages:InvalidValue"
UNKNOWN = "quay0:messages:NoSuchProperty"
DEAD = "ZELDRA:class:InvalidHandle"
ENDED = "ordo:messages:TransactionEnded"


class Plain:
    """An object whose attributes are used as an initialiser."""

    def __init__(self, **attributes: Any) -> None:
        self.__dict__.update(attributes)


def test_constructor_takes_initialiser_and_id_in_either_order(model: Any) -> None:
    fields = {"triggerType": 3}
    for arguments in [
        (),
        (fields,),
        ([fields],),
        (Plain(**fields),),
        (types.SimpleNamespace(**fields),),
        (str(ID).upper(),),
        (ID, fields),
        (fields, ID),
        (str(uuid.UUID(int=0)),),
        ({},),
    ]:
        root = ModelRefInfoRoot(model, *arguments)
        if ID in arguments or str(ID).upper() in arguments:
            assert root.uuid == ID
        assert root.uuid != uuid.UUID(int=0)
        is_given = any(a is fields or a == [fields] or hasattr(a, "triggerType") for a in arguments)
        assert root.triggerType == (3 if is_given else 5)
        root.destroy()


@pytest.mark.parametrize(
    "arguments",
    [(ID, ID), ({}, {}), ([{}, {}],), ([],), (None,), (1,), ("0e54007f",), (f"{{{ID}}}",), (ID.hex,), ({}, None)],
)
def test_constructor_refuses_what_is_neither(model: Any, arguments: tuple[Any, ...]) -> None:
    with refused(INVALID, ValueError):
        ModelRefInfoRoot(model, *arguments)
    assert model.elements() == []


def test_constructor_needs_a_live_model(model: Any) -> None:
    root = ModelRefInfoRoot(model)
    for bad in (None, 1, root, {}):
        with refused("quay0:messages:CannotCreateWithoutModel"):
            ModelRefInfoRoot(bad)
    with refused("ordo:messages:WrongArguments", TypeError):
        ModelRefInfoRoot()
    ignored = object()
    assert ModelRefInfoRoot(model, {}, ID, ignored).createIntoInports({}, str(uuid.uuid4()), ignored, ignored)
    root.model.find(ID).destroy()
    with refused("ordo:messages:WrongArguments", TypeError):
        ModelRefInfoRoot(model, uuid=ID)
    with refused(INVALID):
        ModelRefInfoRoot(model, root)
    with refused("quay0:messages:UniquenessConstraint", ValueError):
        ModelRefInfoRoot(model, root.uuid)
    assert model.elements() == [root]


def test_create_into_takes_initialiser_then_id(model: Any) -> None:
    root = ModelRefInfoRoot(model)
    fields = {"isNotDerivPort": True}
    for arguments in [(), (fields,), ([fields, {}],), (Plain(**fields),), (fields, ID), (str(ID),)]:
        port = root.createIntoInports(*arguments)
        assert port.isNotDerivPort == any(a is fields or a == [fields, {}] or isinstance(a, Plain) for a in arguments)
        port.destroy()
    before = len(model.elements())
    for bad in [(None,), (1,), ("x",), ([],), (root,), (ID, fields), (fields, fields), (fields, None), (ID, ID)]:
        with refused(INVALID, ValueError):
            root.createIntoInports(*bad)
    assert len(model.elements()) == before and len(root.inports) == 0


def test_initialisers_make_trees(model: Any) -> None:
    rate = RateInfo()
    rate.period = 0.5
    root = ModelRefInfoRoot(
        model,
        {
            "inports": [{"isNotDerivPort": True, "rateInfos": [rate]}, {"designMin": -1, "dataEventsInfo": {}}],
            "outports": {},
            "varlowFunctions": None,
            "runtimeNonFcnCallRateInfos": [rate, RateInfo()],
        },
    )
    assert [p.isNotDerivPort for p in root.inports] == [True, False]
    assert root.inports[0].rateInfos[0] == rate and root.inports[0].rateInfos[0] is not rate
    assert root.inports[1].designMin == -1.0 and root.inports[1].dataEventsInfo.container is root.inports[1]
    assert len(root.outports) == 1 and root.varlowFunctions is None
    assert list(root.runtimeNonFcnCallRateInfos) == [rate, RateInfo()]

    before = len(model.elements())
    deep: Any = {}
    for _ in range(5000):
        deep = {"inports": [deep]}
    cyclic: dict[str, Any] = {}
    cyclic["inports"] = [cyclic]
    vast: Any = {}
    for _ in range(40):
        vast = {"inports": [vast, vast]}
    for fields, identifier in [
        ({"noSuchThing": 1}, UNKNOWN),
        ({"autoSolverStatusFlags": 1}, UNKNOWN),
        ({"inports": [{"noSuchThing": 1}]}, UNKNOWN),
        ({"inports": 1}, INVALID),
        ({"inports": [root.inports[0]]}, INVALID),
        ({"varlowFunctions": "x"}, INVALID),
        ({"varlowFunctions": [{}, {}]}, INVALID),
        ({"triggerType": 2**31}, "ordo:messages:OutOfRange"),
        ({"triggerType": "x"}, "ordo:messages:WrongType"),
        (deep, "ordo:messages:NestedTooDeep"),
        (cyclic, "ordo:messages:NestedTooDeep"),
        (vast, "ordo:messages:TooLarge"),
    ]:
        with refused(identifier):
            ModelRefInfoRoot(model, fields)
    with refused(INVALID):
        InterfaceParameterInfo(model, {"modelArguments": [{"parameterName": "x"}]})
    assert len(model.elements()) == before


def test_one_element_has_one_object(model: Any) -> None:
    root = ModelRefInfoRoot(model)
    port = root.createIntoInports()
    seen = {id(port)}
    for found in (root.inports[0], root.inports[-1], model.find(port.uuid), model.find(str(port.uuid)), *root.inports):
        seen.add(id(found))
    assert len(seen) == 1 and hash(port) == hash(root.inports[0]) and port == root.inports[0]
    assert port.container is root and root.container is None and port.model is model
    assert model.roots() == [root] and model.elements() == [root, port]
    bindings = ordo.count_bindings()
    other = root.createIntoInports()
    assert ordo.count_bindings() == bindings + 1
    del other
    gc.collect()
    assert ordo.count_bindings() == bindings
    assert len(root.inports) == 2


def test_an_element_keeps_its_model_and_a_collection_its_owner() -> None:
    root = ModelRefInfoRoot(quay.zero.Model())
    root.createIntoInports({"designMin": 2.0})
    gc.collect()
    inports = root.inports
    assert root and root.model.roots() == [root]
    del root
    gc.collect()
    assert inports[0].designMin == 2.0
    assert inports[0].container.inports is inports


def test_dead_objects_are_false_and_refuse_their_members(model: Any) -> None:
    root = ModelRefInfoRoot(model)
    port, inports = root.createIntoInports(), root.inports
    with pytest.raises(RuntimeError), model.transaction():
        rolled_back = root.createIntoInports()
        raise RuntimeError
    twin = port
    port.destroy()
    for dead in (port, rolled_back):
        assert not dead and dead == dead and dead != root and hash(dead) == hash(dead)
        assert "InportInformation" in repr(dead)
        members: list[Callable[[Any], object]] = [
            lambda e: e.designMin,
            lambda e: setattr(e, "designMin", 1.0),
            lambda e: e.createIntoDataEventsInfo(),
            lambda e: e.uuid,
            lambda e: e.container,
            lambda e: e.rateInfos,
            lambda e: e.destroy(),
        ]
        for use in members:
            with refused(DEAD):
                use(dead)
        inports.add(dead)  # ignored, as by any collection
        assert len(inports) == 0
    assert twin is port
    root.destroy()
    assert "Sequence" in repr(inports)
    uses: list[Callable[[Any], object]] = [len, list, lambda i: i[0], lambda i: i.clear(), lambda i: port in i]
    for call in uses:
        with refused(DEAD):
            call(inports)


def test_undo_brings_the_same_object_back(model: Any) -> None:
    root = ModelRefInfoRoot(model)
    model.enableHistory(10)
    port = root.createIntoInports({"designMin": 1.0})
    port.designMin = 2.0
    port.destroy()
    assert not port and model.undo() and port
    assert port.designMin == 2.0 and root.inports[0] is port
    assert model.undo() and port.designMin == 1.0
    assert model.undo() and not port and not model.undo()
    assert model.redo() and port and port.designMin == 1.0
    with model.transaction(), refused("quay0:messages:TransactionIsOpen"):
        model.undo()


def test_transactions_nest_and_roll_back(model: Any) -> None:
    root = ModelRefInfoRoot(model)
    with model.transaction():
        root.triggerType = 1
        with pytest.raises(KeyError), model.transaction():
            root.triggerType = 2
            root.createIntoInports()
            raise KeyError
        assert root.triggerType == 1 and len(root.inports) == 0
        root.createIntoInports()
    assert root.triggerType == 1 and len(root.inports) == 1
    with pytest.raises(ZeroDivisionError), model.transaction():
        root.inports.clear()
        root.triggerType = 1 // 0
    assert len(root.inports) == 1
    for end, value in (("commit", 5), ("rollback", 1)):
        with pytest.raises(ZeroDivisionError), model.transaction() as ended:
            root.triggerType = 5
            getattr(ended, end)()
            raise ZeroDivisionError
        assert root.triggerType == value
        with model.transaction() as ended:
            root.triggerType = 1
            getattr(ended, end)()
        with refused(DEAD):
            ended.commit()
        assert root.triggerType == 1
    open_one = model.transaction()
    root.triggerType = 9
    del open_one
    gc.collect()
    assert root.triggerType == 1
    outer = model.transaction()
    with refused(ENDED), model.transaction() as inner:
        root.triggerType = 2
        outer.rollback()
    for ended in (outer, inner):
        with refused(ENDED), ended:
            pytest.fail("the block isn't entered")
    with refused(ENDED):
        inner.commit()
    assert root.triggerType == 1


def run_python(code: str) -> str:
    done = subprocess.run([sys.executable, "-c", textwrap.dedent(code)], capture_output=True, text=True, check=False)
    return done.stdout + done.stderr.strip().rpartition("\n")[2]


def test_packages_can_be_imported_again_but_not_by_another_interpreter() -> None:
    again = '''
        import sys, ordo, quay
        def purge():
            for name in [n for n in sys.modules if n.split(".")[0] in ("ordo", "quay")]:
                del sys.modules[name]
        kept = ordo.Error
        purge()
        import quay, ordo
        assert ordo.Error is kept
        try:
            quay.zero.Model().find(1)
        except kept as error:
            print(type(error).__name__)
    '''
    assert run_python(again) in ("TypeError\n", "ValueError\n")
    second = '''
        import _xxsubinterpreters as interpreters, sys
        {first}
        path = f"import sys; sys.path[:] = {sys.path!r}; import ordo"
        try:
            interpreters.run_string(interpreters.create(), path)
        except interpreters.RunFailedError as error:
            print(error)
    '''
    for first in ("pass", "import ordo"):
        assert "by the main interpreter of a process only" in run_python(second.replace("{first}", first))


def test_a_derived_property_is_assigned_in_one_transaction(model: Any) -> None:
    port = ModelRefInfoRoot(model).createIntoInports()
    rate = RateInfo()
    rate.period = 0.5
    model.enableHistory(10)
    periods: list[list[float]] = [[]]
    for period in (0.5, 0.25):
        rate.period = period
        port.rateInfo = rate
        port.rateInfo = rate  # leaves everything as it was
        periods.append([one.period for one in port.rateInfos])
    assert periods == [[], [0.5], [0.25]]
    for before in reversed(periods[:-1]):
        assert model.undo() and [one.period for one in port.rateInfos] == before
    assert not model.undo()


def test_elements_of_other_models_and_cycles_are_refused(model: Any) -> None:
    root, other = ModelRefInfoRoot(model), ModelRefInfoRoot(quay.zero.Model())
    port = other.createIntoInports()
    with refused("quay0:messages:CannotCreateCrossModelAssociation"):
        root.inports.add(port)
    with refused("quay0:messages:CannotAddIncompatibleTypes", TypeError):
        root.inports.add(root)
    for bad in (None, 1, "x", model, root.inports):
        with pytest.raises(TypeError):
            root.inports.add(bad)
    assert port.container is other and len(root.inports) == 0


def test_maps_follow_pythons_protocol(model: Any) -> None:
    info = InterfaceParameterInfo(model)
    groups = info.groupedArgumentMap
    b, a = (info.createIntoGroupedArgumentMap({"parameterName": name}) for name in "ba")
    assert list(groups) == ["a", "b"] and groups.keys() == ["a", "b"] or list(groups.keys()) == ["a", "b"]
    assert list(groups.items()) == [("a", a), ("b", b)] and groups["b"] is b and "a" in groups
    for key in ("c", 1, None, [], b):
        assert key not in groups
    with pytest.raises(KeyError):
        groups["c"]
    with refused("quay0:messages:UniquenessConstraint", ValueError):
        a.parameterName = "b"
    assert a.parameterName == "a"
    a.parameterName = "z"
    assert list(groups) == ["b", "z"] and groups["z"] is a
    lone = GroupedArgument(model, {"parameterName": "z"})
    with refused("quay0:messages:UniquenessConstraint"):
        groups.add(lone)
    groups.remove(a)
    groups.add(lone)
    assert groups["z"] is lone
    entries = VarTsUIDMap(model)
    for index in (2, -1, 2**31 - 1):
        entries.createIntoEntries({"varTsIdx": index})
    assert list(entries.entries) == [-1, 2, 2**31 - 1] and 2.0 in entries.entries and 2.5 not in entries.entries


def test_values_are_copies(model: Any) -> None:
    port = CompServicePort(model)
    key = port.servicePortKey
    assert key is not port.servicePortKey and key == port.servicePortKey and not key != port.servicePortKey
    key.portIdx = 4
    assert port.servicePortKey.portIdx == 0 and port.servicePortKey < key and port.servicePortKey.lt(key)
    port.servicePortKey = key
    key.portIdx = 5
    assert port.servicePortKey.portIdx == 4
    root = ModelRefInfoRoot(model, {"dataTransferInfos": [key, [key, "x"]]})
    with pytest.raises(KeyError), model.transaction():
        root.dataTransferInfos[0].portIdx = root.dataTransferInfos[1][0].portIdx = 6
        raise KeyError
    assert root.dataTransferInfos[0] == key and root.dataTransferInfos[1][0] == key
