"""Values written to arrays: which are allowed, which objects have no value, and the messages for refused ones."""

from __future__ import annotations

import importlib
import random
from collections.abc import Callable
from pathlib import Path
from types import SimpleNamespace
from typing import Any

import numpy as np
import pytest
import quay
from record import PACKAGE, refused

# The tests violate the classes' types on purpose, so the type checker must not see them.
info: Any = importlib.import_module(PACKAGE)
CompServicePort, InportInformation, VarlowFunctions = info.CompServicePort, info.InportInformation, info.VarlowFunctions
ModelRefInfoRoot, QueueType, RateInfo = info.ModelRefInfoRoot, info.QueueType, info.RateInfo

WRONG = "ordo:messages:WrongType"

NESTINGS: list[Callable[[Any], Any]] = [
    lambda one: one,
    lambda one: [one],
    lambda one: [1, "a", [None, [one, RateInfo()]]],
    lambda one: {"a": 1, "b": {"c": one}},
    lambda one: [{"a": RateInfo()}, {"a": one}],
    lambda one: SimpleNamespace(inner=[SimpleNamespace(one=one)]),
]


def test_arrays_hold_values_and_no_objects_with_identity(model: Any) -> None:
    root = ModelRefInfoRoot(model)
    port = root.createIntoInports()
    root.dataTransferInfos = "before"
    ways: list[Callable[[Any], object]] = [
        lambda value: setattr(root, "dataTransferInfos", value),
        lambda value: ModelRefInfoRoot(model, {"dataTransferInfos": value}),
        lambda value: ModelRefInfoRoot(model, {"inports": [{"resolvedSignalObject": value}]}),
        lambda value: root.createIntoInports({"resolvedSignalObject": value}),
    ]
    makers: list[Callable[[], Any]] = [
        model.transaction,
        lambda: root,
        lambda: port,
        lambda: model,
        lambda: root.inports,
        lambda: port.rateInfos,
        root.StaticMetaClass,
    ]
    for nest in NESTINGS:
        for way in ways:
            for make in makers:
                outer = model.transaction()
                root.triggerType = 1
                with refused(WRONG, TypeError):
                    way(nest(make()))
                outer.rollback()
                assert root.triggerType == 5 and root.dataTransferInfos == "before"
    assert model.elements() == [root, port]
    for nest in NESTINGS:
        for way in ways:
            for plain in (RateInfo(), QueueType.Q_TYPE_FIFO, np.eye(2), "x"):
                way(nest(plain))


@pytest.mark.parametrize("empty", ["", np.array([]), None, [], {}, np.zeros((0, 3))])
def test_no_value_is_none_of_a_collections(model: Any, empty: Any) -> None:
    port = InportInformation(model)
    port.rateInfos.add(RateInfo())
    calls: list[Callable[[Any], object]] = [
        port.rateInfos.add,
        port.rateInfos.remove,
        port.rateInfos.indexOf,
        lambda one: port.rateInfos.insertAt(one, 0),
    ]
    for call in calls:
        with pytest.raises(TypeError):
            call(empty)
    assert empty not in port.rateInfos and list(port.rateInfos) == [RateInfo()]
    with pytest.raises(TypeError):
        InportInformation(model, {"rateInfos": [RateInfo(), empty]})
    assert model.elements() == [port]


def test_an_optional_takes_the_first_of_several(model: Any) -> None:
    def initialised(value: Any) -> Any:
        return ModelRefInfoRoot(model, {"numTs": value}).numTs

    def assigned(value: Any) -> Any:
        root = ModelRefInfoRoot(model, {"numTs": 1})
        root.numTs = value
        return root.numTs

    for give in (initialised, assigned):
        numbers = [([5, 6], 5), (np.array([[7, 8], [9, 10]]), 7), ([4.0, 0.5], 4), ([], None), (None, None)]
        for several, first in numbers:
            assert give(several) == first
        for bad in (["a", 1], "12", "", [{}, {}], np.array([1j, 2]), np.array(["1", "2"]), [RateInfo(), 1]):
            with refused(WRONG, TypeError):
                give(bad)
        with refused("ordo:messages:NotInteger", ValueError):
            give([0.5, 1.0])


def test_a_refusal_names_the_property(model: Any, tmp_path: Path) -> None:
    root, port = ModelRefInfoRoot(model), InportInformation(model)
    stranger = VarlowFunctions(quay.zero.Model())
    cases: list[tuple[str, Callable[[], object]]] = [
        ("RootIOPortInformation.designMin", lambda: ModelRefInfoRoot(model, {"inports": [{"designMin": "x"}]})),
        ("RootIOPortInformation.designMin", lambda: root.createIntoInports({"designMin": "x"})),
        ("RootIOPortInformation.rateInfos", lambda: InportInformation(model, {"rateInfos": [1]})),
        ("RootIOPortInformation.rateInfos", lambda: InportInformation(model, {"rateInfos": ""})),
        ("CompServicePort.servicePortKey", lambda: CompServicePort(model, {"servicePortKey": ""})),
        ("ModelRefInfoRoot.numTs", lambda: ModelRefInfoRoot(model, {"numTs": 0.5})),
        ("ModelRefInfoRoot.inports", lambda: ModelRefInfoRoot(model, {"inports": 1})),
        ("ModelRefInfoRoot.dataTransferInfos", lambda: setattr(root, "dataTransferInfos", [root])),
        ("ModelRefInfoRoot.triggerType", lambda: setattr(root, "triggerType", "x")),
        ("ModelRefInfoRoot.varlowFunctions", lambda: setattr(root, "varlowFunctions", port)),
        ("ModelRefInfoRoot.varlowFunctions", lambda: setattr(root, "varlowFunctions", stranger)),
        ("ModelRefInfoRoot.varlowFunctions", lambda: setattr(root, "varlowFunctions", 1)),
        ("the path", lambda: model.save(str(tmp_path / "a\0b"))),
        ("the path", lambda: quay.zero.Model.load(str(tmp_path / "a\0b"))),
    ]
    for name, call in cases:
        with pytest.raises((TypeError, ValueError)) as caught:
            call()
        assert str(caught.value).startswith(f"{name}: "), (name, str(caught.value))
    assert model.elements() == [root, port] and list(tmp_path.iterdir()) == []


def test_members_are_put_where_a_list_would_put_them(model: Any) -> None:
    draw = random.Random(1)
    root, port = ModelRefInfoRoot(model), InportInformation(model)
    elements: list[Any] = []
    values: list[Any] = []
    for step in range(200):
        rate = RateInfo()
        rate.period = float(step)
        members = [(root.inports, elements, InportInformation(model)), (port.rateInfos, values, rate)]
        for sequence, like, member in members:
            position, inserts = draw.randint(-len(like) - 2, len(like) + 2), draw.random() < 0.7
            if not -len(like) <= position < len(like) + inserts:
                with refused("ordo:messages:IndexOutOfRange", IndexError):
                    sequence.insertAt(member, position) if inserts else sequence.removeAt(position)
            elif inserts:
                sequence.insertAt(member, position)
                like.insert(position, member)
            else:
                sequence.removeAt(position)
                del like[position]
            assert list(sequence) == like
