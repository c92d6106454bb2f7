"""Conversion of values to native code and back."""

from __future__ import annotations

import ctypes
import random
import sys
import uuid
from types import SimpleNamespace
from typing import Any

import numpy
import ordo
import pytest

NUMBERS = [0, 1, -1, 2**31 - 1, 2**31, -(2**31), -(2**31) - 1, 2**32 - 1, 2**32, 2**63, 2**64 - 1, 2**64, 10**400]
REALS = [0.5, -0.0, 3.0, 1e300, float("inf"), float("nan")]
OTHERS: list[Any] = [None, "", "1", b"1", [], [1, 2], {}, {1}, object(), len, ordo, complex(1, 2), numpy.zeros(2)]
RANGES = {"count": (-(2**31), 2**31 - 1), "size": (0, 2**32 - 1), "serial": (0, 2**64 - 1)}


@pytest.mark.parametrize("name", RANGES)
def test_integers_are_taken_whole_or_refused(workshop: Any, name: str) -> None:
    low, high = RANGES[name]
    item = workshop.Item()
    for value in [*NUMBERS, *REALS]:
        fits = value == value and low <= value <= high and value == int(value)
        for given in [value, numpy.float64(value)] if isinstance(value, float) else [value]:
            before = getattr(item, name)
            if fits:
                setattr(item, name, given)
                assert getattr(item, name) == int(value)
                assert type(getattr(item, name)) is int
            else:
                with pytest.raises(ValueError) as caught:
                    setattr(item, name, given)
                assert isinstance(caught.value, ordo.Error)
                assert caught.value.identifier.startswith("ordo:messages:")
                assert getattr(item, name) == before
    for value in OTHERS:
        with pytest.raises((ValueError, TypeError)) as refused:
            setattr(item, name, value)
        assert isinstance(refused.value, ordo.Error)
    for number in (numpy.int8(5), numpy.uint64(5), numpy.array([5]), numpy.array(5.0), True, workshop.Color.Blue):
        setattr(item, name, number)
        assert getattr(item, name) == int(number)


def test_booleans_take_any_number(workshop: Any) -> None:
    item = workshop.Item()
    for value in [*NUMBERS, *REALS, numpy.bool_(True), numpy.bool_(False)]:
        item.ready = value
        assert item.ready is bool(value)
    for value in OTHERS:
        with pytest.raises(TypeError):
            item.ready = value


def test_doubles_take_every_number(workshop: Any) -> None:
    item = workshop.Item()
    for value in [*NUMBERS[:-1], *REALS]:
        item.weight = value
        assert repr(item.weight) == repr(float(value))
    with pytest.raises(ValueError):
        item.weight = 10**400


TEXTS = ["", "ä", "a\0b", "\ud800", "\udfff\ud800", "😀", "a😀\uffff", "€" * 1000, "\x7f\x80\xff\u0100"]


def test_texts_keep_every_unit(workshop: Any) -> None:
    item = workshop.Item()
    for text in TEXTS:
        item.name = text
        assert item.name.encode("utf-16", "surrogatepass") == text.encode("utf-16", "surrogatepass")
        item.notes = text
        assert item.notes == text
    item.label = b"\xff\x00 \xc3\xa4".decode("utf-8", "surrogateescape")
    assert item.label.encode("utf-8", "surrogateescape") == b"\xff\x00 \xc3\xa4"
    with pytest.raises(ValueError, match="surrogate"):
        item.label = "\ud800"
    for value in (None, 1, b"text", ["a"], object()):
        for name in ("name", "label"):
            with pytest.raises(TypeError):
                setattr(item, name, value)


def test_optionals_are_none_until_they_are_set(workshop: Any) -> None:
    item = workshop.Item()
    for name, value in {"limit": True, "rank": -3, "stamp": 2**64 - 1}.items():
        assert getattr(item, name) is None
        nothings: list[Any] = [None, [], numpy.array([])]
        for nothing in nothings:
            setattr(item, name, value)
            assert getattr(item, name) == value and type(getattr(item, name)) is type(value)
            setattr(item, name, nothing)
            assert getattr(item, name) is None
        with pytest.raises(TypeError):
            setattr(item, name, "")


def test_enumerations_take_literals_names_and_numbers(workshop: Any) -> None:
    item: Any = workshop.Item()
    color: Any = workshop.Color
    for given in (color.Blue, "Blue", 5, 5.0, numpy.int16(5)):
        item.color = color.Red
        item.color = given
        assert item.color is color.Blue
    assert item.color == 5 and item.color + 1 == 6 and item.color.getValue() == 5
    assert repr(item.color) == "Color.Blue" and isinstance(item.color, int)
    assert color(5) is color("Blue") is color(color.Blue) is color.Blue
    for wrong in (3, "Mauve", "", 5.5, object(), item, [1, 2], b"Blue"):
        with pytest.raises((ValueError, TypeError)) as caught:
            item.color = wrong
        assert isinstance(caught.value, ordo.Error)
    assert item.color is color.Blue
    item.color = None
    assert item.color == 0 and repr(item.color) == "Color(0)"
    with pytest.raises(AttributeError, match="did you mean 'Green'"):
        color.Gren
    with pytest.raises(TypeError):
        color(None)


