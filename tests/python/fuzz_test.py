"""Random calls with random arguments. Whatever fails must raise a Python error."""

from __future__ import annotations

import ctypes
import inspect
import operator
import random
from typing import Any

import numpy
import ordo

STEPS = 40_000


class Hostile:
    """An object that returns something else each time, and destroys what it can reach."""

    def __init__(self, rng: random.Random, pool: list[Any]) -> None:
        self.rng, self.pool = rng, pool

    def meddle(self) -> None:
        victim = self.rng.choice(self.pool)
        match self.rng.randint(0, 5):
            case 0:
                victim.destroy()
            case 1:
                self.pool.remove(victim)
            case 2:
                raise RuntimeError("hostile")

    def __index__(self) -> int:
        self.meddle()
        return self.rng.choice([0, -1, 2**31, 2**64, 5])

    def __eq__(self, other: object) -> bool:
        self.meddle()
        return self.rng.random() < 0.5

    def __hash__(self) -> int:
        self.meddle()
        return 1


def value(rng: random.Random, pool: list[Any], depth: int = 0) -> Any:
    simple: list[Any] = [
        None, True, 0, -1, 2**31, 2**63, 2**64, -(2**70), 1.5, float("nan"), float("inf"), "", "Red", "a\0", "\ud800",
        "\udc80", b"x", object(), len, (), [], {}, 1j, numpy.arange(6).reshape(2, 3), numpy.array(["a"]),
        numpy.float32(2), numpy.zeros((0, 3)), numpy.arange(20)[::-3], slice(None), Hostile(rng, pool), int, range(3),
        memoryview(b"abc"), memoryview(bytearray(8)).cast("d"), type(pool[0]), numpy.datetime64("2020"),
        numpy.ma.masked, (ctypes.c_double * 3)(1, 2, 3),
    ]  # fmt: skip
    if depth < 3 and rng.random() < 0.25:
        parts = [value(rng, pool, depth + 1) for _ in range(rng.randint(0, 3))]
        if rng.random() < 0.1:
            parts.append(parts)
        return rng.choice([parts, tuple(parts), {str(i): part for i, part in enumerate(parts)}])
    return rng.choice(pool) if rng.random() < 0.4 else rng.choice(simple)


OPERATIONS: list[Any] = [operator.eq, operator.lt, operator.contains, operator.getitem, operator.and_, operator.or_, operator.add]
USES: list[Any] = [len, list, repr, hash, bool, iter, reversed, dict, sorted, str, dir, int, next, id]


def step(rng: random.Random, pool: list[Any], workshop: Any) -> Any:
    target = rng.choice(pool)
    names = [n for n in dir(type(target)) if not n.startswith("__") or n in ("__copy__", "__init__", "__exit__")]
    name = rng.choice(names)
    match rng.randint(0, 7):
        case 0:
            return getattr(target, name)
        case 1:
            return setattr(target, name, value(rng, pool))
        case 2:
            arguments = [value(rng, pool) for _ in range(rng.randint(0, 3))]
            return getattr(target, name)(*arguments)
        case 3:
            return rng.choice(USES)(target)
        case 4:
            return rng.choice(OPERATIONS)(target, value(rng, pool))
        case 5:
            made = rng.choice([workshop.Item, workshop.Tool, workshop.Extent, workshop.Color, workshop.Parts])
            return made(*[value(rng, pool) for _ in range(rng.randint(0, 2))])
        case 6:
            # A member of one class used on an arbitrary object.
            member = inspect.getattr_static(workshop.Item, rng.choice(dir(workshop.Item)))
            return member(value(rng, pool)) if callable(member) else member.__get__(value(rng, pool))
        case _:
            for found in target:
                if rng.random() < 0.3:
                    step(rng, pool, workshop)
            return found


def test_no_use_of_any_object_does_more_than_raise(workshop: Any) -> None:
    rng = random.Random(20)
    pool: list[Any] = []
    done = 0
    for _ in range(STEPS):
        if not any(isinstance(known, workshop.Item) and known for known in pool):
            pool.append(workshop.Item("fresh"))
        try:
            result = step(rng, pool, workshop)
            done += 1
        except Exception:  # noqa: BLE001,S112 - any error is allowed
            continue
        if isinstance(result, ordo.Object | int) or hasattr(result, "__next__"):
            pool.append(result)
        if len(pool) > 40:
            del pool[rng.randrange(len(pool) - 1)]
    assert done > STEPS / 10, "too little came off for this to be a test"
    for known in pool:
        if isinstance(known, workshop.Item) and known:
            known.destroy()  # breaks the reference cycles of items
            known = None
    pool.clear()
