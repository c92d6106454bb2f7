"""Random uses of the record by scripts: each gives a value or a Python error, and none crashes."""

from __future__ import annotations

import ctypes
import gc
import importlib
import math
import random
import subprocess
import sys
import threading
from pathlib import Path
from typing import Any

import numpy as np
import ordo
import quay
from record import CLASSES, PACKAGE

STEPS = 20000
SEEDS = (1, 2, 3)


class Strange:
    """An object whose special methods give unexpected results."""

    def __getattr__(self, name: str) -> Any:
        raise ValueError(name)

    def __eq__(self, other: object) -> bool:
        raise ZeroDivisionError

    __hash__ = object.__hash__


def nested(depth: int) -> Any:
    made: Any = {}
    for _ in range(depth):
        made = {"inports": [made]}
    return made


def plain_values() -> list[Any]:
    cyclic: list[Any] = []
    cyclic.append(cyclic)
    looped: dict[str, Any] = {}
    looped["inports"] = looped
    return [
        *(None, True, 0, -1, 1.5, 2**31, 2**63, -(2**63) - 1, 10**400, math.nan, math.inf, -0.0, 1j),
        *("", "x", "\ud800", "a\0b", "x" * 5000, b"x", "0e54007f-7a55-3c94-a420-4268d173b4cb"),
        *([], [1, 2], [True], ["a", None], [[]], {}, [{}], [{}, {}], {"triggerType": 1}, {1: 2}, {"": 1}, {"\ud800": 1}),
        *(cyclic, looped, nested(50), object(), Strange(), int, len, slice(0, 2), range(3), {1}),
        *(np.zeros((2, 3)), np.array([]), np.array(3), np.array(["a"]), np.array([object()]), np.eye(3, dtype=np.complex64)),
        *(np.datetime64("2020"), np.ma.masked, (ctypes.c_double * 3)(1, 2, 3), np.float16(1), [np.float32(1), 2]),
    ]


def make(draw: random.Random, pool: list[Any], value: Any, info: Any) -> Any:
    """An element, mostly a root or a child of one."""
    arguments = [value] if draw.random() < 0.2 else []
    parents = [one for one in pool if isinstance(one, quay.zero.ModelElement) and one]
    if parents and draw.random() < 0.7:
        parent = draw.choice(parents)
        creators = [n for n in dir(parent) if n.startswith("createInto")] or ["destroy"]
        return getattr(parent, draw.choice(creators))(*arguments)
    name = draw.choice(CLASSES) if draw.random() < 0.6 else "ModelRefInfoRoot"
    return getattr(info, name)(draw.choice([m for m in pool if isinstance(m, quay.zero.Model)]), *arguments)


def use(draw: random.Random, pool: list[Any], self: Any, value: Any) -> Any:
    """A member that the object has, with one argument or none."""
    name = draw.choice([n for n in dir(self) if not n.startswith("_") and (n != "destroy" or draw.random() < 0.1)])
    if draw.random() < 0.3:
        return setattr(self, name, value)
    member = getattr(self, name)
    return member(*[value, draw.choice(pool)][: draw.randrange(3)]) if callable(member) else member


def act(draw: random.Random, pool: list[Any], plain: list[Any], info: Any) -> Any:
    """One random operation of a script on what it has."""
    value = draw.choice(draw.choice((pool, plain)))
    self = draw.choice(pool)
    kind = draw.randrange(100)
    if kind < 25:
        return make(draw, pool, value, info)
    if kind < 65:
        return use(draw, pool, self, value)
    if kind < 67:
        return quay.zero.Model()
    if kind < 75:
        ask: Any = draw.choice((len, list, iter, repr, str, bool, hash, dir, int, reversed))
        return ask(self)
    if kind < 85:
        return self[draw.choice((0, -1, 10**30, slice(None, None, -1), "x", value))]
    if kind < 90:
        return value in self
    if kind < 95:
        with self.transaction():
            setattr(draw.choice(pool), "triggerType", value)
            if draw.random() < 0.5:
                raise KeyError
        return None
    if kind < 97:
        for one in self:
            one.destroy()
        return None
    return draw.choice((self.undo, self.redo, lambda: self.enableHistory(draw.choice((0, 5, value)))))()


def run(seed: int) -> None:
    info = importlib.import_module(PACKAGE)
    draw, plain = random.Random(seed), plain_values()
    model = quay.zero.Model()
    pool: list[Any] = [model, info.ModelRefInfoRoot(model), info.RateInfo(), info.QueueType.Q_TYPE_FIFO]
    for _ in range(STEPS):
        try:
            result = act(draw, pool, plain, info)
        except (ordo.Error, ArithmeticError, AttributeError, LookupError, RecursionError, TypeError, ValueError):
            continue
        if isinstance(result, (ordo.Object, info.QueueType)):
            pool.append(result)
        if len(pool) > 60:
            del pool[draw.randrange(1, len(pool))]
    # The remaining elements are still a consistent model.
    for one in pool:
        if isinstance(one, quay.zero.Model):
            assert {e.uuid for e in one.roots()} <= {e.uuid for e in one.elements()}
            assert all(e and one.find(e.uuid) is e for e in one.elements())


def run_in_threads() -> None:
    """Threads with a model each, then all in one model: the interpreter's lock separates them."""
    info = importlib.import_module(PACKAGE)
    shared = info.ModelRefInfoRoot(quay.zero.Model())
    failures: list[BaseException] = []

    def work() -> None:
        try:
            root = info.ModelRefInfoRoot(quay.zero.Model())
            for i in range(300):
                root.createIntoInports({"designMin": i})
                shared.createIntoInports()
                with root.model.transaction():
                    root.triggerType = i
                if i % 50 == 0:
                    gc.collect()
            assert len(root.inports) == 300
        except BaseException as error:
            failures.append(error)

    threads = [threading.Thread(target=work) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not failures and len(shared.inports) == 1200


def test_survives_whatever_scripts_do(tmp_path: Path) -> None:
    code = "import fuzz_test as f; [f.run(seed) for seed in f.SEEDS]; f.run_in_threads(); print('whole')"
    folder = str(Path(__file__).parent)
    path = f"import sys; sys.path[:0] = [{folder!r}]; "
    command = [sys.executable, "-X", "faulthandler", "-c", path + code]
    done = subprocess.run(command, capture_output=True, text=True, cwd=tmp_path)  # scripts save files of any name
    assert (done.returncode, done.stdout) == (0, "whole\n"), done.stderr[-3000:]