def same(left: Any, right: Any) -> bool:
    if isinstance(left, numpy.ndarray) or isinstance(right, numpy.ndarray):
        return numpy.array_equal(left, right) and numpy.asarray(left).dtype == numpy.asarray(right).dtype
    if isinstance(left, list) and isinstance(right, list):
        return len(left) == len(right) and all(map(same, left, right))
    if isinstance(left, dict) and isinstance(right, dict):
        return left.keys() == right.keys() and all(same(left[k], right[k]) for k in left)
    return type(left) is type(right) and bool(left == right)


DTYPES = ["bool", "i1", "u1", "i2", "u2", "i4", "u4", "i8", "u8", "f4", "f8", "c8", "c16"]


def random_array(rng: random.Random) -> Any:
    shape = rng.choice([(rng.randint(3, 6),), (rng.randint(2, 4), rng.randint(2, 4)), (2, 3, rng.randint(2, 4))])
    numbers = numpy.random.default_rng(rng.randint(0, 9999)).integers(0, 100, shape)
    made = numbers.astype(rng.choice(DTYPES))
    return rng.choice([made, numpy.asfortranarray(made), made[::-1], made.T if made.ndim > 1 else made[::2]])


def random_value(rng: random.Random, depth: int = 0) -> Any:
    """A random value and the value that it is expected to read back as; here they are equal."""
    kinds = ["bool", "int", "float", "text", "none", "array"] + (["list", "dict", "dicts"] if depth < 4 else [])
    match rng.choice(kinds):
        case "bool":
            return rng.random() < 0.5
        case "int":
            return rng.choice([0, -5, 2**40, -(2**63), 2**64 - 1])
        case "float":
            return rng.uniform(-1, 1)
        case "text":
            return rng.choice(TEXTS)
        case "none":
            return None
        case "array":
            return random_array(rng)
        case "list":
            # An item that is neither a number nor a dict, so that the list isn't converted to one array.
            return ["mixed", *(random_value(rng, depth + 1) for _ in range(rng.randint(0, 4)))]
        case "dict":
            return {f"f{i}": random_value(rng, depth + 1) for i in range(rng.randint(0, 4))}
        case _:
            return [{"a": random_value(rng, depth + 1)} for _ in range(rng.randint(2, 3))]


def test_arrays_come_back_as_they_went(workshop: Any) -> None:
    item = workshop.Item()
    rng = random.Random(5)
    for _ in range(1500):
        value = random_value(rng)
        item.notes = value
        expected = value if not isinstance(value, numpy.ndarray) or value.size else None
        assert same(item.notes, expected), value


def test_lists_of_numbers_are_rows(workshop: Any) -> None:
    item: Any = workshop.Item()
    single, half = numpy.float32(1.5), numpy.complex64(0.5j)
    rows: list[tuple[list[Any], str]] = [
        ([1, -2], "i8"), ([1, 2**63], "u8"), ([1, 0.5], "f8"), ([True, False], "bool"), ([single, single], "f8"),
        ([-1.0, single, 3], "f8"), ([1j, -1], "c16"), ([half, 2.5, single], "c16"), ([numpy.int8(3), 4], "i8"),
        ([numpy.True_, False], "bool"),
    ]  # fmt: skip
    for given, dtype in rows:
        item.notes = given
        assert isinstance(item.notes, numpy.ndarray) and item.notes.dtype == dtype and item.notes.tolist() == given
        item.notes = tuple(given)
        assert item.notes.tolist() == given
    lists: list[list[Any]] = [[2**53 + 1, 0.5], [2**53 + 1, 1j], [True, 1], [numpy.zeros(2), numpy.ones(3)]]
    for given in lists:
        item.notes = given
        assert same(item.notes, given), "a row would have other values, or none"
    item.notes = [7]
    assert repr(item.notes) == "7"
    item.notes = [{"a": 1}, {"b": "x"}]
    assert item.notes == [{"a": 1, "b": None}, {"a": None, "b": "x"}]
    item.notes = [workshop.Color.Red, workshop.Color.Blue]
    assert item.notes == [workshop.Color.Red, workshop.Color.Blue]
    assert item.notes[0] is workshop.Color.Red


