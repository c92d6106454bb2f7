#!/usr/bin/python3
"""Measures scripts, in nanoseconds per step, and compares them with others that do the same or less in the same run: a
class written by hand in C, one made available by pybind11, and Python's protobuf. The loop around each step is
included."""

from __future__ import annotations

import subprocess
import sys
import time
import timeit
from collections.abc import Callable
from typing import Any

REPEATS = 7


def nanoseconds(statement: str, names: dict[str, Any], steps: int, fresh: Callable[[], Any] | None = None) -> float:
    """The best of a few runs of `steps` steps. With `fresh`, each run gets an `owner` of its own."""
    best = float("inf")
    for _ in range(REPEATS):
        if fresh:
            names = {**names, "owner": fresh()}
        best = min(best, timeit.Timer(statement, globals=names).timeit(steps))
    return best / steps * 1e9


def protobuf_class() -> Any:
    """A message with the fields of the port, described at run time."""
    from google.protobuf import descriptor_pb2, descriptor_pool, message_factory

    file = descriptor_pb2.FileDescriptorProto(name="port.proto", package="bench", syntax="proto3")
    port = file.message_type.add(name="Port")
    field = descriptor_pb2.FieldDescriptorProto
    port.field.add(name="count", number=1, type=field.TYPE_INT32, label=field.LABEL_OPTIONAL)
    port.field.add(
        name="children", number=2, type=field.TYPE_MESSAGE, label=field.LABEL_REPEATED, type_name=".bench.Port"
    )
    pool = descriptor_pool.DescriptorPool()
    pool.Add(file)
    return message_factory.MessageFactory(pool).GetPrototype(pool.FindMessageTypeByName("bench.Port"))


def once(code: str) -> float:
    """Milliseconds that a statement takes in a process of its own, in which NumPy isn't loaded."""
    program = f"import time; t = time.perf_counter(); {code}; print((time.perf_counter() - t) * 1e3)"
    runs = [subprocess.run([sys.executable, "-c", program], capture_output=True, check=True).stdout for _ in range(5)]
    return min(map(float, runs))


def row(work: str, *figures: float | None) -> None:
    print(f"{work:44}" + "".join(f"{'' if f is None else f'{f:.1f}':>12}" for f in figures))


def main() -> int:
    import floor_port
    import pybind_port

    import quay
    from Varlow.ModelReference.internal.compileInfo import ModelRefInfoRoot

    started = time.perf_counter()
    model = quay.zero.Model()
    root = ModelRefInfoRoot(model)
    port = root.createIntoInports()
    message = protobuf_class()
    others = [floor_port.Port(), pybind_port.Port(), message()]
    print(f"{'':44}{'by hand':>12}{'pybind11':>12}{'protobuf':>12}{'here':>12}")
    row("empty loop", nanoseconds("pass", {}, 1_000_000))

    steps = 300_000
    others_read = [nanoseconds("x.count", {"x": x}, steps) for x in others]
    row("attribute read, int", *others_read, nanoseconds("x.triggerType", {"x": root}, steps))
    row("attribute read, bool", None, None, None, nanoseconds("x.isNotDerivPort", {"x": port}, steps))
    row("attribute read, float", None, None, None, nanoseconds("x.designMin", {"x": port}, steps))
    row("attribute read, text", None, None, None, nanoseconds("x.triggerTsType", {"x": root}, steps))
    others_equal = [nanoseconds("x.count = 3", {"x": x}, steps) for x in others]
    row("attribute write, equal", *others_equal, nanoseconds("x.triggerType = 3", {"x": root}, steps))
    others_write = [nanoseconds("x.count = 3; x.count = 4", {"x": x}, steps) / 2 for x in others]
    row("attribute write, each a transaction", *others_write,
        nanoseconds("x.triggerType = 3; x.triggerType = 4", {"x": root}, steps) / 2)  # fmt: skip
    with model.transaction():
        row("attribute write, inside a transaction", None, None, None,
            nanoseconds("x.triggerType = 3; x.triggerType = 4", {"x": root}, steps) / 2)  # fmt: skip

    steps = 1_000
    makers = [
        nanoseconds("owner.create()", {}, steps, floor_port.Port),
        nanoseconds("owner.create()", {}, steps, pybind_port.Port),
        nanoseconds("owner.children.add()", {}, steps, message),
    ]
    row("createInto, each a transaction", *makers,
        nanoseconds("owner.createIntoInports()", {}, steps, lambda: ModelRefInfoRoot(model)))  # fmt: skip
    row("createInto, of a small class", None, None, None,
        nanoseconds("owner.createIntoAllEdges()", {}, steps, lambda: ModelRefInfoRoot(model)))  # fmt: skip
    ports = root.inports
    row("member of a sequence", None, None, None, nanoseconds("x[0]", {"x": ports, "held": port}, 100_000))
    print()
    row("import, ms", None, None, None, once("import quay"))
    first = "import quay; from Varlow.ModelReference.internal import compileInfo as c; quay.zero.Model(); c.RateSpec"
    timing = "t = time.perf_counter(); c.{}"
    for name in ("InportInformation", "ModelRefInfoRoot"):
        row(f"first use of {name}, ms", None, None, None, once(f"{first}; {timing.format(name)}"))
    print(f"({time.perf_counter() - started:.0f} s)")
    return 0


if __name__ == "__main__":
    sys.exit(main())