def test_memory_is_taken_as_numbers_or_refused(workshop: Any) -> None:
    item = workshop.Item()
    pair = ctypes.c_int16 * 2
    views: list[Any] = [
        (ctypes.c_double * 3)(1, 2, 3), (pair * 3)(pair(1, 2), pair(3, 4), pair(5, 6)), ctypes.c_float(2.5),
    ]  # fmt: skip
    for memory in views:
        item.notes = memory
        assert numpy.array_equal(item.notes, numpy.asarray(memory))
    masked: Any = numpy.ma.array
    item.notes = masked([1.0, 2.0])
    assert item.notes.tolist() == [1, 2]
    refused: list[tuple[Any, str]] = [
        (numpy.datetime64("2020"), "datetime64"), (numpy.timedelta64(3, "s"), "timedelta64"),
        (numpy.array("2020", dtype="M8[D]"), "datetime64"), (numpy.float16(1), "float16"), (numpy.longdouble(1), "float"),
        (numpy.arange(2, dtype=">f8"), ">f8"), (numpy.ma.masked, "masked"), ((ctypes.c_wchar * 2)(), "c_wchar"),
        (masked([1, 2], mask=[True, False]), "masked"), (numpy.zeros(2, "i4,f8"), "i4"),
    ]  # fmt: skip
    for value, word in refused:
        for given in (value, [value, 1.0]):
            with pytest.raises(TypeError, match=word) as caught:
                item.notes = given
            assert isinstance(caught.value, ordo.Error)
        with pytest.raises(TypeError, match=word):
            item.weight = value
        assert value not in item.parts


def test_plain_objects_and_uuids_have_forms(workshop: Any) -> None:
    item = workshop.Item()
    item.notes = SimpleNamespace(a=1, b=SimpleNamespace(c="x"))
    assert same(item.notes, {"a": 1, "b": {"c": "x"}})
    identity = uuid.uuid4()
    item.notes = identity
    assert item.notes == str(identity)
    for value in (2**64, -(2**63) - 1, b"", bytearray(b"x"), {1, 2}, object(), len, iter([]), {1: 2}, {"": 1}, int,
                  {"\ud800": 1}, numpy.array(["text"]), numpy.array([object()]), [1, object()], lambda: 0):  # fmt: skip
        before = item.notes
        with pytest.raises((ValueError, TypeError)) as caught:
            item.notes = value
        assert isinstance(caught.value, ordo.Error), value
        assert item.notes == before


def test_structs_are_as_large_as_all_their_fields_at_most(workshop: Any) -> None:
    item = workshop.Item()
    with pytest.raises(ValueError, match="too large"):
        item.notes = [{f"f{i}": i} for i in range(20_000)]
    item.notes = [{f"f{i}": i} for i in range(200)]
    assert item.notes[7] == {f"f{i}": 7 if i == 7 else None for i in range(200)}


def test_values_that_hold_themselves_are_refused(workshop: Any) -> None:
    item = workshop.Item()
    cycle: list[Any] = []
    cycle += [cycle, cycle]
    loop: dict[str, Any] = {}
    loop["self"] = [loop]
    own = SimpleNamespace()
    own.me = own
    deep: Any = "x"
    for _ in range(100_000):
        deep = [deep, "x"]
    wide: Any = "x"
    for _ in range(100):
        wide = {"a": [wide]}
    old = sys.getrecursionlimit()
    sys.setrecursionlimit(1_000_000)
    try:
        for value in (cycle, loop, own, deep, {"a": [{"b": cycle}]}):
            with pytest.raises(ValueError, match="nested too deep"):
                item.notes = value
        item.notes = wide[next(iter(wide))]
        assert item.notes is not None
    finally:
        sys.setrecursionlimit(old)


def test_a_value_that_is_replaced_while_it_is_read_is_read_whole(workshop: Any) -> None:
    item = workshop.Item()
    value = [{"a": ["x" * 50, i]} for i in range(3000)]
    item.notes = value
    asked = []

    class Replacer:
        def __init__(self) -> None:
            self.me = self

        def __del__(self) -> None:
            asked.append(item)
            item.notes = None

    Replacer()
    assert item.notes == value
    assert asked and item.notes is None, "nothing was replaced on the way"


class Meddler:
    """An integer with a side effect when its value is read."""

    def __init__(self, action: Any) -> None:
        self.action = action

    def __index__(self) -> int:
        self.action()
        return 1


def test_what_conversions_do_to_objects_is_noticed(workshop: Any) -> None:
    item = workshop.Item()
    part = item.createPart()
    with pytest.raises(ordo.Error) as caught:
        part.count = Meddler(item.destroy)
    assert caught.value.identifier == "ZELDRA:class:InvalidHandle"
    other = workshop.Item()
    with pytest.raises(ordo.Error):
        other.echo(Meddler(other.destroy))
    growing: list[Any] = ["x"]
    growing.append(Meddler(growing.clear))
    changing: dict[str, Any] = {}
    changing.update(a=Meddler(changing.clear), b=2)
    third = workshop.Item()
    third.notes = growing
    assert third.notes == ["x", 1]
    third.notes = changing
    assert third.notes == {"a": 1, "b": 2}

    def fail() -> None:
        raise ZeroDivisionError

    with pytest.raises(ZeroDivisionError):
        third.count = Meddler(fail)
